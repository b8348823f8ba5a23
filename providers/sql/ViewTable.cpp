#include "providers/sql/ViewTable.h"

#include <optional>
#include <utility>
#include <variant>

#include "platform/Error.h"
#include "providers/sql/StatementParser.h"
#include "providers/sql/StoreSelect.h"

namespace varnel::sql {
namespace {

constexpr int kDeepestView = 32;  // queries over queries

SelectStatement ParseView(const std::string& name, const std::string& text) {
    ParsedStatement parsed = ParseStatement(text);
    auto* select = std::get_if<SelectStatement>(&parsed.body);
    if (select == nullptr || parsed.markers > 0)
        throw Error(ErrorKind::NotSupported, name, "The query '" + name + "' is no plain select and cannot be read.");
    return std::move(*select);
}

/// Throws for a query whose source is, by way of others, the query itself.
void RequireEnd(OpenStore& store, const std::string& name, std::string source) {
    for (int depth = 0; depth < kDeepestView; ++depth) {
        const std::optional<std::string> text = store.Tables().ViewText(source);
        if (!text) return;
        source = ParseView(source, *text).table;
    }
    throw Error(ErrorKind::Corrupt, name, "Circular reference caused by '" + name + "'.");
}

[[noreturn]] void ThrowNotUpdatable() {
    throw Error(ErrorKind::Constraint, "", "Operation must use an updatable query.");
}

class ViewRows : public TableRows {
public:
    ViewRows(std::unique_ptr<RowReader> reader, std::span<const std::size_t> wanted)
        : reader_(std::move(reader)), wanted_(wanted.begin(), wanted.end()), row_(reader_->Columns().size()) {}

    bool Next(std::span<Value> row) override {
        if (!reader_->Next(row_)) return false;
        for (std::size_t k = 0; k < wanted_.size(); ++k) row[k] = row_[wanted_[k]];
        ++number_;
        return true;
    }
    RowId Current() const override { return number_; }

private:
    std::unique_ptr<RowReader> reader_;
    std::vector<std::size_t> wanted_;
    std::vector<Value> row_;
    RowId number_ = 0;
};

}  // namespace

std::shared_ptr<StoreTable> OpenStoreSource(std::shared_ptr<OpenStore> store, const ExpressionRules& rules,
                                            const std::string& name, const std::string& owner) {
    const std::optional<std::string> text = store->Tables().ViewText(name);
    if (!text) return OpenStoreTable(std::move(store), rules, name, owner);
    SelectStatement select = ParseView(name, *text);
    RequireEnd(*store, name, select.table);
    auto view = std::make_unique<ViewTable>(store, rules, std::move(select));
    return StoreTableOf(std::move(store), rules, name, std::move(view));
}

ViewTable::ViewTable(std::shared_ptr<OpenStore> store, const ExpressionRules& rules, SelectStatement select)
    : store_(std::move(store)), rules_(rules), select_(std::move(select)), first_(Run()), columns_(first_->Columns()) {}

std::unique_ptr<RowReader> ViewTable::Run() {
    return OpenStoreSelect(store_, rules_, select_);
}

std::unique_ptr<TableRows> ViewTable::Rows(std::span<const std::size_t> wanted) {
    return std::make_unique<ViewRows>(first_ ? std::move(first_) : Run(), wanted);
}

std::int64_t ViewTable::CountRows() {
    const auto rows = Rows({});
    std::int64_t count = 0;
    while (rows->Next({})) ++count;
    return count;
}

void ViewTable::Append(std::span<const Value> /*values*/, const std::vector<bool>& /*assigned*/) {
    ThrowNotUpdatable();
}

void ViewTable::Update(RowId /*row*/, std::span<const Value> /*values*/, const std::vector<bool>& /*assigned*/) {
    ThrowNotUpdatable();
}

void ViewTable::Delete(RowId /*row*/) {
    ThrowNotUpdatable();
}

void ViewTable::DeleteAll() {
    ThrowNotUpdatable();
}

}  // namespace varnel::sql
