#include "providers/sql/JetOverFoxPro.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "platform/Error.h"
#include "providers/sql/DeclaredTypes.h"
#include "providers/sql/TextParts.h"

namespace varnel::sql {
namespace {

constexpr std::int64_t kWidestText = 254;
constexpr int kGuidWidth = 38;

struct LetterOfType {
    DataTypeEnum type;
    const char* letter;
};
constexpr LetterOfType kLetters[] = {{adInteger, "I"},      {adSmallInt, "I"},     {adUnsignedTinyInt, "I"},
                                     {adSingle, "B"},       {adDouble, "B"},       {adCurrency, "Y"},
                                     {adBoolean, "L"},      {adDate, "T"},         {adDBTimeStamp, "T"},
                                     {adLongVarWChar, "M"}, {adBigInt, "N"},       {adNumeric, "N"},
                                     {adVarNumeric, "B"},   {adLongVarBinary, "W"}};

void Become(ColumnDefinition& column, const char* letter, std::vector<int> arguments) {
    column.typeWord = letter;
    column.typeArguments = std::move(arguments);
}

void TranslateType(ColumnDefinition& column) {
    const std::optional<DeclaredType> type = FindDeclaredType(column.typeWord, column.typeArguments);
    if (!type)
        throw Error(ErrorKind::Syntax, column.name,
                    "Syntax error in field definition: unknown type '" + column.typeWord + "'.");
    const auto size = static_cast<int>(std::min(type->size, kWidestText));
    if (type->counter) return Become(column, "I AUTOINC", {});
    if (type->type == adGUID) return Become(column, "C", {kGuidWidth});
    if (type->type == adVarWChar || type->type == adWChar) return Become(column, "C", {size});
    if (type->type == adVarBinary)
        return type->size > kWidestText ? Become(column, "W", {}) : Become(column, "Q", {size});
    if (type->type == adBigInt) return Become(column, "N", {20, 0});
    // The sign and the point take a place each.
    if (type->type == adNumeric) return Become(column, "N", {std::min(type->precision + 2, 20), type->scale});
    for (const LetterOfType& row : kLetters)
        if (row.type == type->type) return Become(column, row.letter, {});
    throw Error(ErrorKind::NotSupported, column.name, "A FoxPro table has no field of type '" + column.typeWord + "'.");
}

void TranslateTypes(ParsedStatement& parsed, TableStore&) {
    auto* create = std::get_if<CreateTableStatement>(&parsed.body);
    if (create == nullptr) return;
    for (ColumnDefinition& column : create->columns) TranslateType(column);
}

class TrimmedRows : public TableRows {
public:
    TrimmedRows(std::unique_ptr<TableRows> rows, std::vector<bool> trimmed)
        : rows_(std::move(rows)), trimmed_(std::move(trimmed)) {}

    bool Next(std::span<Value> row) override {
        if (!rows_->Next(row)) return false;
        for (std::size_t k = 0; k < row.size(); ++k) {
            if (!trimmed_[k] || row[k].Kind() != ValueKind::Text) continue;
            const std::string_view text = row[k].AsText();
            const std::string_view kept = WithoutRight(text);
            if (kept.size() != text.size()) kept_.assign(kept), row[k].SetText(kept_);
        }
        return true;
    }
    RowId Current() const override { return rows_->Current(); }

private:
    std::unique_ptr<TableRows> rows_;
    std::vector<bool> trimmed_;
    std::string kept_;
};

class TrimmedTable : public TableFile {
public:
    explicit TrimmedTable(std::unique_ptr<TableFile> file) : file_(std::move(file)), columns_(file_->Columns()) {
        for (ColumnInfo& column : columns_) {
            trimmed_.push_back(column.type == adChar || column.type == adWChar);
            if (trimmed_.back()) column.type = adVarWChar;
            if (column.type == adLongVarChar) column.type = adLongVarWChar;
        }
    }

    const std::vector<ColumnInfo>& Columns() const override { return columns_; }
    std::vector<TableColumn> Describe() override {
        std::vector<TableColumn> described = file_->Describe();
        for (std::size_t k = 0; k < columns_.size(); ++k) described[k].info = columns_[k];
        return described;
    }
    std::optional<std::size_t> FindColumn(std::string_view name) const override { return file_->FindColumn(name); }
    std::unique_ptr<TableRows> Rows(std::span<const std::size_t> wanted) override {
        std::vector<bool> trimmed;
        for (const std::size_t column : wanted) trimmed.push_back(trimmed_[column]);
        return std::make_unique<TrimmedRows>(file_->Rows(wanted), std::move(trimmed));
    }
    std::int64_t CountRows() override { return file_->CountRows(); }
    void Append(std::span<const Value> values, const std::vector<bool>& assigned) override {
        file_->Append(values, assigned);
    }
    void Update(RowId row, std::span<const Value> values, const std::vector<bool>& assigned) override {
        file_->Update(row, values, assigned);
    }
    void Delete(RowId row) override { file_->Delete(row); }
    void DeleteAll() override { file_->DeleteAll(); }
    void Commit() override { file_->Commit(); }

private:
    std::unique_ptr<TableFile> file_;
    std::vector<ColumnInfo> columns_;
    std::vector<bool> trimmed_;
};

class TrimmedStore : public TableStore {
public:
    explicit TrimmedStore(std::unique_ptr<TableStore> tables) : tables_(std::move(tables)) {}

    std::vector<std::string> TableNames() override { return tables_->TableNames(); }
    bool HasTable(std::string_view name) override { return tables_->HasTable(name); }
    std::unique_ptr<TableFile> OpenTable(std::string_view name) override {
        return std::make_unique<TrimmedTable>(tables_->OpenTable(name));
    }
    void CreateTable(std::string_view name, std::span<const ColumnDefinition> columns) override {
        tables_->CreateTable(name, columns);
    }
    void DropTable(std::string_view name) override { tables_->DropTable(name); }
    void RequireWritable() override { tables_->RequireWritable(); }

private:
    std::unique_ptr<TableStore> tables_;
};

}  // namespace

bool SpeaksJet(const ConnectionString& text) {
    for (const std::string& name :
         {AsciiLower(text.Provider()), AsciiLower(text.Driver()), AsciiLower(text.Get({"DSN"}))})
        for (const std::string_view start : {"microsoft.jet", "microsoft.ace", "microsoft access", "microsoft dbase",
                                             "microsoft foxpro", "dbase files", "foxpro files"})
            if (std::string_view(name).starts_with(start)) return true;
    return false;
}

Dialect JetDialectOverFoxPro() {
    return {&ParseStatement, &kJetRules, &TranslateTypes};
}

std::unique_ptr<TableStore> TrimmedTexts(std::unique_ptr<TableStore> tables) {
    return std::make_unique<TrimmedStore>(std::move(tables));
}

}  // namespace varnel::sql
