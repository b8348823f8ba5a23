#include "tests/support/tds/TdsTypes.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "ado/types/Decimal.h"
#include "ado/types/ValueConvert.h"
#include "platform/CodePage.h"
#include "platform/Error.h"
#include "tests/support/ErrorOf.h"

namespace varnel::tds {
namespace {

constexpr int kTruncation = 8152, kConversion = 245, kDateConversion = 241, kOverflow = 8115, kImplicit = 260;
constexpr std::int32_t kDayOf1900 = 2;           // days since 1899-12-30
constexpr std::int32_t kDayOfYearOne = -693593;  // 0001-01-01
constexpr std::int64_t kTicksPerMicro = 10;      // of 100 nanoseconds

using namespace std::string_view_literals;
constexpr Collation kCollations[] = {{kDatabaseCollation, "\x09\x04\xD0\x00\x34"sv, 1252},
                                     {"Latin1_General_CI_AS", "\x09\x04\xD0\x00\x00"sv, 1252},
                                     {"Polish_CI_AS", "\x15\x04\xD0\x00\x00"sv, 1250},
                                     {"Cyrillic_General_CI_AS", "\x19\x04\xD0\x00\x00"sv, 1251}};

enum class Shape : std::uint8_t { Integer, Bit, Real, Decimal, Money, Moment, Date, Guid, Text, Bytes };

struct TypeRow {
    std::string_view word;
    Shape shape;
    unsigned token;
    unsigned bytes;  ///< of a fixed value; of one character for texts
    std::int64_t least = 0, most = 0;
};

constexpr TypeRow kTypes[] = {
    {"bit", Shape::Bit, 0x68, 1, 0, 1},
    {"tinyint", Shape::Integer, 0x26, 1, 0, 255},
    {"smallint", Shape::Integer, 0x26, 2, INT16_MIN, INT16_MAX},
    {"int", Shape::Integer, 0x26, 4, INT32_MIN, INT32_MAX},
    {"bigint", Shape::Integer, 0x26, 8, INT64_MIN, INT64_MAX},
    {"real", Shape::Real, 0x6D, 4},
    {"float", Shape::Real, 0x6D, 8},
    {"decimal", Shape::Decimal, 0x6A, 17},
    {"numeric", Shape::Decimal, 0x6C, 17},
    {"money", Shape::Money, 0x6E, 8},
    {"smallmoney", Shape::Money, 0x6E, 4},
    {"datetime", Shape::Moment, 0x6F, 8},
    {"smalldatetime", Shape::Moment, 0x6F, 4},
    {"datetime2", Shape::Moment, 0x2A, 8},
    {"date", Shape::Date, 0x28, 3},
    {"uniqueidentifier", Shape::Guid, 0x24, 16},
    {"char", Shape::Text, 0xAF, 1},
    {"varchar", Shape::Text, 0xA7, 1},
    {"text", Shape::Text, 0x23, 1},
    {"nchar", Shape::Text, 0xEF, 2},
    {"nvarchar", Shape::Text, 0xE7, 2},
    {"ntext", Shape::Text, 0x63, 2},
    {"binary", Shape::Bytes, 0xAD, 1},
    {"varbinary", Shape::Bytes, 0xA5, 1},
    {"image", Shape::Bytes, 0x22, 1},
};

const TypeRow* FindType(std::string_view word) {
    const auto* row = std::find_if(std::begin(kTypes), std::end(kTypes), [&](const auto& r) { return r.word == word; });
    return row == std::end(kTypes) ? nullptr : row;
}
const TypeRow& RowOf(const SqlType& type) {
    return *FindType(type.word);
}
bool IsWide(const TypeRow& row) {
    return row.shape == Shape::Text && row.bytes == 2;
}

std::optional<Decimal> DecimalOf(const Cell& cell) {
    if (cell.kind == Cell::Kind::Integer) return DecimalFromInt64(cell.integer);
    if (cell.kind == Cell::Kind::Real) return DecimalFromDouble(cell.real);
    Decimal number;
    if (cell.kind != Cell::Kind::Text || !ParseDecimal(cell.bytes, number)) return std::nullopt;
    return number;
}

double RealOf(const Cell& cell) {
    if (cell.kind == Cell::Kind::Integer) return static_cast<double>(cell.integer);
    return cell.kind == Cell::Kind::Real ? cell.real : std::strtod(cell.bytes.c_str(), nullptr);
}

int NumberMisfit(const SqlType& type, const TypeRow& row, const Cell& cell) {
    const auto number = DecimalOf(cell);
    if (!number) return kConversion;
    const int places = row.shape == Shape::Money ? 4 : static_cast<int>(type.scale);
    const int digits =
        row.shape == Shape::Money ? (row.bytes == 8 ? 15 : 6) : static_cast<int>(type.precision) - places;
    return IntegerDigits(RoundedToScale(*number, places)) > digits ? kOverflow : 0;
}

int MomentMisfit(const TypeRow& row, const Cell& cell) {
    const auto moment = cell.kind == Cell::Kind::Text ? ParseDateTime(cell.bytes) : std::nullopt;
    if (!moment) return kDateConversion;
    const int year = ToCivil(*moment).year;
    const int first = row.word == "datetime" ? 1753 : row.word == "smalldatetime" ? 1900 : 1;
    return year < first || (row.word == "smalldatetime" && year > 2078) ? kOverflow : 0;
}

int ContentMisfit(const SqlType& type, const TypeRow& row, const Cell& cell) {
    const bool bytes = row.shape == Shape::Bytes;
    if (bytes != (cell.kind == Cell::Kind::Blob)) return kImplicit;
    if (type.size == 0) return 0;
    const std::size_t length = bytes         ? cell.bytes.size()
                               : IsWide(row) ? ToUtf16(cell.bytes).size() / 2
                                             : CharacterCount(cell.bytes);
    return length > type.size ? kTruncation : 0;
}

/// What the code page of a narrow column lacks is a question mark, as SQL Server has it.
std::string Narrow(std::string_view utf8, const SqlType& type) {
    const CodePage page(FindCollation(type.collation)->codePage);
    std::string narrow;
    const std::string utf16 = ToUtf16(utf8);
    for (std::size_t k = 0; k + 1 < utf16.size(); k += 2) {
        const auto unit = static_cast<unsigned char>(utf16[k]) | static_cast<unsigned char>(utf16[k + 1]) << 8;
        if (unit < 0x80) {
            narrow += static_cast<char>(unit);
        } else if (!ErrorOf([&] {
                        std::string character;
                        const char bytes[] = {utf16[k], utf16[k + 1]};
                        const auto* first = reinterpret_cast<const std::uint8_t*>(bytes);
                        AppendUtf8FromUtf16(character, {first, 2});
                        page.Encode(narrow, character);
                    }).empty()) {
            narrow += '?';
        }
    }
    return narrow;
}

std::string ContentOf(const SqlType& type, const TypeRow& row, const Cell& cell) {
    std::string text = cell.bytes;
    if (cell.kind == Cell::Kind::Integer) text = std::to_string(cell.integer);
    if (row.shape == Shape::Bytes) {
        if (row.word == "binary") text.resize(type.size);
        return text;
    }
    if (row.word == "char" || row.word == "nchar")
        text.append(type.size - std::min<std::size_t>(CharacterCount(text), type.size), ' ');
    return IsWide(row) ? ToUtf16(text) : Narrow(text, type);
}

void WriteDecimal(Writer& out, const SqlType& type, const Cell& cell) {
    Decimal number = RoundedToScale(DecimalOf(cell).value_or(Decimal{}), static_cast<int>(type.scale));
    for (unsigned scale = number.scale; scale < type.scale; ++scale) number.magnitude *= 10;
    out.U8(17);
    out.U8(number.negative ? 0 : 1);
    for (int k = 0; k < 16; ++k) out.U8(static_cast<unsigned>(number.magnitude >> (8 * k)) & 0xFF);
}

void WriteMoney(Writer& out, const TypeRow& row, const Cell& cell) {
    const std::int64_t scaled = CurrencyFromDecimal(DecimalOf(cell).value_or(Decimal{}));
    out.U8(row.bytes);
    if (row.bytes == 8) out.U32(static_cast<std::uint32_t>(scaled >> 32));
    out.U32(static_cast<std::uint32_t>(scaled));
}

void WriteMoment(Writer& out, const TypeRow& row, const Cell& cell) {
    const DateTime moment = ParseDateTime(cell.bytes).value_or(DateTime{});
    const std::int32_t days = moment.days - kDayOf1900;
    out.U8(row.bytes);
    if (row.word == "datetime") {
        out.U32(static_cast<std::uint32_t>(days));
        out.U32(static_cast<std::uint64_t>((moment.micros * 3 + 5000) / 10000));
    } else if (row.word == "smalldatetime") {
        out.U16(static_cast<unsigned>(days));
        out.U16(static_cast<unsigned>(moment.micros / (60 * kMicrosPerSecond)));
    } else {
        out.Number(static_cast<std::uint64_t>(moment.micros * kTicksPerMicro), 5);
        out.Number(static_cast<std::uint64_t>(moment.days - kDayOfYearOne), 3);
    }
}

void WriteGuid(Writer& out, std::string text) {
    text.erase(std::remove_if(text.begin(), text.end(), [](char c) { return c == '-' || c == '{' || c == '}'; }),
               text.end());
    std::uint8_t bytes[16] = {};
    for (std::size_t k = 0; k < 16 && 2 * k + 1 < text.size(); ++k)
        bytes[k] = static_cast<std::uint8_t>(std::stoi(text.substr(2 * k, 2), nullptr, 16));
    out.U8(16);
    for (const int k : {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15}) out.U8(bytes[k]);
}

void WriteContent(Writer& out, const SqlType& type, const TypeRow& row, const Cell& cell) {
    const std::string content = ContentOf(type, row, cell);
    if (HasTextPointer(type)) {
        out.U8(16);
        out.Raw(std::string(16, 'p'));
        out.U64(1);
        out.U32(content.size());
        out.Raw(content);
    } else if (type.size == 0) {
        out.U64(content.size());
        if (!content.empty()) out.U32(content.size());
        out.Raw(content);
        out.U32(0);
    } else {
        out.U16(static_cast<unsigned>(content.size()));
        out.Raw(content);
    }
}

std::string ReadChunks(Reader& in, bool& null) {
    std::string whole;
    const std::uint64_t total = in.U64();
    null = total == UINT64_MAX;
    if (null) return whole;
    while (const std::uint32_t size = in.U32()) whole += in.Raw(size);
    return whole;
}

Cell TextCell(std::string utf8) {
    Cell cell;
    cell.kind = Cell::Kind::Text;
    cell.bytes = std::move(utf8);
    return cell;
}

Cell ReadNumberParameter(unsigned token, Reader& in, unsigned scale) {
    Cell cell;
    const unsigned size = in.U8();
    if (size == 0) return cell;
    if (token == 0x6D) {
        cell.kind = Cell::Kind::Real;
        if (size == 4) {
            const auto bits = in.U32();
            float number = 0;
            std::memcpy(&number, &bits, 4);
            cell.real = number;
        } else {
            const auto bits = in.U64();
            std::memcpy(&cell.real, &bits, 8);
        }
        return cell;
    }
    if (token == 0x6A || token == 0x6C) {
        Decimal number;
        number.negative = in.U8() == 0;
        for (unsigned k = 0; k + 1 < size; ++k) number.magnitude |= UInt128{in.U8()} << (8 * k);
        number.scale = static_cast<std::uint8_t>(scale);
        std::string text;
        AppendDecimalText(text, number);
        return TextCell(text);
    }
    cell.kind = Cell::Kind::Integer;
    const std::uint64_t raw = in.Number(static_cast<int>(size));
    cell.integer = size == 1   ? static_cast<std::int64_t>(raw)
                   : size == 2 ? static_cast<std::int16_t>(raw)
                   : size == 4 ? static_cast<std::int32_t>(raw)
                               : static_cast<std::int64_t>(raw);
    return cell;
}

std::string MomentText(std::int32_t days, std::int64_t micros) {
    const CivilTime civil = ToCivil({days, micros});
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d.%06d", civil.year, civil.month, civil.day,
                  civil.hour, civil.minute, civil.second, civil.micros);
    return text;
}

Cell ReadMomentParameter(unsigned token, Reader& in) {
    const unsigned size = in.U8();
    if (size == 0) return {};
    if (token == 0x28) return TextCell(MomentText(static_cast<std::int32_t>(in.Number(3)) + kDayOfYearOne, 0));
    if (token == 0x2A) {
        const auto micros = static_cast<std::int64_t>(in.Number(static_cast<int>(size) - 3)) / kTicksPerMicro;
        return TextCell(MomentText(static_cast<std::int32_t>(in.Number(3)) + kDayOfYearOne, micros));
    }
    const auto days = static_cast<std::int32_t>(in.U32());
    return TextCell(MomentText(days + kDayOf1900, std::int64_t{in.U32()} * 10000 / 3));
}

Cell ReadContentParameter(unsigned token, Reader& in) {
    const bool wide = token == 0xE7 || token == 0xEF || token == 0x63;
    const bool bytes = token == 0xA5 || token == 0xAD || token == 0x22;
    const bool longSort = token == 0x63 || token == 0x23 || token == 0x22;
    const std::uint32_t limit = longSort ? in.U32() : in.U16();
    if (!bytes) in.Skip(5);
    std::string content;
    bool null = false;
    if (longSort) {
        const std::uint32_t size = in.U32();
        null = size == UINT32_MAX;
        if (!null) content = in.Raw(size);
    } else if (limit == 0xFFFF) {
        content = ReadChunks(in, null);
    } else {
        const unsigned size = in.U16();
        null = size == 0xFFFF;
        if (!null) content = in.Raw(size);
    }
    if (null) return {};
    Cell cell = TextCell(wide ? FromUtf16(content) : content);
    if (bytes) cell.kind = Cell::Kind::Blob;
    return cell;
}

Cell ReadGuidParameter(Reader& in) {
    if (in.U8() == 0) return {};
    const std::string_view raw = in.Raw(16);
    std::string text;
    for (const std::size_t k : {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15}) {
        char digits[4];
        std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned char>(raw[k]));
        text += digits;
    }
    for (const std::size_t at : {20, 16, 12, 8}) text.insert(at, "-");
    return TextCell(text);
}

}  // namespace

const Collation* FindCollation(std::string_view name) {
    if (name.empty()) name = kDatabaseCollation;
    const auto* found =
        std::find_if(std::begin(kCollations), std::end(kCollations), [&](const auto& c) { return c.name == name; });
    return found == std::end(kCollations) ? nullptr : found;
}

std::optional<SqlType> ReadType(std::string_view word, std::string_view arguments) {
    SqlType type;
    type.word = word;
    const TypeRow* row = FindType(type.word);
    if (row == nullptr) return std::nullopt;
    unsigned first = 0, second = 0;
    const int count = std::sscanf(std::string(arguments).c_str(), "%u,%u", &first, &second);
    if (row->shape == Shape::Decimal && count > 0) type.precision = first, type.scale = second;
    const bool unlimited = word == "text" || word == "ntext" || word == "image" || arguments == "max";
    type.size = unlimited ? 0 : count > 0 ? first : 1;
    return type;
}

std::string_view AffinityOf(const SqlType& type) {
    switch (RowOf(type).shape) {
        case Shape::Integer:
        case Shape::Bit:
            return "INTEGER";
        case Shape::Real:
            return "REAL";
        case Shape::Bytes:
            return "BLOB";
        default:
            return "TEXT";
    }
}

int Misfit(const SqlType& type, const Cell& cell) {
    if (cell.kind == Cell::Kind::Null) return 0;
    const TypeRow& row = RowOf(type);
    switch (row.shape) {
        case Shape::Integer:
        case Shape::Bit:
            if (cell.kind != Cell::Kind::Integer) return kConversion;
            return cell.integer < row.least || cell.integer > row.most ? kOverflow : 0;
        case Shape::Real:
            return cell.kind == Cell::Kind::Text || cell.kind == Cell::Kind::Blob ? 8114 : 0;
        case Shape::Decimal:
        case Shape::Money:
            return NumberMisfit(type, row, cell);
        case Shape::Moment:
        case Shape::Date:
            return MomentMisfit(row, cell);
        case Shape::Guid:
            return cell.bytes.size() < 32 ? 8169 : 0;
        default:
            return ContentMisfit(type, row, cell);
    }
}

bool IsText(const SqlType& type) {
    return RowOf(type).shape == Shape::Text;
}

bool HasTextPointer(const SqlType& type) {
    return type.word == "text" || type.word == "ntext" || type.word == "image";
}

void WriteTypeInfo(Writer& out, const SqlType& type) {
    const TypeRow& row = RowOf(type);
    out.U8(row.token);
    if (row.shape == Shape::Date) return;
    if (row.word == "datetime2") return out.U8(7);
    if (row.shape == Shape::Text || row.shape == Shape::Bytes) {
        if (HasTextPointer(type))
            out.U32(IsWide(row) ? 0x7FFFFFFE : 0x7FFFFFFF);
        else
            out.U16(type.size == 0 ? 0xFFFF : type.size * row.bytes);
        if (row.shape == Shape::Text) out.Raw(FindCollation(type.collation)->wire);
        return;
    }
    out.U8(row.bytes);
    if (row.shape == Shape::Decimal) out.U8(type.precision), out.U8(type.scale);
}

void WriteCell(Writer& out, const SqlType& type, const Cell& cell) {
    const TypeRow& row = RowOf(type);
    const bool content = row.shape == Shape::Text || row.shape == Shape::Bytes;
    if (cell.kind == Cell::Kind::Null) {
        if (!content || HasTextPointer(type)) return out.U8(0);
        return type.size == 0 ? out.U64(UINT64_MAX) : out.U16(0xFFFF);
    }
    switch (row.shape) {
        case Shape::Integer:
        case Shape::Bit:
            out.U8(row.bytes);
            return out.Number(static_cast<std::uint64_t>(cell.integer), static_cast<int>(row.bytes));
        case Shape::Real: {
            out.U8(row.bytes);
            const double real = RealOf(cell);
            const auto single = static_cast<float>(real);
            if (row.bytes == 4) return out.Raw({reinterpret_cast<const char*>(&single), 4});
            return out.Raw({reinterpret_cast<const char*>(&real), 8});
        }
        case Shape::Decimal:
            return WriteDecimal(out, type, cell);
        case Shape::Money:
            return WriteMoney(out, row, cell);
        case Shape::Moment:
            return WriteMoment(out, row, cell);
        case Shape::Date:
            out.U8(3);
            return out.Number(
                static_cast<std::uint64_t>(ParseDateTime(cell.bytes).value_or(DateTime{}).days - kDayOfYearOne), 3);
        case Shape::Guid:
            return WriteGuid(out, cell.bytes);
        default:
            return WriteContent(out, type, row, cell);
    }
}

Cell ReadParameter(Reader& in) {
    const unsigned token = in.U8();
    switch (token) {
        case 0x26:
        case 0x68:
        case 0x6D:
            in.Skip(1);
            return ReadNumberParameter(token, in, 0);
        case 0x6A:
        case 0x6C: {
            in.Skip(2);
            const unsigned scale = in.U8();
            return ReadNumberParameter(token, in, scale);
        }
        case 0x28:
            return ReadMomentParameter(token, in);
        case 0x2A:
        case 0x6F:
            in.Skip(1);
            return ReadMomentParameter(token, in);
        case 0x24:
            in.Skip(1);
            return ReadGuidParameter(in);
        default:
            return ReadContentParameter(token, in);
    }
}

}  // namespace varnel::tds
