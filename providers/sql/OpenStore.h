// The table stores that the process has open: one object per file or folder and set of options, however many sessions
// use it and whatever path leads to it. It ends with the last of them.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/InputFile.h"
#include "providers/tablefile/TableFile.h"

namespace varnel::sql {

class OpenStore {
public:
    /// storedPath: the file or folder that store stands for; "" for one that lies nowhere.
    OpenStore(std::unique_ptr<TableStore> store, std::string storedPath);

    TableStore& Tables() const { return *store_; }
    const std::string& StoredPath() const { return storedPath_; }
    /// False when the file or folder was deleted or replaced since it was opened.
    bool StillThere() const;
    /// True when the path leads to the file or folder that this store was opened on.
    bool StandsFor(const std::string& storedPath) const;

private:
    std::unique_ptr<TableStore> store_;
    std::string storedPath_;
    std::optional<FileState> place_;
};

/// The process's store for the path and these options; open makes it when there is none. Throws what open throws.
std::shared_ptr<OpenStore> FindOrOpenStore(const std::string& storedPath, const std::string& options,
                                           const std::function<std::unique_ptr<TableStore>()>& open);

}  // namespace varnel::sql
