// Whether a container tells the truth.
#include <algorithm>
#include <map>

#include "platform/CodePage.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "providers/foxpro/Container.h"
#include "providers/foxpro/DbcPaths.h"
#include "providers/foxpro/DbfFile.h"
#include "providers/foxpro/TableIndex.h"

namespace varnel::foxpro {
namespace {

constexpr std::size_t kFirstObjects = 5;

class Check {
public:
    Check(std::string path, std::vector<std::string>& faults)
        : path_(std::move(path)), folder_(FolderOf(path_)), faults_(faults) {}

    void Objects(const DbcCatalog& catalog) {
        std::map<std::uint32_t, const DbcObject*> live;
        for (const DbcObject& object : catalog.Objects()) {
            if (object.id != object.record) Note(object, "has the id " + std::to_string(object.id));
            if (!object.isDeleted) live[object.id] = &object;
        }
        for (const auto& [id, object] : live) {
            const auto parent = live.find(object->parent);
            if (parent == live.end()) {
                Note(*object, "belongs to object " + std::to_string(object->parent) + ", which is not there");
            }
            if (id <= kFirstObjects && object->type != "Database") Note(*object, "stands in the place of the database");
        }
        for (std::uint32_t id = 1; id <= kFirstObjects; ++id) {
            if (live.count(id) == 0) faults_.push_back("'" + path_ + "' lacks its object " + std::to_string(id) + ".");
        }
    }

    void Table(const DbcCatalog& catalog, const DbcObject& table) {
        const std::string path = catalog.PathOf(table);
        if (path.empty()) return Note(table, "names no file");
        const std::string resolved = ResolvedPath(folder_, path);
        if (!FileExists(resolved)) return Note(table, "is the file '" + path + "', which is not there");
        const auto file = DbfFile::Open(resolved);
        const auto hold = file->HoldForReading();
        const DbfHeader& header = file->Header();
        const std::string link = ResolvedPath(FolderOf(resolved), header.backLink);
        if (header.IsFree() || !IsSameFile(link, path_)) Note(table, "is a file that does not name this container");
        const std::size_t columns = catalog.ColumnsOf(table).size();
        if (columns != header.fields.size()) {
            Note(table,
                 "has " + std::to_string(columns) + " columns, its file " + std::to_string(header.fields.size()));
        }
    }

    template <class Step>
    void Try(const Step& step) {
        try {
            step();
        } catch (const Error& error) {
            faults_.push_back("'" + path_ + "': " + error.what());
        }
    }

private:
    void Note(const DbcObject& object, const std::string& what) {
        faults_.push_back("'" + path_ + "': " + object.type + " '" + object.name + "' (object " +
                          std::to_string(object.record) + ") " + what + ".");
    }

    std::string path_, folder_;
    std::vector<std::string>& faults_;
};

}  // namespace

std::vector<std::string> CheckContainer(std::string_view storedPath) {
    std::vector<std::string> faults;
    Check check{std::string(storedPath), faults};
    check.Try([&] {
        const auto file = DbfFile::Open(storedPath);
        const auto hold = file->HoldForReading();
        const DbcCatalog catalog = ReadContainer(*file);
        check.Objects(catalog);
        for (const DbcObject* table : catalog.Tables()) check.Try([&] { check.Table(catalog, *table); });
        const std::vector<std::string> ofIndex = CheckIndex(*file);
        faults.insert(faults.end(), ofIndex.begin(), ofIndex.end());
    });
    return faults;
}

}  // namespace varnel::foxpro
