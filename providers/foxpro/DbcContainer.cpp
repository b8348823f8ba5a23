#include <algorithm>
#include <memory>
#include <utility>

#include "platform/CodePage.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/InputFile.h"
#include "providers/foxpro/Container.h"
#include "providers/foxpro/DbcCatalog.h"
#include "providers/foxpro/DbcPaths.h"
#include "providers/foxpro/DbfFile.h"
#include "providers/foxpro/TableIndex.h"

namespace varnel::foxpro {
namespace {

constexpr std::size_t kMostNameCharacters = 128;
constexpr std::uint32_t kDatabaseId = 1;  // what owns the tables
constexpr std::size_t kId = 0, kParent = 1, kType = 2, kName = 3, kProperties = 4;
constexpr std::size_t kContainerFields = 8;

/// Files that are part of a container's group for one change. To be made before the hold, so that what the end of the
/// hold rolls back is still of the group.
class GuestFiles {
public:
    explicit GuestFiles(JournaledFiles& files) : files_(files) {}
    ~GuestFiles() {
        for (const JournaledFiles::Number guest : guests_) files_.Detach(guest);
    }
    GuestFiles(const GuestFiles&) = delete;
    GuestFiles& operator=(const GuestFiles&) = delete;

    void Create(const NewFile& file) {
        guests_.push_back(files_.Create(file.path));
        files_.Write(guests_.back(), 0, file.bytes);
    }
    void Remove(const std::string& path) {
        guests_.push_back(files_.Attach(path));
        files_.Remove(guests_.back());
    }

private:
    JournaledFiles& files_;
    std::vector<JournaledFiles::Number> guests_;
};

class DbcContainer : public Container {
public:
    explicit DbcContainer(std::string_view storedPath)
        : path_(storedPath), folder_(FolderOf(path_)), file_(DbfFile::Open(path_)) {
        const auto hold = file_->HoldForReading();
        if ((file_->Header().tableFlags & kIsContainer) == 0 || file_->Header().fields.size() != kContainerFields) {
            throw Error(ErrorKind::Corrupt, path_, "'" + path_ + "' is no database container.");
        }
    }

    std::vector<std::string> TableNames() override {
        const auto hold = file_->HoldForReading();
        const DbcCatalog catalog = ReadContainer(*file_);
        std::vector<std::string> names;
        for (const DbcObject* table : catalog.Tables()) {
            const std::string path = catalog.PathOf(*table);
            if (!path.empty() && FileExists(ResolvedPath(folder_, path))) names.push_back(table->name);
        }
        return names;
    }

    std::optional<ContainerTable> FindTable(std::string_view name) override {
        const auto hold = file_->HoldForReading();
        const DbcCatalog catalog = ReadContainer(*file_);
        const DbcObject* table = catalog.FindTable(name);
        return table == nullptr ? std::nullopt : std::optional(Describe(catalog, *table));
    }

    std::optional<ContainerTable> FindFile(std::string_view dbfPath) override {
        const auto hold = file_->HoldForReading();
        const DbcCatalog catalog = ReadContainer(*file_);
        for (const DbcObject* table : catalog.Tables()) {
            const std::string path = catalog.PathOf(*table);
            if (FoldCase(StemOf(path)) != FoldCase(StemOf(dbfPath))) continue;
            if (IsSameFile(ResolvedPath(folder_, path), dbfPath)) return Describe(catalog, *table);
        }
        return std::nullopt;
    }

    std::string BackLink() const override { return FoldCase(path_.substr(folder_.size())); }

    void AddTable(std::string_view name, std::string_view dbfPath, std::span<const std::string> columnNames,
                  std::span<const NewFile> newFiles) override {
        GuestFiles guests(file_->Files());
        const auto hold = file_->HoldForWriting();
        RequireNewName(name);
        for (const std::string& column : columnNames) RequireLength(column);
        for (const NewFile& file : newFiles) guests.Create(file);
        const DbcProperty properties[] = {{kClassProperty, std::string(1, '\1')},
                                          {kPathProperty, StoredPathOf(dbfPath) + '\0'}};
        const std::uint32_t table = AddObject(kDatabaseId, "Table", name, EncodeDbcProperties(properties));
        for (const std::string& column : columnNames) AddObject(table, "Field", FoldCase(column), "");
        file_->Commit();
    }

    void RemoveTable(std::string_view name, std::span<const std::string> files) override {
        GuestFiles guests(file_->Files());
        const auto hold = file_->HoldForWriting();
        const DbcCatalog catalog = ReadContainer(*file_);
        const DbcObject* table = catalog.FindTable(name);
        if (table == nullptr) {
            throw Error(ErrorKind::Constraint, path_, "Table '" + std::string(name) + "' is not in '" + path_ + "'.");
        }
        for (const DbcObject& object : catalog.Objects()) {
            if (!object.isDeleted && HangsOn(catalog, object, *table)) file_->Delete(object.record);
        }
        for (const std::string& file : files) guests.Remove(file);
        file_->Commit();
    }

private:
    ContainerTable Describe(const DbcCatalog& catalog, const DbcObject& table) const {
        const std::vector<DbcProperty> properties = catalog.PropertiesOf(table);
        return {table.name, ResolvedPath(folder_, TextProperty(properties, kPathProperty).value_or("")),
                catalog.ColumnsOf(table), TextProperty(properties, kPrimaryKeyProperty).value_or("")};
    }

    void RequireNewName(std::string_view name) const {
        RequireLength(name);
        const DbcCatalog catalog = ReadContainer(*file_);
        const std::string folded = FoldCase(name);
        for (const DbcObject& object : catalog.Objects()) {
            const bool isTable = object.type == "Table" || object.type == "View";
            if (object.isDeleted || !isTable || FoldCase(object.name) != folded) continue;
            throw Error(ErrorKind::Constraint, path_,
                        object.type + " '" + std::string(name) + "' already exists in '" + path_ + "'.");
        }
    }

    void RequireLength(std::string_view name) const {
        if (!name.empty() && CharacterCount(name) <= kMostNameCharacters) return;
        throw Error(ErrorKind::Constraint, path_, "The name '" + std::string(name) + "' has not 1 to 128 characters.");
    }

    /// As a container has it: relative to its folder, in lower case.
    std::string StoredPathOf(std::string_view dbfPath) const {
        if (dbfPath.starts_with(folder_)) dbfPath.remove_prefix(folder_.size());
        std::string path = FoldCase(dbfPath);
        std::replace(path.begin(), path.end(), '/', '\\');
        return path;
    }

    /// Returns the new object's id.
    std::uint32_t AddObject(std::uint32_t parent, const char* type, std::string_view name,
                            const std::string& properties) {
        const auto id = static_cast<std::uint32_t>(file_->Records() + 1);
        std::vector<Value> values(kContainerFields);
        std::vector<bool> assigned(kContainerFields, false);
        values[kId].SetInteger(id);
        values[kParent].SetInteger(parent);
        values[kType].SetText(type);
        values[kName].SetText(name);
        for (const std::size_t k : {kId, kParent, kType, kName}) assigned[k] = true;
        if (!properties.empty()) {
            values[kProperties] = Value::OfBytes(properties);
            assigned[kProperties] = true;
        }
        file_->Append(values, assigned);
        return id;
    }

    /// The table itself, what it owns, and relations of others to it.
    static bool HangsOn(const DbcCatalog& catalog, const DbcObject& object, const DbcObject& table) {
        if (object.record == table.record || object.parent == table.id) return true;
        if (object.type != "Relation") return false;
        const auto related = TextProperty(catalog.PropertiesOf(object), kRelatedTableProperty);
        return related && FoldCase(*related) == FoldCase(table.name);
    }

    std::string path_, folder_;
    std::shared_ptr<DbfFile> file_;
};

}  // namespace

DbcCatalog ReadContainer(DbfFile& container) {
    return {container.Header(), [&](const auto& visit) { VisitRecords(container, visit); }, container.Memo()};
}

std::string FolderOf(const std::string& path) {
    const std::size_t end = path.find_last_of("/\\:");
    return end == std::string::npos ? "" : path.substr(0, end + 1);
}

std::string ResolvedPath(const std::string& folder, const std::string& path) {
    const bool isWhole = path.starts_with('/') || path.starts_with('\\') || (path.size() > 1 && path[1] == ':');
    return isWhole ? path : folder + path;
}

bool IsSameFile(std::string_view pathA, std::string_view pathB) {
    const auto a = StateOfPath(pathA), b = StateOfPath(pathB);
    return a && b && a->device == b->device && a->inode == b->inode;
}

std::unique_ptr<Container> OpenContainer(std::string_view storedPath) {
    return std::make_unique<DbcContainer>(storedPath);
}

std::vector<std::string> PhysicalNames(std::span<const std::string> longNames) {
    constexpr std::size_t kMostBytes = 10;
    const auto cut = [](std::string name, std::size_t bytes) {
        while (bytes > 0 && bytes < name.size() && (static_cast<unsigned char>(name[bytes]) & 0xC0) == 0x80) --bytes;
        name.resize(std::min(bytes, name.size()));
        return name;
    };
    std::vector<std::string> names;
    for (const std::string& longName : longNames) {
        std::string upper = longName;
        for (char& c : upper) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
        std::string name = cut(upper, kMostBytes);
        for (int number = 2; std::find(names.begin(), names.end(), name) != names.end(); ++number) {
            const std::string digits = std::to_string(number);
            name = cut(upper, kMostBytes - digits.size()) + digits;
        }
        names.push_back(std::move(name));
    }
    return names;
}

}  // namespace varnel::foxpro
