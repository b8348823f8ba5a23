#include "platform/Error.h"
#include "providers/foxpro/Container.h"
#include "providers/foxpro/DbfFile.h"
#include "providers/foxpro/IndexKeeper.h"

namespace varnel::foxpro {

std::unique_ptr<IndexKeeper> OpenIndexKeeper(DbfFile& table) {
    if (!table.Header().HasIndex() || !FindCompanion(table.StoredPath(), "cdx")) return nullptr;
    throw Error(ErrorKind::NotSupported, table.Name(), "'" + table.Name() + "' has an index, which is not kept yet");
}

std::unique_ptr<Container> OpenContainer(std::string_view storedPath) {
    throw Error(ErrorKind::NotSupported, std::string(storedPath), "Database containers are not read yet");
}

std::vector<std::string> PhysicalNames(std::span<const std::string> longNames) {
    return {longNames.begin(), longNames.end()};
}

}  // namespace varnel::foxpro
