// Making the files of a new Visual FoxPro table.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "providers/foxpro/Container.h"
#include "providers/tablefile/TableFile.h"

namespace varnel::foxpro {

struct NewField {
    std::string name;  ///< at most 10 characters
    char type = 'C';
    std::uint8_t length = 0, decimals = 0;
    bool nullable = true;
    bool binary = false;  ///< NOCPTRANS
    bool autoIncrement = false;
    std::uint32_t nextValue = 1;
    std::uint8_t step = 1;
};

/// The field that a definition of CREATE TABLE asks for. name: of the field in the file.
/// columnsTakeNull: whether it is nullable without a word about that. Throws Error{Syntax}, Error{NotSupported}.
NewField FieldOfDefinition(const ColumnDefinition& column, std::string name, bool columnsTakeNull);

/// The files of a table without records: storedPath (".dbf" at its end) and, when a field needs it, the .fpt beside it,
/// which comes first. backLink: of the container, "" for a free table.
/// Throws Error{Constraint} when a file exists, a name or the number of fields cannot be.
std::vector<NewFile> NewTableFiles(std::string_view storedPath, std::span<const NewField> fields,
                                   std::string_view backLink, int codePage);

/// Makes files that do not exist, the last one last. Throws Error{Io}, Error{Constraint}; no file is left behind then.
void PlaceNewFiles(std::span<const NewFile> files);

}  // namespace varnel::foxpro
