// The server's column descriptions as the data layer's types.
//
// One choice holds for every driver named in a connection string: texts are reported with the narrow codes (adChar,
// adVarChar, adLongVarChar). Sizes are characters; the texts themselves are UTF-8 and complete.
#pragma once

#include <mysql.h>

#include <cstdint>

#include "ado/types/Provider.h"
#include "providers/mysql/MySqlOptions.h"

namespace varnel::mysql {

/// How the bytes of a cell become a Value.
enum class CellForm : std::uint8_t {
    Integer,
    UnsignedBig,
    Bit,
    Single,
    Double,
    Decimal,
    Date,
    Time,
    DateTime,
    Text,
    Bytes
};

struct MySqlColumn {
    ColumnInfo info;
    CellForm form = CellForm::Text;
    std::uint64_t wireBytes = 0;  ///< the server's own bound of a text's or byte string's length; a hint
};

MySqlColumn DescribeColumn(const MYSQL_FIELD& field, const MySqlOptions& options);

}  // namespace varnel::mysql
