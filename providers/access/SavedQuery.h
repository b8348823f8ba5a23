// A query that is kept in the database, as the rows of MSysQueries describe it, and the statement that it stands for.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "providers/access/Schema.h"

namespace varnel::access {

/// One row of MSysQueries. What the fields mean depends on attribute.
struct QueryPart {
    std::int64_t attribute = 0;
    std::int64_t flag = 0;
    std::string name1, name2, expression;
    std::string order;  ///< bytes by which the parts of one attribute are sorted
};

/// The SELECT statement of a query that reads plain columns of one table or query, with conditions and an order. parts:
/// in any order. Throws Error{NotSupported} "The query 'x' is of kind … and cannot be read." for any other.
std::string QueryText(const std::string& name, std::vector<QueryPart> parts);

/// The parts of a query out of the database. Throws Error{Corrupt}.
std::vector<QueryPart> ReadQueryParts(Schema& schema, const CatalogEntry& query);

}  // namespace varnel::access
