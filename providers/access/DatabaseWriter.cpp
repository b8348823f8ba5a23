#include "providers/access/DatabaseWriter.h"

#include "platform/Error.h"
#include "providers/access/TableDropper.h"
#include "providers/access/TableMaker.h"

namespace varnel::access {
namespace {

/// Calls its action at its end, unless it was told otherwise.
template <class Action>
class AtEnd {
public:
    explicit AtEnd(Action action) : action_(std::move(action)) {}
    ~AtEnd() {
        if (!cancelled_) action_();
    }
    AtEnd(const AtEnd&) = delete;
    AtEnd& operator=(const AtEnd&) = delete;
    void Cancel() { cancelled_ = true; }

private:
    Action action_;
    bool cancelled_ = false;
};

}  // namespace

DatabaseWriter::DatabaseWriter(std::shared_ptr<Schema> schema)
    : schema_(std::move(schema)), file_(*schema_->File()), pages_(file_) {}

void DatabaseWriter::DropWhatIsStale() {
    if (generation_ == file_.Generation()) return;
    writers_.clear();
    generation_ = file_.Generation();
}

TableWriter& DatabaseWriter::WriterOf(const CatalogEntry& table) {
    const auto page = static_cast<PageNumber>(table.id);
    const auto kept = writers_.find(page);
    if (kept != writers_.end()) return *kept->second;
    auto made = std::make_unique<TableWriter>(*schema_, pages_, *schema_->DefinitionOf(table));
    return *(writers_[page] = std::move(made));
}

TableWriter& DatabaseWriter::WriterOf(std::string_view systemTable) {
    const CatalogEntry* entry = schema_->Objects().Find(systemTable);
    if (entry == nullptr || entry->type != kLocalTable) ThrowNoTable(systemTable, schema_->Objects());
    return WriterOf(*entry);
}

template <class Body>
void DatabaseWriter::ChangeRow(const CatalogEntry& table, Body&& body) {
    DropWhatIsStale();
    TableWriter& writer = WriterOf(table);
    AtEnd forget([&] { writer.Forget(); });
    Step step(file_);
    body(writer);
    forget.Cancel();
    step.Keep();
}

RowPointer DatabaseWriter::Insert(const CatalogEntry& table, const NewValues& given) {
    RowPointer at;
    ChangeRow(table, [&](TableWriter& writer) { at = writer.Insert(given); });
    return at;
}

void DatabaseWriter::Update(const CatalogEntry& table, RowPointer row, const NewValues& given) {
    ChangeRow(table, [&](TableWriter& writer) { writer.Update(row, given); });
}

void DatabaseWriter::Delete(const CatalogEntry& table, RowPointer row) {
    ChangeRow(table, [&](TableWriter& writer) { writer.Delete(row); });
}

void DatabaseWriter::DeleteAll(const CatalogEntry& table) {
    ChangeRow(table, [&](TableWriter& writer) { writer.DeleteAll(); });
}

void DatabaseWriter::StoreCounts() {
    if (generation_ != file_.Generation()) return;
    Step step(file_);
    for (auto& [page, writer] : writers_) writer->StoreCounts();
    step.Keep();
}

void DatabaseWriter::Commit() {
    StoreCounts();
    file_.Commit();
}

/// What the writers know is in the pages before, and read from them after.
template <class Body>
void DatabaseWriter::ChangeTables(Body&& body) {
    const auto hold = file_.HoldForWriting();
    DropWhatIsStale();
    StoreCounts();
    const AtEnd forget([&] {
        writers_.clear();
        schema_->Forget();
    });
    Step step(file_);
    body();
    for (auto& [page, writer] : writers_) writer->StoreCounts();
    step.Keep();
    file_.Commit();
}

void DatabaseWriter::CreateTable(std::string_view name, std::span<const ColumnDefinition> columns) {
    ChangeTables([&] { TableMaker(*this).Make(name, columns); });
}

void DatabaseWriter::DropTable(std::string_view name) {
    ChangeTables([&] { TableDropper(*this).Drop(name); });
}

}  // namespace varnel::access
