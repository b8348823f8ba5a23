// A database container (.dbc) as a store of tables needs it: long names of tables and columns.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace varnel::foxpro {

struct ContainerTable {
    std::string name;     ///< as the container has it
    std::string dbfPath;  ///< stored path of its file
    /// Long names of the visible fields in physical order; empty when the container lists none.
    std::vector<std::string> columnNames;
};

class Container {
public:
    virtual ~Container() = default;
    /// Of tables whose file exists, in the container's order.
    virtual std::vector<std::string> TableNames() = 0;
    /// name: a table's name in any accepted form (case, blank or underscore, file stem). Nothing when it lists none.
    virtual std::optional<ContainerTable> FindTable(std::string_view name) = 0;
    /// The table that this file is, by the path that the container has for it.
    virtual std::optional<ContainerTable> FindFile(std::string_view dbfPath) = 0;
    /// What a new table of the container carries as its back link (relative, as stored).
    virtual std::string BackLink() const = 0;
    /// The file exists when these are called, complete; a commit point of the container's own files.
    /// Throws Error{Constraint} when the name is taken.
    virtual void AddTable(std::string_view name, std::string_view dbfPath,
                          std::span<const std::string> columnNames) = 0;
    virtual void RemoveTable(std::string_view name) = 0;
};

/// storedPath: of the .dbc. Throws Error when it is none or cannot be read.
std::unique_ptr<Container> OpenContainer(std::string_view storedPath);

/// Physical names of at most 10 characters for long ones, as Visual FoxPro makes them ("TRANSACTIO", "TRANSACTI2").
std::vector<std::string> PhysicalNames(std::span<const std::string> longNames);

}  // namespace varnel::foxpro
