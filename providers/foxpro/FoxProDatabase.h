// FoxPro and dBASE tables: a folder of .dbf files, or a database container (.dbc), as a store of tables.
// Start here. Needs nothing but the folder or the container.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "providers/foxpro/Container.h"
#include "providers/tablefile/TableFile.h"

namespace varnel::foxpro {

class DbfFile;

struct DatabaseOptions {
    bool showDeleted = false;        ///< Deleted=NO: rows marked as deleted are rows
    bool columnsTakeNull = true;     ///< Null=NO: columns of new tables are NOT NULL
    int codePageWhenNoneStated = 0;  ///< of tables whose head names none; 0: 1252 for Visual FoxPro, 850 for others
    int newTableCodePage = 1252;     ///< of tables made here
};

class FoxProDatabase : public TableStore {
public:
    /// storedPath: a folder; of a .dbf file its folder; or a .dbc file. Throws Error{Io}.
    explicit FoxProDatabase(std::string_view storedPath, DatabaseOptions options = {});

    /// The container's tables, else the stems of the folder's .dbf files.
    std::vector<std::string> TableNames() override;
    bool HasTable(std::string_view name) override;
    /// name: of a table of the container; a file's stem, or its name with or without ".dbf"; a relative or full path
    /// with either separator. Without regard to case. Throws Error "File 'x.dbf' does not exist."
    std::unique_ptr<TableFile> OpenTable(std::string_view name) override;
    /// Type words: letters, short and long forms ("C", "CHAR", "CHARACTER"). "AUTOINC" (an INTEGER whose arguments are
    /// the next value and the step) and "NOCPTRANS" may follow behind a blank.
    void CreateTable(std::string_view name, std::span<const ColumnDefinition> columns) override;
    void DropTable(std::string_view name) override;

private:
    /// The stored path of the .dbf that a name means; the file need not exist.
    std::string PathOf(std::string_view name) const;
    std::optional<ContainerTable> InContainer(std::string_view name);
    static std::optional<ContainerTable> ByBackLink(DbfFile& file);

    std::string folder_;
    std::unique_ptr<Container> container_;
    DatabaseOptions options_;
};

}  // namespace varnel::foxpro
