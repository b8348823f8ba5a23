#include "tests/providers_access/RandomChanges.h"

#include <gtest/gtest.h>

#include "ado/types/ValueText.h"
#include "platform/Error.h"
#include "providers/access/ColumnDescription.h"
#include "providers/access/IndexKey.h"
#include "providers/access/Verify.h"

namespace varnel::access {
namespace {

std::vector<std::size_t> AllColumns(const TableFile& table) {
    std::vector<std::size_t> all(table.Columns().size());
    for (std::size_t k = 0; k < all.size(); ++k) all[k] = k;
    return all;
}

std::string ShownRow(const std::vector<Value>& row) {
    std::string text;
    for (const Value& value : row) {
        std::string cell = value.IsNull()                       ? "~"
                           : value.Kind() == ValueKind::Failure ? "!" + std::string(value.FailureText())
                                                                : DefaultText(value);
        if (cell.size() > 60) cell = cell.substr(0, 60) + "... " + std::to_string(cell.size());
        text += cell + "|";
    }
    return text;
}

}  // namespace

RandomChanges::RandomChanges(std::shared_ptr<PageFile> file, AccessDatabase& database, std::string table, unsigned seed)
    : file_(std::move(file)), name_(std::move(table)), random_(seed), table_(database.OpenTable(name_)) {
    definition_ = Schema(file_, 2, 1252).DefinitionOf(name_);
    const auto rows = table_->Rows(AllColumns(*table_));
    Row row(table_->Columns().size());
    bool refused = false;
    while (rows->Next(row)) model_[rows->Current()] = {row, KeysOf(row, refused)};
}

std::string RandomChanges::RandomText(std::size_t length) {
    static const std::string kLetters[] = {"a", "B", "c", "-", "é", "ß", "Ω", "7", " ", "漢", "O'"};
    const std::size_t kinds = Below(2) == 0 ? 4 : std::size(kLetters);
    std::string text;
    for (std::size_t k = 0; k < length; ++k) text += kLetters[Below(kinds)].substr(0, 3);
    while (!text.empty() && text.back() == ' ') text.pop_back();
    return text;
}

Value RandomChanges::RandomValue(const ColumnInfo& column) {
    if (column.type != adBoolean && Below(column.nullable ? 10 : 40) == 0) return {};
    static constexpr std::size_t kLengths[] = {0, 1, 3, 30, 40, 500, 1900, 3000, 9000, 40'000};
    const auto number = static_cast<std::int64_t>(Below(200));
    switch (column.type) {
        case adBoolean:
            return Value::OfBoolean(number % 2 == 0);
        case adUnsignedTinyInt:
        case adSmallInt:
        case adInteger:
            return Value::OfInteger(number);
        case adSingle:
            return Value::OfSingle(static_cast<float>(number) / 4);
        case adDouble:
            return Value::OfDouble(static_cast<double>(number) / 8);
        case adCurrency:
            return Value::OfCurrency(number * 5'000);
        case adDate:
            return Value::OfDateTime({static_cast<std::int32_t>(number) - 50, number * kMicrosPerSecond});
        case adLongVarWChar:
            return Value::OfText(RandomText(kLengths[Below(std::size(kLengths))]));
        case adVarBinary:
            return Value::OfBytes(std::string(Below(static_cast<std::size_t>(column.definedSize) + 1), 'b'));
        case adLongVarBinary:
            return Value::OfBytes(std::string(kLengths[Below(std::size(kLengths))], static_cast<char>(number)));
        case adNumeric:
            return Value::OfDecimal(std::to_string(number) + ".25");
        default: {
            std::string text = RandomText(Below(static_cast<std::size_t>(column.definedSize) / 2 + 1));
            return Value::OfText(text.empty() ? "x" : text);
        }
    }
}

RowId RandomChanges::NewRow() const {
    const auto rows = table_->Rows({});
    while (rows->Next({}))
        if (!model_.contains(rows->Current())) return rows->Current();
    ADD_FAILURE() << "the row that was appended is not there";
    return 0;
}

/// refused: whether an index requires a value that the row lacks.
RandomChanges::Keys RandomChanges::KeysOf(const Row& row, bool& refused) const {
    const std::vector<std::size_t> order = ColumnOrder(*definition_);
    Row stored(row.size());
    for (std::size_t k = 0; k < order.size(); ++k) stored[order[k]] = row[k];
    Keys keys;
    for (const RealIndex& index : definition_->realIndexes) {
        RealIndex lenient = index;
        lenient.flags = static_cast<std::uint8_t>(lenient.flags & ~kRequiredIndex);
        std::string& key = keys.emplace_back();
        if (IndexKey(*definition_, lenient).Build(key, stored) == KeyState::Whole) continue;
        refused = refused || (index.flags & kRequiredIndex) != 0;
        key.clear();
    }
    return keys;
}

/// What the table's unique and required indexes say about the row.
bool RandomChanges::WouldCollide(const Row& row, RowId self, Keys& keys) const {
    bool refused = false;
    keys = KeysOf(row, refused);
    for (std::size_t k = 0; k < keys.size(); ++k) {
        if (keys[k].empty() || !definition_->realIndexes[k].IsUnique()) continue;
        for (const auto& [id, kept] : model_) refused = refused || (id != self && kept.keys[k] == keys[k]);
    }
    return refused;
}

void RandomChanges::Insert() {
    Row row;
    for (const ColumnInfo& column : table_->Columns()) row.push_back(RandomValue(column));
    Keys keys;
    const bool collides = WouldCollide(row, -1, keys);
    try {
        table_->Append(row, std::vector<bool>(row.size(), true));
        EXPECT_FALSE(collides) << ShownRow(row);
        const RowId id = NewRow();
        model_[id] = {row, keys};
    } catch (const Error& error) {
        ++refused_;
        EXPECT_TRUE(collides) << error.what() << "\n" << ShownRow(row);
    }
}

std::map<RowId, RandomChanges::Kept>::iterator RandomChanges::Pick() {
    return std::next(model_.begin(), static_cast<std::ptrdiff_t>(Below(model_.size())));
}

void RandomChanges::Update() {
    const auto at = Pick();
    Row row = at->second.row;
    std::vector<bool> assigned(row.size());
    for (std::size_t k = 0; k < row.size(); ++k) {
        assigned[k] = Below(3) == 0;
        if (assigned[k]) row[k] = RandomValue(table_->Columns()[k]);
    }
    Keys keys;
    const bool collides = WouldCollide(row, at->first, keys);
    try {
        table_->Update(at->first, row, assigned);
        EXPECT_FALSE(collides) << ShownRow(row);
        at->second = {row, keys};
    } catch (const Error& error) {
        ++refused_;
        EXPECT_TRUE(collides) << error.what() << "\n" << ShownRow(row);
    }
}

void RandomChanges::Delete() {
    const auto at = Pick();
    table_->Delete(at->first);
    model_.erase(at);
}

void RandomChanges::DeleteAll() {
    table_->DeleteAll();
    model_.clear();
}

void RandomChanges::Change(int count, std::size_t aboutRows) {
    for (int k = 0; k < count && !testing::Test::HasFailure(); ++k) {
        const std::size_t what = Below(10);
        if (model_.empty() || what < (model_.size() < aboutRows ? 5U : 2U)) {
            Insert();
        } else if (what < 7) {
            Update();
        } else {
            Delete();
        }
        if (Below(50) == 0) table_->Commit();
    }
}

std::vector<std::string> RandomChanges::AsCsv() const {
    std::vector<std::string> lines;
    for (const auto& [id, kept] : model_) {
        std::string& line = lines.emplace_back();
        for (const Value& value : kept.row) {
            const char* quote = value.Kind() == ValueKind::Text && !value.AsText().empty() ? "\"" : "";
            if (!value.IsNull()) line += quote + DefaultText(value) + quote;
            line += ',';
        }
        line.pop_back();
    }
    return lines;
}

void RandomChanges::Check() {
    const auto rows = table_->Rows(AllColumns(*table_));
    Row row(table_->Columns().size());
    std::size_t count = 0;
    for (; rows->Next(row); ++count) {
        const auto expected = model_.find(rows->Current());
        ASSERT_NE(expected, model_.end()) << "a row that should not be there: " << ShownRow(row);
        ASSERT_TRUE(row == expected->second.row) << ShownRow(row) << "\n" << ShownRow(expected->second.row);
    }
    EXPECT_EQ(count, model_.size());
    EXPECT_EQ(table_->CountRows(), static_cast<std::int64_t>(model_.size()));
    table_->Commit();
    // That compares every index with the rows, too.
    for (const std::string& finding : VerifyDatabase(*file_).findings) ADD_FAILURE() << finding;
}

}  // namespace varnel::access
