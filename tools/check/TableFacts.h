// What the check knows about one table of the session while its rules run.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ado/types/Catalog.h"
#include "repository/model/SessionModel.h"
#include "tools/check/Finding.h"

namespace varnel::admin {

enum class Preparation : std::uint8_t { Append, Empty, Create, DropAndCreate, Export };
enum class WayOfWriting : std::uint8_t { NewRecords, Parameters, Batches, TextLines };

struct TableFacts {
    std::int16_t i = 0;  ///< index in SourceTables and DestTables
    Preparation preparation = Preparation::Append;
    WayOfWriting way = WayOfWriting::NewRecords;
    std::vector<const ColumnEntry*> columns;  ///< the selected ones, in order
    std::vector<std::string> written;         ///< the target column that each of them goes to
    std::vector<ColumnInfo> source;           ///< one per selected column; empty when the source could not be opened
    bool typesAreGuessed = false;             ///< the source's types follow from the values at hand
    std::vector<TableColumn> target;          ///< the target's columns as the rows will meet them; empty when unknown
    TableReport* report = nullptr;

    const TableEntry& From() const { return SourceTables(i); }
    const TableEntry& To() const { return DestTables(i); }
    Findings& Found() const { return report->findings; }
    /// True when the run makes the table.
    bool Makes() const { return preparation == Preparation::Create || preparation == Preparation::DropAndCreate; }
    /// The target column that selected column k goes to; null when it is unknown.
    const TableColumn* TargetOf(std::size_t k) const;
};

/// The position in names of one that equals name without regard to case; names.size() when there is none.
std::size_t FindName(const std::vector<std::string>& names, const std::string& name);

}  // namespace varnel::admin
