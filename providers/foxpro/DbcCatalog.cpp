#include "providers/foxpro/DbcCatalog.h"

#include <algorithm>

#include "platform/CodePage.h"
#include "platform/Error.h"

namespace varnel::foxpro {
namespace {

constexpr std::size_t kMostObjects = 1'000'000;
constexpr std::size_t kMostPropertyBytes = std::size_t{1} << 20;

[[noreturn]] void Broken(const std::string& what) {
    throw Error(ErrorKind::Corrupt, "", "The container is damaged: " + what + ".");
}

/// Where the columns of a container are in its records.
struct Places {
    std::uint32_t id, parent, type, name, nameBytes, properties;
};

const DbfField& Required(const DbfHeader& header, const char* name, char type, std::uint32_t bytes) {
    const DbfField* field = header.FindField(name);
    if (field == nullptr || field->type != type || field->length != bytes) {
        Broken(std::string("it has no column ") + name);
    }
    return *field;
}

Places PlacesIn(const DbfHeader& header) {
    const DbfField& name = Required(header, "OBJECTNAME", 'C', 128);
    return {Required(header, "OBJECTID", 'I', 4).offset,
            Required(header, "PARENTID", 'I', 4).offset,
            Required(header, "OBJECTTYPE", 'C', 10).offset,
            name.offset,
            name.length,
            Required(header, "PROPERTY", 'M', 4).offset};
}

std::string Trimmed(std::span<const std::uint8_t> bytes) {
    std::string text(bytes.begin(), bytes.end());
    text.erase(text.find_last_not_of(std::string_view(" \0", 2)) + 1);
    return text;
}

std::string Swapped(std::string text, char from, char to) {
    std::replace(text.begin(), text.end(), from, to);
    return text;
}

}  // namespace

std::string_view StemOf(std::string_view path) {
    const std::size_t separator = path.find_last_of("/\\:");
    if (separator != std::string_view::npos) path.remove_prefix(separator + 1);
    return path.substr(0, path.rfind('.'));
}

DbcCatalog::DbcCatalog(const DbfHeader& header, const GiveRecords& giveRecords, const MemoReader* memo) : memo_(memo) {
    const Places places = PlacesIn(header);
    const CodePage page(header.codePage);
    giveRecords([&](const KeyRecord& record) {
        if (objects_.size() == kMostObjects) Broken("it has too many objects");
        const ByteView bytes(record.bytes, "record " + std::to_string(record.number) + " of the container");
        DbcObject object;
        object.record = record.number;
        object.isDeleted = bytes.U8(0) == kDeletedFlag;
        object.id = bytes.U32(places.id);
        object.parent = bytes.U32(places.parent);
        object.type = Trimmed(bytes.Part(places.type, 10));
        const std::string name = Trimmed(bytes.Part(places.name, places.nameBytes));
        if (page.DecodeSome(object.name, name) != name.size()) object.name = name;
        object.properties = bytes.U32(places.properties);
        objects_.push_back(std::move(object));
    });
}

std::vector<DbcProperty> DbcCatalog::PropertiesOf(const DbcObject& object) const {
    if (object.properties == 0) return {};
    std::vector<std::uint8_t> bytes;
    const bool isWhole = memo_ != nullptr && memo_->Read(object.properties, [&](std::string_view piece) {
        if (bytes.size() + piece.size() > kMostPropertyBytes)
            Broken("the properties of " + object.name + " are too long");
        bytes.insert(bytes.end(), piece.begin(), piece.end());
    });
    if (!isWhole) Broken("the properties of " + object.name + " are missing");
    return ParseDbcProperties(bytes);
}

std::vector<const DbcObject*> DbcCatalog::Tables() const {
    std::vector<const DbcObject*> tables;
    for (const DbcObject& object : objects_) {
        if (!object.isDeleted && object.type == "Table") tables.push_back(&object);
    }
    return tables;
}

const DbcObject* DbcCatalog::FindTable(std::string_view name) const {
    const std::vector<const DbcObject*> tables = Tables();
    const auto find = [&](const auto& matches) {
        const auto found = std::find_if(tables.begin(), tables.end(), matches);
        return found == tables.end() ? nullptr : *found;
    };
    const std::string wanted = FoldCase(name), loose = Swapped(wanted, ' ', '_');
    const DbcObject* table = find([&](const DbcObject* each) { return FoldCase(each->name) == wanted; });
    if (table != nullptr) return table;
    table = find([&](const DbcObject* each) { return Swapped(FoldCase(each->name), ' ', '_') == loose; });
    if (table != nullptr) return table;
    return find([&](const DbcObject* each) { return FoldCase(StemOf(PathOf(*each))) == wanted; });
}

std::string DbcCatalog::PathOf(const DbcObject& table) const {
    return TextProperty(PropertiesOf(table), kPathProperty).value_or("");
}

std::vector<std::string> DbcCatalog::ColumnsOf(const DbcObject& table) const {
    std::vector<const DbcObject*> fields;
    for (const DbcObject& object : objects_) {
        if (!object.isDeleted && object.type == "Field" && object.parent == table.id) fields.push_back(&object);
    }
    std::stable_sort(fields.begin(), fields.end(),
                     [](const DbcObject* a, const DbcObject* b) { return a->id < b->id; });
    std::vector<std::string> names;
    names.reserve(fields.size());
    for (const DbcObject* field : fields) names.push_back(field->name);
    return names;
}

}  // namespace varnel::foxpro
