// A database container (.dbc) as a store of tables needs it: long names of tables and columns.
#pragma once

#include <cstdint>
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
    std::string primaryTag;  ///< the index tag of its primary key; "" without one
};

/// A file to be made together with a change of the container.
struct NewFile {
    std::string path;  ///< stored; in the container's folder
    std::vector<std::uint8_t> bytes;
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
    /// A commit point of the container's own files, of which newFiles, the table's, become a part: all of it is there
    /// after the process ended at any moment, or nothing. Without newFiles the table's file exists already.
    /// Throws Error{Constraint} when the name is taken or a file exists.
    virtual void AddTable(std::string_view name, std::string_view dbfPath, std::span<const std::string> columnNames,
                          std::span<const NewFile> newFiles = {}) = 0;
    /// The reverse; files: stored paths in the container's folder that go with it.
    virtual void RemoveTable(std::string_view name, std::span<const std::string> files = {}) = 0;
};

/// storedPath: of the .dbc. Throws Error when it is none or cannot be read.
std::unique_ptr<Container> OpenContainer(std::string_view storedPath);

/// Makes an empty container: .dbc, .dct and .dcx. Throws Error{Constraint} when one of them exists, Error{Io}.
void CreateContainer(std::string_view storedPath);

/// What is wrong with a container, each fault in words: ids, owners, files of tables that are missing or belong to
/// another container, numbers of columns, its index. Empty when all is well.
std::vector<std::string> CheckContainer(std::string_view storedPath);

/// Physical names of at most 10 characters for long ones, as Visual FoxPro makes them ("TRANSACTIO", "TRANSACTI2").
std::vector<std::string> PhysicalNames(std::span<const std::string> longNames);

}  // namespace varnel::foxpro
