#include "providers/mysql/MySqlReader.h"

#include <utility>

namespace varnel::mysql {
namespace {

/// An unread rest up to these bounds is read to its end, so that the log-in can be used again.
constexpr int kSmallRestRows = 1000;
constexpr std::uint64_t kSmallRestBytes = 1U << 20;

}  // namespace

MySqlReader::MySqlReader(std::shared_ptr<MySqlLink> link, StatementHandle executed)
    : link_(std::move(link)), statement_(std::move(executed)) {
    link_->BeginStream();
    Describe();
}

void MySqlReader::Describe() {
    const ResultHandle description(mysql_stmt_result_metadata(statement_.get()));
    if (!description) FailRows();
    const unsigned count = mysql_num_fields(description.get());
    const MYSQL_FIELD* fields = mysql_fetch_fields(description.get());
    columns_.reserve(count);
    cells_.reserve(count);
    for (unsigned k = 0; k < count; ++k) {
        MySqlColumn column = DescribeColumn(fields[k], link_->Options());
        cells_.emplace_back(column, link_->Options().zeroDateToMinimum);
        columns_.push_back(std::move(column.info));
    }
    std::vector<MYSQL_BIND> binds(count);
    for (unsigned k = 0; k < count; ++k) cells_[k].Bind(binds[k]);
    if (mysql_stmt_bind_result(statement_.get(), binds.data()) != 0) FailRows();
}

bool MySqlReader::Next(std::span<Value> row) {
    if (row.size() != cells_.size())
        throw Error(ErrorKind::Misuse, link_->Options().Place(), "A row needs one value per column.");
    if (!open_ || !Fetch()) return false;
    for (unsigned k = 0; k < cells_.size(); ++k)
        if (!cells_[k].Decode(statement_.get(), k, row[k])) FailRows();
    return true;
}

bool MySqlReader::Fetch() {
    switch (mysql_stmt_fetch(statement_.get())) {
        case 0:
        case MYSQL_DATA_TRUNCATED:
            return true;  // long cells are fetched whole afterwards
        case MYSQL_NO_DATA:
            Finish();
            return false;
        default:
            FailRows();
    }
}

void MySqlReader::Finish() {
    if (!DropFurtherResults(statement_.get())) FailRows();
    open_ = false;
    statement_.reset();
    link_->EndStream();
}

void MySqlReader::FailRows() {
    open_ = false;
    link_->FailStream(statement_.get());
}

MySqlReader::~MySqlReader() {
    if (!open_) return;
    if (!ReadSmallRest()) link_->Drop();
    statement_.reset();
    link_->EndStream();
}

bool MySqlReader::ReadSmallRest() noexcept {
    std::uint64_t bytes = 0;
    for (int rows = 0; rows < kSmallRestRows && bytes < kSmallRestBytes; ++rows) {
        const int outcome = mysql_stmt_fetch(statement_.get());
        if (outcome == MYSQL_NO_DATA) return DropFurtherResults(statement_.get());
        if (outcome != 0 && outcome != MYSQL_DATA_TRUNCATED) return false;
        for (const auto& cell : cells_) bytes += cell.WireBytes();
    }
    return false;
}

bool DropFurtherResults(MYSQL_STMT* statement) noexcept {
    int more = mysql_stmt_next_result(statement);
    for (; more == 0; more = mysql_stmt_next_result(statement))
        if (mysql_stmt_free_result(statement) != 0) return false;
    return more < 0;  // above 0 is a failure
}

}  // namespace varnel::mysql
