#include "providers/mysql/MySqlAppender.h"

#include <utility>

#include "ado/types/ExactFit.h"
#include "providers/mysql/MySqlTypes.h"

namespace varnel::mysql {
namespace {

/// Beyond so many different sets of assigned columns the prepared statements are dropped and begun anew.
constexpr std::size_t kMostInserts = 32;

void AppendQuoted(std::string& out, std::string_view name) {
    out += '`';
    for (const char c : name) out.append(c == '`' ? 2 : 1, c);
    out += '`';
}

std::string TableOf(const MYSQL_FIELD& field) {
    std::string table;
    if (field.org_table_length == 0) return table;
    if (field.db_length > 0) {
        AppendQuoted(table, {field.db, field.db_length});
        table += '.';
    }
    AppendQuoted(table, {field.org_table, field.org_table_length});
    return table;
}

}  // namespace

MySqlAppender::MySqlAppender(std::shared_ptr<MySqlLink> link, const std::string& selectStatement)
    : link_(std::move(link)) {
    link_->UseMode(SqlMode::LogIn);
    const StatementHandle select = link_->Prepare(selectStatement);
    const ResultHandle description(mysql_stmt_result_metadata(select.get()));
    const unsigned count = description ? mysql_num_fields(description.get()) : 0;
    const MYSQL_FIELD* fields = description ? mysql_fetch_fields(description.get()) : nullptr;
    for (unsigned k = 0; k < count; ++k) {
        columns_.push_back(DescribeColumn(fields[k], link_->Options()).info);
        AppendQuoted(columnNames_.emplace_back(), {fields[k].org_name, fields[k].org_name_length});
        if (k == 0) table_ = TableOf(fields[k]);
        if (table_.empty() || TableOf(fields[k]) != table_ || fields[k].org_name_length == 0)
            throw Error(ErrorKind::NotSupported, link_->Options().Place(),
                        "Rows can be added only through a SELECT of plain columns of one table.");
    }
    if (count == 0)
        throw Error(ErrorKind::NotSupported, link_->Options().Place(), "Rows can be added only through a SELECT.");
}

void MySqlAppender::Append(std::span<const Value> values, const std::vector<bool>& assigned) {
    if (values.size() != columns_.size() || assigned.size() != columns_.size())
        throw Error(ErrorKind::Misuse, table_, "A row needs one value per column.");
    MySqlStatement& insert = InsertFor(assigned);
    parameters_.clear();
    for (std::size_t k = 0; k < values.size(); ++k) {
        if (!assigned[k]) continue;
        RefuseRounding(columns_[k], values[k]);
        parameters_.push_back(&values[k]);
    }
    insert.ExecuteWith(parameters_);
}

MySqlStatement& MySqlAppender::InsertFor(const std::vector<bool>& assigned) {
    if (const auto known = inserts_.find(assigned); known != inserts_.end()) return known->second;
    if (inserts_.size() >= kMostInserts) inserts_.clear();
    return inserts_.try_emplace(assigned, link_, InsertText(assigned)).first->second;
}

std::string MySqlAppender::InsertText(const std::vector<bool>& assigned) const {
    std::string names, marks;
    for (std::size_t k = 0; k < assigned.size(); ++k) {
        if (!assigned[k]) continue;
        names.append(names.empty() ? "" : ", ").append(columnNames_[k]);
        marks.append(marks.empty() ? "?" : ", ?");
    }
    return "INSERT INTO " + table_ + " (" + names + ") VALUES (" + marks + ")";
}

}  // namespace varnel::mysql
