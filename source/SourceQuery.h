// Reading a source table: its selected columns, its SELECT and its count query, each in the dialect of the source kind.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "repository/model/SessionModel.h"

namespace varnel {

/// The column records of a table that take part, in array order: equal TabID, SSelected 1.
std::vector<const ColumnEntry*> SelectedColumns(std::int16_t TabID);

struct SourceQueries {
    std::string select;
    std::string count;
};

/// How a MySQL table is named after FROM: the load engine writes the owner before it, the text export does not.
enum class MySqlFrom { OwnerAndTable, TableOnly };

/// The two queries of table i, condition included. countHead: what the count query begins with ("Select count(*) ").
/// Throws Error{Misuse} when there is no table i.
SourceQueries BuildSourceQueries(std::int16_t i, std::string_view countHead, MySqlFrom mySqlFrom);

}  // namespace varnel
