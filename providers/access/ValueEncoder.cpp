#include "providers/access/ValueEncoder.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>

#include "ado/types/ValueConvert.h"
#include "ado/types/ValueText.h"
#include "platform/CodePage.h"
#include "platform/Error.h"
#include "platform/Utf8.h"
#include "providers/access/StoreBytes.h"

namespace varnel::access {
namespace {

constexpr std::uint8_t kCompressionAllowed = 0x01;
constexpr std::size_t kFewestCompressed = 3;  ///< characters; a shorter text gains nothing
constexpr std::uint8_t kCompressedMark[] = {0xFF, 0xFE};
constexpr std::uint8_t kNegativeSign = 0x80;

template <class Stored>
std::size_t EncodeWhole(const Column& column, const Value& value, std::span<std::uint8_t> target) {
    const std::int64_t number = value.AsInteger();
    if (number < std::numeric_limits<Stored>::min() || number > std::numeric_limits<Stored>::max())
        RefuseValue(column, value, "it is out of range");
    StoreNumber(target, 0, static_cast<std::make_unsigned_t<Stored>>(number));
    return sizeof(Stored);
}

std::size_t EncodeDate(const Column& column, const Value& value, std::span<std::uint8_t> target) {
    const DateTime moment = value.AsDateTime();
    if (moment.days < kFirstDay || moment.days > kLastDay) RefuseValue(column, value, "it is out of range");
    StoreU64(target, 0, std::bit_cast<std::uint64_t>(ToAutomationDate(moment)));
    return sizeof(std::uint64_t);
}

UInt128 PowerOfTen(int exponent) {
    UInt128 power = 1;
    while (exponent-- > 0) power *= 10;
    return power;
}

/// The value times ten to the power of the column's scale.
UInt128 ScaledMagnitude(const Column& column, const Value& value) {
    const Decimal& number = value.AsDecimal();
    const UInt128 limit = PowerOfTen(std::min<int>(column.precision, kMaxDecimalDigits));
    UInt128 scaled = number.magnitude;
    for (int scale = number.scale; scale > column.scale; --scale) {
        if (scaled % 10 != 0)
            RefuseValue(column, value, "it has more than " + std::to_string(column.scale) + " decimal places");
        scaled /= 10;
    }
    for (int scale = number.scale; scale < column.scale && scaled < limit; ++scale) scaled *= 10;
    if (scaled >= limit)
        RefuseValue(column, value, "it is out of the range of " + std::to_string(column.precision) + " digits");
    return scaled;
}

std::size_t EncodeNumeric(const Column& column, const Value& value, std::span<std::uint8_t> target) {
    const UInt128 scaled = ScaledMagnitude(column, value);
    target[0] = value.AsDecimal().negative ? kNegativeSign : 0;
    for (std::size_t word = 0; word < 4; ++word)
        StoreU32(target, 1 + 4 * word, static_cast<std::uint32_t>(scaled >> (96 - 32 * word)));
    return 17;
}

std::size_t EncodeGuid(const Value& value, std::span<std::uint8_t> target) {
    static constexpr std::size_t kOrder[] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
    const GuidBytes& guid = value.AsGuid();
    for (std::size_t i = 0; i < guid.size(); ++i) target[i] = guid[kOrder[i]];
    return guid.size();
}

std::size_t EncodeBinary(const Column& column, const Value& value, std::span<std::uint8_t> target) {
    const std::span<const std::uint8_t> bytes = value.AsBytes();
    if (bytes.size() > std::min<std::size_t>(column.length, kLongestStoredValue))
        RefuseValue(column, value,
                    "the column takes " + std::to_string(column.length) + " bytes, the value has " +
                        std::to_string(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), target.begin());
    return bytes.size();
}

[[noreturn]] void RefuseLength(const Column& column, const Value& value, std::size_t units) {
    RefuseValue(column, value,
                "the column takes " + std::to_string(column.length / 2) + " characters, the value has " +
                    std::to_string(units));
}

/// UTF-16 into target; returns the units. latin1: whether every character is one of U+0001 to U+00FF.
std::size_t Widen(const Column& column, const Value& value, std::span<std::uint8_t> target, bool& latin1) {
    const std::string_view text = value.AsText();
    const std::size_t most = std::min<std::size_t>(column.length, kLongestStoredValue) / 2;
    std::size_t units = 0;
    latin1 = true;
    const auto put = [&](char32_t unit) {
        if (units < most) StoreU16(target, 2 * units, unit);
        ++units;
    };
    for (std::size_t at = 0; at < text.size();) {
        const char32_t c = NextCodePoint(text, at);
        if (c == kNoCodePoint) RefuseValue(column, value, "it is not valid UTF-8");
        latin1 = latin1 && c != 0 && c <= 0xFF;
        if (c < 0x10000) {
            put(c);
        } else {
            put(0xD800 + ((c - 0x10000) >> 10));
            put(0xDC00 + ((c - 0x10000) & 0x3FF));
        }
    }
    if (units > most) RefuseLength(column, value, units);
    return units;
}

bool IsPlainAscii(std::string_view text) {
    return AsciiRun(text, 0) == text.size() && text.find('\0') == std::string_view::npos;
}

/// Keeps the low byte of each unit, behind the mark; returns the bytes.
std::size_t Narrow(std::span<std::uint8_t> target, std::size_t units) {
    // From the front the bytes written would run into those still to be read by one unit; two units are kept aside.
    std::uint8_t head[] = {target[0], target[2]};
    for (std::size_t i = 2; i < units; ++i) target[i + 2] = target[2 * i];
    target[2] = head[0];
    target[3] = head[1];
    std::copy(std::begin(kCompressedMark), std::end(kCompressedMark), target.begin());
    return units + 2;
}

std::size_t EncodeText(const Column& column, const Value& value, std::span<std::uint8_t> target) {
    const std::string_view text = value.AsText();
    const bool compress = (column.moreFlags & kCompressionAllowed) != 0 && !column.IsFixed();
    if (compress && text.size() >= kFewestCompressed && IsPlainAscii(text)) {
        if (text.size() > column.length / 2 || text.size() + 2 > kLongestStoredValue)
            RefuseLength(column, value, text.size());
        std::copy(std::begin(kCompressedMark), std::end(kCompressedMark), target.begin());
        std::memcpy(&target[2], text.data(), text.size());
        return text.size() + 2;
    }
    bool latin1 = false;
    std::size_t units = Widen(column, value, target, latin1);
    if (compress && latin1 && units >= kFewestCompressed) return Narrow(target, units);
    for (; column.IsFixed() && units < column.length / 2; ++units) StoreU16(target, 2 * units, ' ');
    return 2 * units;
}

}  // namespace

std::string ShownValue(const Value& value) {
    constexpr std::size_t kShown = 40;
    std::string text = DefaultText(value);
    if (CharacterCount(text) <= kShown) return text;
    std::size_t end = 0;
    for (std::size_t k = 0; k < kShown; ++k) NextCodePoint(text, end);
    return text.substr(0, end) + "...";
}

void RefuseValue(const Column& column, const Value& value, const std::string& why) {
    throw Error(ErrorKind::Conversion, column.name,
                "Column '" + column.name + "' cannot hold the value '" + ShownValue(value) + "': " + why + ".");
}

const Value& ValueEncoder::AsKind(ValueKind kind, DataTypeEnum type, const Value& value) {
    if (value.Kind() == kind) return value;
    ConvertValue(value, type, converted_);
    return converted_;
}

bool ValueEncoder::EncodeBoolean(const Column&, const Value& value) {
    return AsKind(ValueKind::Boolean, adBoolean, value).AsBoolean();
}

std::size_t ValueEncoder::Encode(const Column& column, const Value& value, std::span<std::uint8_t> target) {
    const auto whole = [&](DataTypeEnum type) -> const Value& { return AsKind(ValueKind::Integer, type, value); };
    switch (column.type) {
        case ColumnType::Boolean:
            return 0;
        case ColumnType::Byte:
            return EncodeWhole<std::uint8_t>(column, whole(adUnsignedTinyInt), target);
        case ColumnType::Integer:
            return EncodeWhole<std::int16_t>(column, whole(adSmallInt), target);
        case ColumnType::Long:
            return EncodeWhole<std::int32_t>(column, whole(adInteger), target);
        case ColumnType::BigInt:
            return EncodeWhole<std::int64_t>(column, whole(adBigInt), target);
        case ColumnType::Currency:
            StoreU64(target, 0,
                     static_cast<std::uint64_t>(AsKind(ValueKind::Currency, adCurrency, value).AsCurrency()));
            return 8;
        case ColumnType::Single:
            StoreU32(target, 0, std::bit_cast<std::uint32_t>(AsKind(ValueKind::Single, adSingle, value).AsSingle()));
            return 4;
        case ColumnType::Double:
            StoreU64(target, 0, std::bit_cast<std::uint64_t>(AsKind(ValueKind::Double, adDouble, value).AsDouble()));
            return 8;
        case ColumnType::Date:
            return EncodeDate(column, AsKind(ValueKind::DateTime, adDate, value), target);
        case ColumnType::Binary:
            return EncodeBinary(column, AsKind(ValueKind::Bytes, adVarBinary, value), target);
        case ColumnType::Text:
            return EncodeText(column, AsKind(ValueKind::Text, adVarWChar, value), target);
        case ColumnType::Guid:
            return EncodeGuid(AsKind(ValueKind::Guid, adGUID, value), target);
        case ColumnType::Numeric:
            return EncodeNumeric(column, AsKind(ValueKind::Decimal, adNumeric, value), target);
        default:
            throw Error(ErrorKind::NotSupported, column.name,
                        "Column '" + column.name + "' is of a type that is only read.");
    }
}

void AppendMemoText(std::string& bytes, std::string_view utf8, bool inWords) {
    const std::size_t start = bytes.size();
    if (!inWords && utf8.size() >= kFewestCompressed && IsPlainAscii(utf8)) {
        bytes.append("\xFF\xFE").append(utf8);
        return;
    }
    AppendUtf16FromUtf8(bytes, utf8);
    const std::size_t units = (bytes.size() - start) / 2;
    if (inWords || units < kFewestCompressed) return;
    for (std::size_t i = 0; i < units; ++i)
        if (bytes[start + 2 * i + 1] != 0 || bytes[start + 2 * i] == 0) return;
    const std::span target(reinterpret_cast<std::uint8_t*>(&bytes[start]), 2 * units);
    bytes.resize(start + Narrow(target, units));
}

}  // namespace varnel::access
