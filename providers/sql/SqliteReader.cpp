#include "providers/sql/SqliteReader.h"

namespace varnel::sql {

SqliteReader::SqliteReader(std::shared_ptr<SqliteFile> file, SqliteStatement statement)
    : OpenRead(statement.tracked.tables.reads), file_(std::move(file)), statement_(std::move(statement)) {
    file_->Register(this);
}

SqliteReader::~SqliteReader() {
    LetGo();
}

void SqliteReader::LetGo() noexcept {
    if (!std::exchange(open_, false)) return;
    file_->Unregister(this);
    statement_.tracked.statement.reset();
}

bool SqliteReader::Step(std::span<Value> row) {
    sqlite3_stmt* handle = statement_.tracked.statement.get();
    const int code = sqlite3_step(handle);
    if (code == SQLITE_ROW) {
        const std::vector<ColumnCodec>& codecs = statement_.codecs;
        for (std::size_t i = 0; i < codecs.size(); ++i)
            codecs[i].Decode(sqlite3_column_value(handle, static_cast<int>(i)), row[i]);
        return true;
    }
    if (code != SQLITE_DONE) broken_ = file_->Failure(code);
    LetGo();
    return false;
}

bool SqliteReader::Next(std::span<Value> row) {
    if (open_ && Step(row)) return true;
    if (kept_ && kept_->Next(row)) return true;
    if (broken_) throw Error(*broken_);
    return false;
}

void SqliteReader::KeepRest() noexcept {
    try {
        kept_ = std::make_unique<RowSpool>();
        std::vector<Value> row(statement_.codecs.size());
        while (Step(row)) kept_->Add(row);
        kept_->Rewind();
    } catch (const Error& error) {
        // The rows that could not be kept are missed where the read gets to them, not in the write that comes first.
        broken_ = error;
        kept_.reset();
    }
    LetGo();
}

}  // namespace varnel::sql
