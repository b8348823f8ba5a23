// A table with a column of every type that the type mapping knows, and rows that are hard to copy.
#pragma once

#include <string>
#include <vector>

#include "tests/session/NativeTables.h"
#include "tests/support/TestRepository.h"

namespace varnel {

enum class Engine { Sqlite, MySql };

/// One column of the sample.
struct SampleColumn {
    std::string name;
    std::string type;  ///< as the mapping spells it: "VarWchar"
    CellForm form;
    int width, scale;
    const char *sqliteType, *mySqlType;  ///< as a source table declares it
    std::vector<Cell> values;            ///< given to the rows in turn
    bool isLong = false;                 ///< its presence makes a transfer go record by record
    /// The targets whose column type, as the mapping gives it, does not hold all of the values.
    const char* tooLargeFor = "";
    /// The one kind whose mapping knows the type.
    const char* onlyFor = "";
};

/// The sample's columns for a target, in the order of the table; "id" comes first. target: its kind, "MariaDB" when
/// such a server plays it, and "dialect" when that lacks four of SQL Server's type words.
std::vector<SampleColumn> SampleColumns(const std::vector<std::string>& target, bool withLongColumns);

std::vector<NativeColumn> NativeColumnsOf(const std::vector<SampleColumn>& columns);
std::vector<TestColumn> MappingOf(const std::vector<SampleColumn>& columns);

/// count rows, numbered from 1; every column goes through its values at its own pace.
Rows SampleRows(const std::vector<SampleColumn>& columns, int count);

/// Makes the source table and fills it.
void MakeSource(NativeDatabase& database, Engine engine, const std::string& table,
                const std::vector<SampleColumn>& columns, const Rows& rows);

}  // namespace varnel
