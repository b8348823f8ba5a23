#include "providers/odbc/OdbcAppender.h"

#include <algorithm>

#include "providers/odbc/TargetColumns.h"

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
    narrow_.emplace(*link_, select_.table, columns_);
    const std::vector<bool> all(columns_.size(), true);
    queueLimit_ = inserts_.try_emplace(all, MakeInsert(all)).first->second->QueueLimit();
}

void OdbcAppender::Describe(const std::string& selectStatement) {
    const StatementHandle statement = link_->NewStatement();
    auto described = DescribeSelect(statement, selectStatement, link_->Text());
    if (!described) link_->Fail(statement);
    targets_ = std::move(*described);
    for (const OdbcColumn& target : targets_) columns_.push_back(target.info);
    if (columns_.size() != select_.columns.size())
        throw Error(ErrorKind::NotSupported, link_->Text().place,
                    "Rows can be added only through a SELECT of plain columns of one table.");
}

std::unique_ptr<OdbcStatement> OdbcAppender::MakeInsert(const std::vector<bool>& assigned) {
    std::string columns, markers;
    std::vector<ParameterInfo> parameters;
    std::vector<OdbcColumn> targets;
    for (std::size_t k = 0; k < assigned.size(); ++k) {
        if (!assigned[k]) continue;
        columns += (columns.empty() ? "" : ",") + select_.columns[k];
        markers += markers.empty() ? "?" : ",?";
        parameters.push_back(ParameterFor(columns_[k]));
        targets.push_back(targets_[k]);
    }
    const std::string head = "INSERT INTO " + select_.table;
    const std::string text =
        columns.empty() ? head + " DEFAULT VALUES" : head + " (" + columns + ") VALUES (" + markers + ")";
    auto insert = std::make_unique<OdbcStatement>(link_, text, parameters);
    insert->HoldAgainst(std::move(targets));
    return insert;
}

OdbcStatement& OdbcAppender::InsertFor(std::span<const Value> values, const std::vector<bool>& assigned) {
    if (values.size() != columns_.size() || assigned.size() != columns_.size())
        throw Error(ErrorKind::Misuse, select_.table, "A row needs one value per column.");
    parameters_.clear();
    for (std::size_t k = 0; k < values.size(); ++k) {
        if (!assigned[k]) continue;
        narrow_->Refuse(k, columns_[k], values[k]);
        parameters_.push_back(&values[k]);
    }
    if (const auto known = inserts_.find(assigned); known != inserts_.end()) return *known->second;
    if (inserts_.size() >= kMostInserts) inserts_.clear();
    return *inserts_.try_emplace(assigned, MakeInsert(assigned)).first->second;
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
