#include "tools/RunSql.h"

#include <cstdio>

#include "ado/Ado.h"
#include "tools/RowOutput.h"

namespace varnel::admin {

void RunSql(const std::string& connectionString, const std::string& statement, bool csv) {
    Recordset rows;
    rows.Open(statement, connectionString);
    if (!rows.IsOpen())
        std::puts("done");
    else if (csv)
        WriteCsv(rows);
    else
        WriteAligned(rows, {});
}

}  // namespace varnel::admin
