// Names of tables and columns that the statements of a target can bear. Access, SQL Server and MySQL get their names in
// quotes that end at their own sign; FoxPro and Oracle get them bare.
#pragma once

#include <set>
#include <string>
#include <string_view>

namespace varnel::admin {

enum class NameOf { Table, Column };

/// The names given within one database, or within one table.
class TargetNames {
public:
    /// kind: a kind of target as on the command line ("FOXPRO DIR"); bare names of columns of free tables are short.
    TargetNames(std::string_view kind, NameOf what);
    /// The nearest name to wanted that the target can bear and that was not given before, without regard to case.
    std::string Take(std::string_view wanted);

private:
    std::string_view kind_;
    NameOf what_;
    std::set<std::string> taken_;  ///< folded
};

/// True when a bare name of this kind of target would be read as a keyword.
bool IsToBeAvoided(std::string_view kind, std::string_view name);

}  // namespace varnel::admin
