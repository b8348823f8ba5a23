// Texts for SQL Server's columns of one byte a character: the server makes question marks of what a column's code page
// lacks.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "ado/types/Provider.h"
#include "platform/CodePage.h"
#include "providers/odbc/OdbcLink.h"

namespace varnel::odbc {

class NarrowTexts {
public:
    /// Asks the server for the code page of each column of table (as SQL writes it) that needs one. Where it does not
    /// say, the page of the database holds; where it does not say that either, or the system cannot convert the page, a
    /// column is believed to hold everything.
    NarrowTexts(OdbcLink& link, const std::string& table, const std::vector<ColumnInfo>& columns);

    /// Throws Error{Conversion} naming column k and the first character that it cannot hold.
    void Refuse(std::size_t k, const ColumnInfo& column, const Value& value);

private:
    const CodePage* Page(int number);

    std::map<int, CodePage> pages_;
    std::vector<const CodePage*> pageOf_;  ///< of each column; null for one that holds everything
    std::string scratch_;
};

}  // namespace varnel::odbc
