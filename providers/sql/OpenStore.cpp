#include "providers/sql/OpenStore.h"

#include <utility>
#include <vector>

namespace varnel::sql {
namespace {

struct Entry {
    std::string options;
    std::weak_ptr<OpenStore> store;
};

/// Only FindOrOpenStore touches it.
std::vector<Entry>& OpenStores() {
    static std::vector<Entry> stores;
    return stores;
}

}  // namespace

OpenStore::OpenStore(std::unique_ptr<TableStore> store, std::string storedPath)
    : store_(std::move(store)), storedPath_(std::move(storedPath)) {
    if (!storedPath_.empty()) place_ = StateOfPath(storedPath_);
}

bool OpenStore::StillThere() const {
    return storedPath_.empty() || StandsFor(storedPath_);
}

bool OpenStore::StandsFor(const std::string& storedPath) const {
    const std::optional<FileState> now = StateOfPath(storedPath);
    return now && place_ && now->device == place_->device && now->inode == place_->inode;
}

std::shared_ptr<OpenStore> FindOrOpenStore(const std::string& storedPath, const std::string& options,
                                           const std::function<std::unique_ptr<TableStore>()>& open) {
    std::vector<Entry>& stores = OpenStores();
    std::erase_if(stores, [](const Entry& entry) { return entry.store.expired(); });
    for (const Entry& entry : stores) {
        std::shared_ptr<OpenStore> store = entry.store.lock();
        // The number of a deleted folder may be given to a new one: the old path is asked as well.
        if (entry.options == options && store->StandsFor(storedPath) && store->StillThere()) return store;
    }
    auto made = std::make_shared<OpenStore>(open(), storedPath);
    stores.push_back({options, made});
    return made;
}

}  // namespace varnel::sql
