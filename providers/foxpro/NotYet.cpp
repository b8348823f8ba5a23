#include "platform/Error.h"
#include "providers/foxpro/Container.h"
#include "providers/foxpro/DbfFile.h"
#include "providers/foxpro/IndexKeeper.h"

namespace varnel::foxpro {

std::unique_ptr<IndexKeeper> OpenIndexKeeper(DbfFile& table) {
    if (!table.Header().HasIndex() || !FindCompanion(table.StoredPath(), "cdx")) return nullptr;
    throw Error(ErrorKind::NotSupported, table.Name(), "'" + table.Name() + "' has an index, which is not kept yet");
}

namespace {

class NoContainer : public Container {
public:
    std::vector<std::string> TableNames() override { return {}; }
    std::optional<ContainerTable> FindTable(std::string_view) override { return std::nullopt; }
    std::optional<ContainerTable> FindFile(std::string_view) override { return std::nullopt; }
    std::string BackLink() const override { return ""; }
    void AddTable(std::string_view, std::string_view, std::span<const std::string>) override {}
    void RemoveTable(std::string_view) override {}
};

}  // namespace

std::unique_ptr<Container> OpenContainer(std::string_view) {
    return std::make_unique<NoContainer>();
}

std::vector<std::string> PhysicalNames(std::span<const std::string> longNames) {
    return {longNames.begin(), longNames.end()};
}

}  // namespace varnel::foxpro
