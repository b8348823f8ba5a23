// Making an empty container.
#include <array>
#include <utility>

#include "platform/Clock.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/JournaledFiles.h"
#include "providers/foxpro/CdxBuilder.h"
#include "providers/foxpro/Container.h"
#include "providers/foxpro/DbcCatalog.h"
#include "providers/foxpro/DbcPaths.h"
#include "providers/foxpro/KeyExpression.h"

namespace varnel::foxpro {
namespace {

constexpr std::size_t kHeadBytes = 32, kDescriptorBytes = 32, kBackLinkBytes = 263;
constexpr std::size_t kMemoBlock = 64, kFirstMemoBlock = 8;

struct ContainerField {
    const char* name;
    char type;
    std::uint8_t bytes, flags;
};

constexpr ContainerField kFields[] = {{"OBJECTID", 'I', 4, 4},     {"PARENTID", 'I', 4, 4}, {"OBJECTTYPE", 'C', 10, 0},
                                      {"OBJECTNAME", 'C', 128, 0}, {"PROPERTY", 'M', 4, 4}, {"CODE", 'M', 4, 4},
                                      {"RIINFO", 'C', 6, 0},       {"USER", 'M', 4, 0}};
constexpr const char* kFirstObjects[] = {"Database", "TransactionLog", "StoredProceduresSource",
                                         "StoredProceduresObject", "StoredProceduresDependencies"};

class Bytes {
public:
    void Put(std::uint64_t number, std::size_t bytes) {
        for (std::size_t k = 0; k < bytes; ++k, number >>= 8) bytes_.push_back(static_cast<std::uint8_t>(number));
    }
    void PutBig(std::uint64_t number, std::size_t bytes) {
        for (std::size_t k = bytes; k-- > 0;) bytes_.push_back(static_cast<std::uint8_t>(number >> (8 * k)));
    }
    void PutText(std::string_view text, std::size_t bytes, char fill) {
        bytes_.insert(bytes_.end(), text.begin(), text.end());
        bytes_.insert(bytes_.end(), bytes - text.size(), static_cast<std::uint8_t>(fill));
    }
    std::vector<std::uint8_t> Take() { return std::move(bytes_); }

private:
    std::vector<std::uint8_t> bytes_;
};

void PutHead(Bytes& out) {
    constexpr std::size_t kHeader = kHeadBytes + std::size(kFields) * kDescriptorBytes + 1 + kBackLinkBytes;
    const CivilTime today = ToCivil(Now());
    out.Put(0x30, 1);
    for (const int part : {today.year % 100, today.month, today.day}) out.Put(static_cast<std::uint64_t>(part), 1);
    out.Put(std::size(kFirstObjects), 4);
    out.Put(kHeader, 2);
    std::size_t recordBytes = 1;
    for (const ContainerField& field : kFields) recordBytes += field.bytes;
    out.Put(recordBytes, 2);
    out.Put(0, 16);
    out.Put(kHasIndex | kHasMemo | kIsContainer, 1);
    out.Put(3, 1);  // code page 1252
    out.Put(0, 2);
    std::uint32_t offset = 1;
    for (const ContainerField& field : kFields) {
        out.PutText(field.name, 11, '\0');
        out.PutText({&field.type, 1}, 1, '\0');
        out.Put(std::exchange(offset, offset + field.bytes), 4);
        out.Put(field.bytes, 1);
        out.Put(0, 1);
        out.Put(field.flags, 1);
        out.Put(0, 13);
    }
    out.Put(0x0D, 1);
    out.Put(0, kBackLinkBytes);
}

std::vector<std::uint8_t> ContainerBytes() {
    Bytes out;
    PutHead(out);
    for (std::size_t k = 0; k < std::size(kFirstObjects); ++k) {
        out.Put(kLiveFlag, 1);
        out.Put(k + 1, 4);
        out.Put(1, 4);
        out.PutText("Database", 10, ' ');
        out.PutText(kFirstObjects[k], 128, ' ');
        out.Put(k == 0 ? kFirstMemoBlock : 0, 4);
        out.Put(0, 4);
        out.PutText("", 6, ' ');
        out.Put(0, 4);
    }
    out.Put(kEndMark, 1);
    return out.Take();
}

/// A memo file that holds the database's one property, the version of the format.
std::vector<std::uint8_t> MemoBytes() {
    const DbcProperty version{kVersionProperty, {'\0', '\0', '\0', '\x0A'}};
    const std::string properties = EncodeDbcProperties({&version, 1});
    Bytes out;
    out.PutBig(kFirstMemoBlock + 1, 4);
    out.Put(0, 2);
    out.PutBig(kMemoBlock, 2);
    out.Put(0, kFirstMemoBlock * kMemoBlock - 8);
    out.PutBig(1, 4);
    out.PutBig(properties.size(), 4);
    out.PutText(properties, kMemoBlock - 8, '\0');
    return out.Take();
}

CdxTag ContainerTag(std::string name, std::uint16_t keyLength, std::string keyText) {
    CdxTag tag;
    tag.name = std::move(name);
    tag.keyLength = keyLength;
    tag.options = kCompactTag | kCompoundTag | kFilteredTag;
    tag.signature = 1;
    tag.keyText = std::move(keyText);
    tag.filterText = ".NOT.DELETED()";
    return tag;
}

void BuildContainerIndex(JournaledFiles& files, JournaledFiles::Number number,
                         const std::vector<std::uint8_t>& container) {
    const DbfHeader header = ReadDbfHeader(ByteView(container, "container"), container.size(), "container");
    const FindKeyField fields = [&](std::string_view name) { return header.FindField(name); };
    const std::vector<CdxTag> tags = {ContainerTag("OBJECTNAME", 148, "STR(parentid)+objecttype+LOWER(objectname)"),
                                      ContainerTag("OBJECTTYPE", 20, "STR(parentid)+objecttype")};
    const std::array<KeyShape, 2> shapes = {KeyShape{148, ' '}, KeyShape{20, ' '}};
    BuildCdx(files, number, tags, shapes, 1, [&](std::size_t at, KeySorter& sorter) {
        TagKeys keys(tags[at], header, fields);
        std::vector<std::uint8_t> key;
        for (std::uint32_t record = 1; record <= std::size(kFirstObjects); ++record) {
            const auto bytes = std::span(container).subspan(header.headerBytes + (record - 1) * header.recordBytes,
                                                            header.recordBytes);
            if (keys.KeyOf({bytes, record}, key)) sorter.Add(key, record);
        }
    });
}

}  // namespace

void CreateContainer(std::string_view storedPath) {
    const std::string path(storedPath), stem = FolderOf(path) + std::string(StemOf(path));
    if (FileExists(path)) throw Error(ErrorKind::Constraint, path, "File already exists: '" + path + "'");
    for (const char* extension : {".dct", ".dcx"}) {
        const std::string other = stem + extension;
        if (FileExists(other)) throw Error(ErrorKind::Constraint, other, "File already exists: '" + other + "'");
    }
    OutputFile(path, OutputFile::Mode::Truncate).Close();
    const auto files = OpenJournaledFiles(path, false);
    const auto hold = files->HoldForWriting();
    const std::vector<std::uint8_t> container = ContainerBytes();
    const auto memo = files->Create(stem + ".dct"), index = files->Create(stem + ".dcx");
    files->Write(0, 0, container);
    files->Write(memo, 0, MemoBytes());
    BuildContainerIndex(*files, index, container);
    files->Commit();
}

}  // namespace varnel::foxpro
