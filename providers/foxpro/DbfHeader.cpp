#include "providers/foxpro/DbfHeader.h"

#include <algorithm>

#include "ado/types/ConnectionString.h"
#include "platform/CodePage.h"
#include "platform/Error.h"

namespace varnel::foxpro {
namespace {

constexpr std::size_t kDBase2Start = 521, kDBase2Descriptors = 8, kDBase2Fields = 32;
constexpr std::size_t kBackLinkBytes = 263;
constexpr std::uint8_t kDescriptorsEnd = 0x0D;

/// Where the descriptors of a dialect lie, and what they hold. Offsets within a descriptor.
struct DescriptorLayout {
    std::size_t start, bytes, nameBytes, typeAt, lengthAt, decimalsAt;
};
constexpr DescriptorLayout kDBase2Layout{kDBase2Descriptors, 16, 11, 11, 12, 15};
constexpr DescriptorLayout kUsualLayout{32, 32, 11, 11, 16, 17};
constexpr DescriptorLayout kDBase7Layout{68, 48, 32, 32, 33, 34};

struct VersionRow {
    std::uint8_t version;
    DbfDialect dialect;
    MemoKind memo;
};
constexpr VersionRow kVersions[] = {
    {0x02, DbfDialect::DBase2, MemoKind::None},      {0x03, DbfDialect::DBase, MemoKind::None},
    {0x04, DbfDialect::DBase, MemoKind::None},       {0x05, DbfDialect::DBase, MemoKind::None},
    {0x07, DbfDialect::DBase, MemoKind::None},       {0x87, DbfDialect::DBase, MemoKind::Dbt3},
    {0x30, DbfDialect::VisualFoxPro, MemoKind::Fpt}, {0x31, DbfDialect::VisualFoxPro, MemoKind::Fpt},
    {0x32, DbfDialect::VisualFoxPro, MemoKind::Fpt}, {0x43, DbfDialect::DBase, MemoKind::None},
    {0x63, DbfDialect::DBase, MemoKind::None},       {0x7B, DbfDialect::DBase, MemoKind::Dbt4},
    {0x83, DbfDialect::DBase, MemoKind::Dbt3},       {0x8B, DbfDialect::DBase, MemoKind::Dbt4},
    {0x8C, DbfDialect::DBase7, MemoKind::Dbt4},      {0x8E, DbfDialect::DBase, MemoKind::Dbt4},
    {0xCB, DbfDialect::DBase, MemoKind::Dbt4},       {0xE5, DbfDialect::DBase, MemoKind::Smt},
    {0xF5, DbfDialect::FoxPro2, MemoKind::Fpt},      {0xFB, DbfDialect::DBase, MemoKind::None},
};

/// One reading of a head; throws where the bytes contradict themselves.
class HeaderReading {
public:
    HeaderReading(const ByteView& bytes, std::uint64_t fileBytes, const std::string& fileName, int codePage)
        : bytes_(bytes), fileBytes_(fileBytes), fileName_(fileName), codePageWhenNoneStated_(codePage) {}

    DbfHeader Read() {
        ReadVersion();
        ReadNumbers();
        ReadCodePage();
        ReadFields();
        FitFields();
        NumberBits();
        ReadBackLink();
        CheckCodePage();
        DecideWriting();
        return std::move(header_);
    }

private:
    [[noreturn]] void Refuse(const std::string& reason) const {
        throw Error(ErrorKind::Corrupt, fileName_, "'" + fileName_ + "' is not a table: " + reason);
    }

    bool IsVisual() const { return header_.dialect == DbfDialect::VisualFoxPro; }

    void ReadVersion() {
        if (bytes_.Size() < 33) Refuse("it is shorter than the head of a table");
        header_.version = bytes_.U8(0);
        const auto* row = std::find_if(std::begin(kVersions), std::end(kVersions),
                                       [&](const VersionRow& r) { return r.version == header_.version; });
        if (row != std::end(kVersions)) header_.dialect = row->dialect, header_.memo = row->memo;
        isUnknown_ = row == std::end(kVersions);
        if ((header_.version == 0x04 || header_.version == 0x8C) && !ReachesEnd(kDBase7Layout)) {
            header_.dialect = DbfDialect::DBase;
        } else if (header_.version == 0x04) {
            header_.dialect = DbfDialect::DBase7;
        }
        if (header_.dialect == DbfDialect::DBase2) layout_ = kDBase2Layout;
        if (header_.dialect == DbfDialect::DBase7) layout_ = kDBase7Layout;
    }

    /// True when descriptors of this layout are ended where they should be and their lengths make a record.
    bool ReachesEnd(const DescriptorLayout& layout) const {
        const std::size_t headerBytes = bytes_.U16(8);
        std::size_t sum = 1, at = layout.start;
        for (; at + layout.bytes < std::min(headerBytes, bytes_.Size()) && bytes_.U8(at) != kDescriptorsEnd;
             at += layout.bytes) {
            sum += bytes_.U8(at + layout.lengthAt);
        }
        return at > layout.start && at < bytes_.Size() && bytes_.U8(at) == kDescriptorsEnd && sum == bytes_.U16(10);
    }

    void ReadNumbers() {
        if (header_.dialect == DbfDialect::DBase2) {
            if (fileBytes_ < kDBase2Start || bytes_.Size() < kDBase2Start) Refuse("it is shorter than its head");
            header_.records = bytes_.U16(1);
            header_.headerBytes = kDBase2Start;
            header_.recordBytes = bytes_.U16(6);
        } else {
            header_.records = bytes_.U32(4);
            header_.headerBytes = bytes_.U16(8);
            header_.recordBytes = bytes_.U16(10);
            header_.tableFlags = bytes_.U8(kTableFlagsAt);
            header_.codePageMark = bytes_.U8(29);
        }
        if (header_.headerBytes < 33 || header_.headerBytes > bytes_.Size()) {
            Refuse("its head claims " + std::to_string(header_.headerBytes) + " bytes");
        }
        if (header_.recordBytes == 0) Refuse("its records claim to have no bytes");
    }

    void ReadCodePage() {
        header_.codePage = CodePageOfMark(header_.codePageMark);
        if (header_.codePage == 0) header_.codePage = codePageWhenNoneStated_;
        if (header_.codePage == 0) header_.codePage = IsVisual() ? 1252 : 850;
    }

    void ReadFields() {
        const std::size_t end = header_.dialect == DbfDialect::DBase2 ? kDBase2Start : header_.headerBytes;
        std::size_t at = layout_.start;
        for (; at + layout_.bytes <= end && !EndsDescriptors(bytes_.U8(at)); at += layout_.bytes) {
            if (layout_.bytes == 16 && all_.size() == kDBase2Fields) break;
            all_.push_back(ReadDescriptor(at));
        }
        descriptorsEnd_ = at;
        isEnded_ = at < end && bytes_.U8(at) == kDescriptorsEnd;
        if (isUnknown_ && (!isEnded_ || all_.empty() || Sum(all_) != header_.recordBytes)) {
            Refuse("its first byte names no version");
        }
    }

    static bool EndsDescriptors(std::uint8_t byte) { return byte == kDescriptorsEnd || byte == 0; }

    struct Descriptor {
        DbfField field;
        bool system = false;
    };

    Descriptor ReadDescriptor(std::size_t at) const {
        Descriptor read;
        DbfField& field = read.field;
        field.descriptorAt = at;
        field.name = NameAt(at);
        field.type = static_cast<char>(bytes_.U8(at + layout_.typeAt));
        field.length = bytes_.U8(at + layout_.lengthAt);
        field.decimals = bytes_.U8(at + layout_.decimalsAt);
        if (header_.dialect == DbfDialect::DBase7) field.autoIncrement = field.type == '+';
        if (!IsVisual()) return read;
        const std::uint8_t flags = bytes_.U8(at + 18);
        read.system = (flags & 0x01) != 0;
        field.nullable = (flags & 0x02) != 0;
        field.binary = (flags & 0x04) != 0;
        field.autoIncrement = (flags & 0x08) != 0 && field.type == 'I';
        field.nextValue = bytes_.U32(at + 19);
        field.step = bytes_.U8(at + 23);
        return read;
    }

    /// Up to the first NUL: what lies behind it may be an older, longer name.
    std::string NameAt(std::size_t at) const {
        const auto part = bytes_.Part(at, layout_.nameBytes);
        std::string stored(reinterpret_cast<const char*>(part.data()), part.size());
        stored.resize(std::min(stored.find('\0'), stored.size()));
        while (!stored.empty() && stored.back() == ' ') stored.pop_back();
        if (IsUtf8(stored) || !CodePage::IsSupported(header_.codePage)) return IsUtf8(stored) ? stored : "?";
        std::string name;
        if (CodePage(header_.codePage).DecodeSome(name, stored) < stored.size()) name += '?';
        return name;
    }

    static std::uint64_t Sum(const std::vector<Descriptor>& fields) {
        std::uint64_t sum = 1;
        for (const Descriptor& read : fields) sum += read.field.length;
        return sum;
    }

    /// Some writers keep the high byte of a text's width in its decimals: so it is when only that adds up.
    void FitFields() {
        if (Sum(all_) != header_.recordBytes) {
            std::vector<Descriptor> wide = all_;
            for (Descriptor& read : wide) {
                if (read.field.type == 'C') read.field.length += 256u * read.field.decimals;
            }
            if (Sum(wide) == header_.recordBytes) all_ = std::move(wide);
        }
        addsUp_ = Sum(all_) == header_.recordBytes;
        std::uint32_t offset = 1;
        for (Descriptor& read : all_) {
            DbfField& field = read.field;
            if (field.type == 'C') field.decimals = 0;
            field.offset = offset;
            if (field.length > header_.recordBytes || offset > header_.recordBytes - field.length) {
                Refuse("its field '" + field.name + "' lies outside the record");
            }
            offset += field.length;
            if (read.system && field.type == '0') header_.nullFlags = field;
            if (!read.system) header_.fields.push_back(field);
        }
    }

    /// Bits are counted over the fields that need one, in physical order; a varying length comes before the Null.
    void NumberBits() {
        const int bits = header_.nullFlags ? static_cast<int>(header_.nullFlags->length * 8) : 0;
        int next = 0;
        bool anyVarying = false;
        const auto take = [&] { return next++ < bits ? next - 1 : kNoBit; };
        for (DbfField& field : header_.fields) {
            const bool isVarying = IsVisual() && (field.type == 'V' || field.type == 'Q');
            anyVarying |= isVarying;
            if (isVarying) field.varLengthBit = take();
            if (field.nullable) field.nullBit = take();
            if (field.nullBit == kNoBit) field.nullable = false;
        }
        bitsFit_ = next <= bits || (bits == 0 && !anyVarying);  // some writers mark fields without adding the bits
    }

    void ReadBackLink() {
        if (!IsVisual() || !isEnded_) return;
        const std::size_t at = descriptorsEnd_ + 1;
        if (at + kBackLinkBytes > header_.headerBytes) return;
        const auto part = bytes_.Part(at, kBackLinkBytes);
        const std::string stored(reinterpret_cast<const char*>(part.data()), part.size());
        header_.backLink = stored.substr(0, stored.find('\0'));
    }

    void CheckCodePage() const {
        const bool hasTexts = std::any_of(header_.fields.begin(), header_.fields.end(), [](const DbfField& field) {
            return field.type == 'C' || field.type == 'M' || field.type == 'V';
        });
        if (!hasTexts || CodePage::IsSupported(header_.codePage)) return;
        throw Error(ErrorKind::NotSupported, fileName_,
                    "'" + fileName_ + "' holds texts in code page " + std::to_string(header_.codePage) +
                        ", which cannot be read here");
    }

    void DecideWriting() {
        const auto refuse = [&](const std::string& why) {
            if (header_.readOnlyReason.empty()) header_.readOnlyReason = "'" + fileName_ + "' is only read: " + why;
        };
        const bool isWritten = IsVisual() || header_.version == 0x03 || header_.version == 0xF5;
        if (!isWritten) refuse("tables of its version are not written here");
        if (!addsUp_) refuse("the widths of its fields do not add up to its record");
        if (IsVisual() && !bitsFit_) refuse("its fields need more null flags than it has");
    }

    const ByteView& bytes_;
    std::uint64_t fileBytes_;
    const std::string& fileName_;
    int codePageWhenNoneStated_;
    DbfHeader header_;
    DescriptorLayout layout_ = kUsualLayout;
    std::vector<Descriptor> all_;
    std::size_t descriptorsEnd_ = 0;
    bool isUnknown_ = false, isEnded_ = false, addsUp_ = false, bitsFit_ = true;
};

}  // namespace

const DbfField* DbfHeader::FindField(std::string_view name) const {
    const auto found = std::find_if(fields.begin(), fields.end(),
                                    [&](const DbfField& field) { return EqualNoCase(field.name, name); });
    return found == fields.end() ? nullptr : &*found;
}

DbfHeader ReadDbfHeader(const ByteView& bytes, std::uint64_t fileBytes, const std::string& fileName,
                        int codePageWhenNoneStated) {
    return HeaderReading(bytes, fileBytes, fileName, codePageWhenNoneStated).Read();
}

}  // namespace varnel::foxpro
