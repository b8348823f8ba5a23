// What stands behind the leading 7F (descending 80, and every byte of the value inverted where nothing else is said):
//
//   boolean        00 true, FF false
//   byte           the byte
//   whole numbers  big-endian, top bit flipped
//   single, double, date
//                  big-endian; top bit flipped, or for negative numbers every bit
//   GUID           the bytes in the order of the text form, 09 after the eighth (never inverted), 08 after the last
//   binary         groups of 8, filled with zeros; after each 09 (never inverted) if more follow, else the bytes used
//   NUMERIC        FF and the 16 bytes of the magnitude, big-endian; negative: all of it inverted. Descending in Jet 4
//                  FF and the inverted magnitude, or 00 and the plain one of a negative number
#include "providers/access/KeyBytes.h"

#include <array>
#include <bit>
#include <cstring>

#include "platform/DateTime.h"
#include "platform/Error.h"
#include "providers/access/FixedLength.h"
#include "providers/access/IndexKey.h"
#include "providers/access/TextKey.h"

namespace varnel::access {
namespace {

constexpr std::size_t kGroup = 8;
constexpr std::size_t kNumericLength = 17, kGuidLength = 16;
constexpr std::uint8_t kMoreFollow = 9, kNegativeNumeric = 0x80;
/// A compressed text begins with FF FE.
constexpr std::uint8_t kCompressed[] = {0xFF, 0xFE};

/// Appends bytes of one value, inverted when the column descends.
class Part {
public:
    Part(std::string& key, bool ascending) : key_(key), flip_(ascending ? 0 : 0xFF) {
        key.push_back(ascending ? '\x7F' : '\x80');
    }
    void Add(unsigned byte) { key_.push_back(static_cast<char>((byte ^ flip_) & 0xFF)); }
    void AddPlain(unsigned byte) { key_.push_back(static_cast<char>(byte)); }

private:
    std::string& key_;
    unsigned flip_;
};

void AddWhole(Part& part, Bytes stored) {
    for (std::size_t k = stored.size(); k-- > 0;) part.Add(stored[k] ^ (k + 1 == stored.size() ? 0x80U : 0U));
}

void AddReal(Part& part, Bytes stored) {
    const bool negative = (stored.back() & 0x80) != 0;
    for (std::size_t k = stored.size(); k-- > 0;) {
        part.Add(stored[k] ^ (negative ? 0xFFU : k + 1 == stored.size() ? 0x80U : 0U));
    }
}

void AddGroups(Part& part, Bytes bytes) {
    for (std::size_t start = 0; start < bytes.size(); start += kGroup) {
        const Bytes group = bytes.subspan(start, std::min(kGroup, bytes.size() - start));
        for (std::size_t k = 0; k < kGroup; ++k) part.Add(k < group.size() ? group[k] : 0U);
        if (start + kGroup < bytes.size()) {
            part.AddPlain(kMoreFollow);
        } else {
            part.Add(static_cast<unsigned>(group.size()));
        }
    }
}

void AddGuid(Part& part, Bytes stored) {
    constexpr std::array<std::uint8_t, kGuidLength> kOrder = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
    std::array<std::uint8_t, kGuidLength> shown;
    for (std::size_t k = 0; k < kGuidLength; ++k) shown[k] = stored[kOrder[k]];
    AddGroups(part, shown);
}

void AddNumeric(Part& part, Bytes stored, bool ascending) {
    const bool negative = stored[0] == kNegativeNumeric;
    const unsigned flip = negative ? 0xFFU : 0U;
    if (ascending) {
        part.Add(0xFFU ^ flip);
    } else {
        part.AddPlain(0xFFU ^ flip);
    }
    for (std::size_t word = 1; word < kNumericLength; word += 4) {  // the highest word comes first, each low byte first
        for (std::size_t k = 4; k-- > 0;) part.Add(stored[word + k] ^ flip);
    }
}

/// The units of a stored text; a 00 switches between characters of one byte and of two.
std::size_t StoredUnits(std::array<char16_t, kTextKeyUnits>& units, Bytes stored) {
    std::size_t at = 0, count = 0;
    bool narrow = stored.size() >= 2 && std::memcmp(stored.data(), kCompressed, 2) == 0;
    const bool switches = narrow;
    if (narrow) at = 2;
    while (count < units.size() && at + (narrow ? 1 : 2) <= stored.size()) {
        if (switches && stored[at] == 0) {
            narrow = !narrow, ++at;
        } else if (narrow) {
            units[count++] = stored[at++];
        } else {
            units[count++] = static_cast<char16_t>(stored[at] | stored[at + 1] << 8), at += 2;
        }
    }
    return count;
}

/// Little-endian bytes of a number.
template <typename Number>
std::array<std::uint8_t, sizeof(Number)> BytesOf(Number number) {
    static_assert(std::endian::native == std::endian::little);
    return std::bit_cast<std::array<std::uint8_t, sizeof(Number)>>(number);
}

std::array<std::uint8_t, kNumericLength> NumericBytes(const Decimal& number, unsigned scale) {
    const Decimal rounded = RoundedToScale(number, static_cast<int>(scale));
    UInt128 magnitude = rounded.magnitude;
    for (unsigned k = rounded.scale; k < scale; ++k) magnitude *= 10;
    std::array<std::uint8_t, kNumericLength> stored{};
    if (rounded.negative) stored[0] = kNegativeNumeric;
    for (unsigned word = 0; word < 4; ++word) {
        const auto bytes = BytesOf(static_cast<std::uint32_t>(magnitude >> (96 - 32 * word)));
        std::memcpy(stored.data() + 1 + 4 * word, bytes.data(), 4);
    }
    return stored;
}

/// The stored form of a GUID has its first three fields low byte first.
GuidBytes StoredGuid(const GuidBytes& g) {
    return {g[3], g[2], g[1], g[0], g[5], g[4], g[7], g[6], g[8], g[9], g[10], g[11], g[12], g[13], g[14], g[15]};
}

[[noreturn]] void ThrowNoKeys(const Column& column) {
    throw Error(ErrorKind::NotSupported, column.name, "Column '" + column.name + "' is of a type without index keys.");
}

}  // namespace

bool HasKeys(ColumnType type) {
    switch (type) {
        case ColumnType::Boolean:
        case ColumnType::Binary:
        case ColumnType::Text:
        case ColumnType::Memo:
            return true;
        default:
            return FixedLength(type) != 0;
    }
}

void AppendStoredKey(std::string& key, std::span<const std::uint8_t> stored, const Column& column, bool ascending) {
    if (column.type == ColumnType::Text || column.type == ColumnType::Memo) {
        std::array<char16_t, kTextKeyUnits> units;
        const std::size_t count = StoredUnits(units, stored);
        return AppendTextKey(key, std::span<const char16_t>(units.data(), count), ascending);
    }
    const std::size_t length = FixedLength(column.type);
    if (length == 0 && column.type != ColumnType::Binary) ThrowNoKeys(column);
    if (stored.size() < length) {
        throw Error(ErrorKind::Corrupt, column.name, "Column '" + column.name + "' has a value that is too short.");
    }
    if (length != 0) stored = stored.first(length);
    Part part(key, ascending);
    switch (column.type) {
        case ColumnType::Byte:
            return part.Add(stored[0]);
        case ColumnType::Single:
        case ColumnType::Double:
        case ColumnType::Date:
            return AddReal(part, stored);
        case ColumnType::Guid:
            return AddGuid(part, stored);
        case ColumnType::Numeric:
            return AddNumeric(part, stored, ascending);
        case ColumnType::Binary:
        case ColumnType::ExtendedDate:
            return AddGroups(part, stored);
        default:
            return AddWhole(part, stored);
    }
}

void AppendBooleanKey(std::string& key, bool value, bool ascending) {
    Part(key, ascending).Add(value ? 0x00 : 0xFF);
}

void AppendKey(std::string& key, const Value& value, const Column& column, bool ascending) {
    if (value.IsNull() && column.type != ColumnType::Boolean) return AppendNullKey(key, ascending);
    const auto append = [&](Bytes stored) { AppendStoredKey(key, stored, column, ascending); };
    switch (column.type) {
        case ColumnType::Boolean:
            return AppendBooleanKey(key, !value.IsNull() && value.AsBoolean(), ascending);
        case ColumnType::Byte:
            return append(BytesOf(static_cast<std::uint8_t>(value.AsInteger())));
        case ColumnType::Integer:
            return append(BytesOf(static_cast<std::int16_t>(value.AsInteger())));
        case ColumnType::Long:
        case ColumnType::Complex:
            return append(BytesOf(static_cast<std::int32_t>(value.AsInteger())));
        case ColumnType::BigInt:
            return append(BytesOf(value.AsInteger()));
        case ColumnType::Currency:
            return append(BytesOf(value.AsCurrency()));
        case ColumnType::Single:
            return append(BytesOf(value.AsSingle()));
        case ColumnType::Double:
            return append(BytesOf(value.AsDouble()));
        case ColumnType::Date:
            return append(BytesOf(ToAutomationDate(value.AsDateTime())));
        case ColumnType::Binary:
            return append(value.AsBytes());
        case ColumnType::Guid:
            return append(StoredGuid(value.AsGuid()));
        case ColumnType::Numeric:
            return append(NumericBytes(value.AsDecimal(), column.scale));
        case ColumnType::Text:
        case ColumnType::Memo:
            return AppendTextKey(key, value.AsText(), ascending);
        default:
            ThrowNoKeys(column);
    }
}

}  // namespace varnel::access
