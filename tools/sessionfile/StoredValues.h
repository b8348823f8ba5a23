// Values as the repository's tables hold them, under the tables' own column names.
#pragma once

#include <string>
#include <vector>

#include "ado/types/Value.h"

namespace varnel::admin {

struct StoredValue {
    std::string column;
    Value value;
    std::string place;  ///< "shop.toml:12", where it was read; "" when it came from a repository
};
using StoredValues = std::vector<StoredValue>;

/// One row of one of the repository's tables. A column that is not named is Null.
struct StoredRow {
    std::string table;
    StoredValues values;
    std::string place;
};

}  // namespace varnel::admin
