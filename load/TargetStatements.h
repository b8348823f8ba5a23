// The statements that prepare and fill a target table, as text.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace varnel {

/// "drop table …", "delete from …" and "Create Table …" for table i. Names are inserted as stored.
/// Throw Error{Misuse} when there is no table i.
std::string DropStatement(std::int16_t i);
std::string DeleteStatement(std::int16_t i);
/// Lines are separated by a lone carriage return. A table without selected columns gives a statement that every
/// database rejects.
std::string CreateStatement(std::int16_t i);

/// The texts that write the rows of a target table.
struct WritingTexts {
    std::string insert;  ///< up to the values: "INSERT INTO T (ID,NAME) VALUES ("; for MySQL without the parenthesis
    std::string select;  ///< whose columns new records fill
};
WritingTexts BuildWritingTexts(std::int16_t i);
/// The target column names of table i, in order: DCName, or SCName when the load option is "DROP".
std::vector<std::string> TargetColumns(std::int16_t i);

}  // namespace varnel
