// Texts for SQL Server's columns of one byte a character: the server makes question marks of what its code page lacks.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ado/types/Provider.h"
#include "platform/CodePage.h"
#include "providers/odbc/OdbcLink.h"

namespace varnel::odbc {

class NarrowTexts {
public:
    /// Asks the server for its database's code page when a column needs it. A server that does not say is believed to
    /// hold everything.
    NarrowTexts(OdbcLink& link, const std::vector<ColumnInfo>& columns);

    /// Throws Error{Conversion} naming the column and the first character that it cannot hold.
    void Refuse(const ColumnInfo& column, const Value& value);

private:
    std::optional<CodePage> page_;
    std::string scratch_;
};

}  // namespace varnel::odbc
