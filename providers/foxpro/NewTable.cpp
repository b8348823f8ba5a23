#include "providers/foxpro/NewTable.h"

#include <algorithm>
#include <cerrno>
#include <deque>
#include <filesystem>
#include <set>
#include <system_error>
#include <utility>

#include "platform/Clock.h"
#include "platform/CodePage.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/StoredPath.h"
#include "providers/foxpro/DbfFile.h"
#include "providers/foxpro/DbfHeader.h"
#include "providers/foxpro/MemoFile.h"
#include "providers/foxpro/StoredNumbers.h"

namespace varnel::foxpro {
namespace {

constexpr std::size_t kMaxFields = 255, kMaxRecordBytes = 65'500, kNameBytes = 10;
constexpr std::size_t kHeadBytes = 32, kDescriptorBytes = 32, kBackLinkBytes = 263;

std::vector<std::uint8_t> NullFlagsDescriptor(std::size_t bits) {
    std::vector<std::uint8_t> descriptor(kDescriptorBytes);
    constexpr std::string_view kName = "_NullFlags";
    std::copy(kName.begin(), kName.end(), descriptor.begin());
    descriptor[11] = '0';
    descriptor[16] = static_cast<std::uint8_t>((bits + 7) / 8);
    descriptor[18] = 0x05;
    return descriptor;
}

bool IsVarying(const NewField& field) {
    return field.type == 'V' || field.type == 'Q';
}

std::vector<std::uint8_t> Descriptor(const NewField& field) {
    constexpr std::string_view kBinaryTypes = "IYTBQW";
    std::vector<std::uint8_t> descriptor(kDescriptorBytes);
    std::copy(field.name.begin(), field.name.end(), descriptor.begin());
    descriptor[11] = static_cast<std::uint8_t>(field.type);
    descriptor[16] = field.length;
    descriptor[17] = field.decimals;
    const bool isBinary = field.binary || kBinaryTypes.find(field.type) != std::string_view::npos;
    descriptor[18] = static_cast<std::uint8_t>((field.nullable ? 0x02 : 0) | (isBinary ? 0x04 : 0) |
                                               (field.autoIncrement ? 0x08 : 0));
    if (!field.autoIncrement) return descriptor;
    PutLittle(std::span(descriptor).subspan(19, 4), field.nextValue);
    descriptor[23] = field.step;
    return descriptor;
}

bool NeedsMemo(const NewField& field) {
    return field.type == 'M' || field.type == 'G' || field.type == 'W';
}

/// 32 as soon as there is a varying length or a blob, 31 for an autoincrement.
std::uint8_t VersionFor(std::span<const NewField> fields) {
    std::uint8_t version = 0x30;
    for (const NewField& field : fields) {
        if (IsVarying(field) || field.type == 'W') return 0x32;
        if (field.autoIncrement) version = 0x31;
    }
    return version;
}

void CheckName(const NewField& field, std::set<std::string>& taken) {
    const std::string& name = field.name;
    const auto isLetter = [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || static_cast<unsigned char>(c) >= 0x80;
    };
    const auto belongs = [&](char c) { return isLetter(c) || (c >= '0' && c <= '9'); };
    if (name.empty() || !isLetter(name[0]) || !std::all_of(name.begin(), name.end(), belongs)) {
        throw Error(ErrorKind::Constraint, name, "Field name '" + name + "' is invalid");
    }
    if (name.size() > kNameBytes) {
        throw Error(ErrorKind::Constraint, name,
                    "Field name '" + name + "' is longer than the 10 characters of a free table");
    }
    if (!taken.insert(FoldCase(name)).second) {
        throw Error(ErrorKind::Constraint, name, "Field name '" + name + "' is a duplicate");
    }
}

/// The whole file of a table without records.
class NewTableBytes {
public:
    NewTableBytes(std::string table, std::span<const NewField> fields, std::string_view backLink, int codePage)
        : table_(std::move(table)) {
        bytes_.resize(kHeadBytes);
        std::set<std::string> taken;
        for (const NewField& field : fields) {
            CheckName(field, taken);
            Add(Descriptor(field));
            bits_ += (IsVarying(field) ? 1u : 0u) + (field.nullable ? 1u : 0u);
        }
        if (bits_ > 0) Add(NullFlagsDescriptor(bits_));
        CheckSizes();
        PutHead(fields, codePage);
        PutBackLink(backLink);
    }
    const std::vector<std::uint8_t>& Bytes() const { return bytes_; }

private:
    void Add(std::vector<std::uint8_t> descriptor) {
        PutLittle(std::span(descriptor).subspan(12, 4), recordBytes_);
        recordBytes_ += descriptor[16];
        bytes_.insert(bytes_.end(), descriptor.begin(), descriptor.end());
        ++count_;
    }

    void CheckSizes() const {
        const auto refuse = [&](const std::string& why) {
            throw Error(ErrorKind::Constraint, table_, "Table '" + table_ + "' cannot be made: " + why);
        };
        if (count_ == 0) refuse("it has no fields");
        if (count_ > kMaxFields) {
            refuse(bits_ > 0 ? "it has more than the 254 fields that a table with nullable fields can have"
                             : "it has more than 255 fields");
        }
        if (recordBytes_ > kMaxRecordBytes) {
            refuse("its record of " + std::to_string(recordBytes_) + " bytes is longer than 65500");
        }
    }

    void PutHead(std::span<const NewField> fields, int codePage) {
        const std::span<std::uint8_t> head(bytes_);
        const CivilTime today = ToCivil(Now());
        head[0] = VersionFor(fields);
        head[1] = static_cast<std::uint8_t>(today.year % 100);
        head[2] = static_cast<std::uint8_t>(today.month);
        head[3] = static_cast<std::uint8_t>(today.day);
        PutLittle(head.subspan(8, 2), bytes_.size() + 1 + kBackLinkBytes);
        PutLittle(head.subspan(10, 2), recordBytes_);
        head[kTableFlagsAt] = std::any_of(fields.begin(), fields.end(), NeedsMemo) ? kHasMemo : 0;
        head[29] = MarkOfCodePage(codePage);
        if (head[29] != 0) return;
        throw Error(ErrorKind::NotSupported, table_,
                    "Code page " + std::to_string(codePage) + " is none that FoxPro tables can have");
    }

    void PutBackLink(std::string_view backLink) {
        if (backLink.size() >= kBackLinkBytes) {
            throw Error(ErrorKind::Constraint, table_, "The container's name is too long for its tables");
        }
        bytes_.push_back(0x0D);
        const std::size_t at = bytes_.size();
        bytes_.resize(at + kBackLinkBytes);
        std::copy(backLink.begin(), backLink.end(), bytes_.begin() + static_cast<std::ptrdiff_t>(at));
    }

    std::string table_;
    std::vector<std::uint8_t> bytes_;
    std::size_t count_ = 0, bits_ = 0, recordBytes_ = 1;
};

/// A file under a temporary name that is removed again unless it was put in its place.
class PlacedFile {
public:
    explicit PlacedFile(const NewFile& made) : path_(made.path), temporary_(path_ + ".new") {
        OutputFile file(temporary_, OutputFile::Mode::Truncate);
        file.Write({reinterpret_cast<const char*>(made.bytes.data()), made.bytes.size()});
        file.Close();
    }
    ~PlacedFile() {
        std::error_code ignored;
        if (!isKept_) std::filesystem::remove(LocalPath(isPlaced_ ? path_ : temporary_), ignored);
    }
    PlacedFile(const PlacedFile&) = delete;
    PlacedFile& operator=(const PlacedFile&) = delete;
    /// Never overwrites.
    void Place() {
        RenameFile(temporary_, path_);
        isPlaced_ = true;
    }
    void Keep() { isKept_ = true; }

private:
    std::string path_, temporary_;
    bool isPlaced_ = false, isKept_ = false;
};

}  // namespace

std::vector<NewFile> NewTableFiles(std::string_view storedPath, std::span<const NewField> fields,
                                   std::string_view backLink, int codePage) {
    const std::string path(storedPath);
    std::vector<NewFile> files;
    if (std::any_of(fields.begin(), fields.end(), NeedsMemo)) {
        files.push_back({path.substr(0, path.size() - 4) + ".fpt", EmptyMemoFile()});
    }
    files.push_back({path, NewTableBytes(path, fields, backLink, codePage).Bytes()});
    for (const NewFile& file : files) {
        if (FileExists(file.path)) throw Error(ErrorKind::Constraint, file.path, FileErrorText(EEXIST, file.path));
    }
    return files;
}

void PlaceNewFiles(std::span<const NewFile> files) {
    std::deque<PlacedFile> placed;
    for (const NewFile& file : files) placed.emplace_back(file);
    for (PlacedFile& file : placed) file.Place();
    for (PlacedFile& file : placed) file.Keep();
}

}  // namespace varnel::foxpro
