#include "providers/odbc/OdbcAppender.h"

#include <algorithm>

#include "ado/types/ExactFit.h"
#include "providers/odbc/OdbcTypes.h"

namespace varnel::odbc {
namespace {

/// Beyond so many different sets of assigned columns the prepared statements are dropped and begun anew.
constexpr std::size_t kMostInserts = 32;

ParameterInfo ParameterFor(const ColumnInfo& column) {
    return {column.type, column.definedSize, column.precision, column.numericScale};
}

}  // namespace

OdbcAppender::OdbcAppender(std::shared_ptr<OdbcLink> link, const std::string& selectStatement)
    : link_(std::move(link)) {
    const auto read = ReadSelect(selectStatement);
    if (!read)
        throw Error(ErrorKind::NotSupported, link_->Text().place,
                    "Rows can be added only through a SELECT of plain columns of one table.");
    select_ = *read;
    Describe(selectStatement);
    narrow_.emplace(*link_, columns_);
    queueLimit_ = PrepareInsert(std::vector<bool>(columns_.size(), true))->QueueLimit();
}

void OdbcAppender::Describe(const std::string& selectStatement) {
    const StatementHandle statement = link_->NewStatement();
    SQLCHAR* text = reinterpret_cast<SQLCHAR*>(const_cast<char*>(selectStatement.c_str()));  // which is only read
    link_->Check(SQLPrepare(statement.Get(), text, static_cast<SQLINTEGER>(selectStatement.size())), statement);
    SQLSMALLINT count = 0;
    link_->Check(SQLNumResultCols(statement.Get(), &count), statement);
    for (SQLSMALLINT number = 1; number <= count; ++number) {
        DriverColumn column;
        if (!ReadDriverColumn(statement, static_cast<SQLUSMALLINT>(number), column)) link_->Fail(statement);
        columns_.push_back(DescribeColumn(column, link_->Text()).info);
    }
    if (columns_.size() != select_.columns.size())
        throw Error(ErrorKind::NotSupported, link_->Text().place,
                    "Rows can be added only through a SELECT of plain columns of one table.");
}

std::unique_ptr<OdbcStatement> OdbcAppender::PrepareInsert(const std::vector<bool>& assigned) {
    std::string columns, markers;
    std::vector<ParameterInfo> parameters;
    for (std::size_t k = 0; k < assigned.size(); ++k) {
        if (!assigned[k]) continue;
        columns += (columns.empty() ? "" : ",") + select_.columns[k];
        markers += markers.empty() ? "?" : ",?";
        parameters.push_back(ParameterFor(columns_[k]));
    }
    const std::string head = "INSERT INTO " + select_.table;
    const std::string text =
        columns.empty() ? head + " DEFAULT VALUES" : head + " (" + columns + ") VALUES (" + markers + ")";
    return std::make_unique<OdbcStatement>(link_, text, parameters);
}

OdbcStatement& OdbcAppender::InsertFor(std::span<const Value> values, const std::vector<bool>& assigned) {
    if (values.size() != columns_.size() || assigned.size() != columns_.size())
        throw Error(ErrorKind::Misuse, select_.table, "A row needs one value per column.");
    parameters_.clear();
    for (std::size_t k = 0; k < values.size(); ++k) {
        if (!assigned[k]) continue;
        RefuseRounding(columns_[k], values[k]);
        narrow_->Refuse(columns_[k], values[k]);
        parameters_.push_back(&values[k]);
    }
    if (const auto known = inserts_.find(assigned); known != inserts_.end()) return *known->second;
    if (inserts_.size() >= kMostInserts) inserts_.clear();
    return *inserts_.try_emplace(assigned, PrepareInsert(assigned)).first->second;
}

void OdbcAppender::Append(std::span<const Value> values, const std::vector<bool>& assigned) {
    InsertFor(values, assigned).ExecuteWith(parameters_);
}

void OdbcAppender::Queue(std::span<const Value> values, const std::vector<bool>& assigned) {
    if (queuing_ != nullptr && assigned != queuingFor_)
        throw Error(ErrorKind::Misuse, select_.table, "Rows put aside together must set the same columns.");
    OdbcStatement& insert = InsertFor(values, assigned);
    insert.QueueWith(parameters_);
    queuing_ = &insert;
    queuingFor_ = assigned;
}

void OdbcAppender::Send(const RowOutcome& outcome) {
    if (OdbcStatement* insert = std::exchange(queuing_, nullptr)) insert->Send(outcome);
}

}  // namespace varnel::odbc
