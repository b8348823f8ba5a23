// Which type word a column gets in the target database, from the name of its ADO type in the source.
#pragma once

#include <string>
#include <string_view>

namespace varnel {

/// The type word for the kind of the side that Direction names: "SOURCE" asks for SessionDef.SourceDBName, "DEST" for
/// TargetDBName. Any other direction and any other kind give TypeName back unchanged.
std::string MapDataType(std::string_view TypeName, std::string_view Direction);

/// The type word of one kind; "" for a name that the kind has no row for. Names compare exactly ("VarWchar").
std::string MapAccessType(std::string_view TypeName);
std::string MapFoxProType(std::string_view TypeName);
std::string MapOracleType(std::string_view TypeName);
std::string MapMSSQLType(std::string_view TypeName);
std::string MapMySQLType(std::string_view TypeName);

}  // namespace varnel
