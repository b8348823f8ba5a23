#include "ado/types/ValueText.h"

#include <array>

#include "ado/types/DecimalReading.h"
#include "ado/types/NumberText.h"
#include "ado/types/ValueConvert.h"
#include "platform/Error.h"

namespace varnel {
namespace {

constexpr char kHexDigits[] = "0123456789ABCDEF";

[[noreturn]] void ThrowConversion(std::string_view text) {
    throw Error(ErrorKind::Conversion, "", std::string(text));
}

void AppendHex(std::string& out, std::span<const std::uint8_t> bytes) {
    const std::size_t start = out.size();
    out.resize(start + bytes.size() * 2);
    char* to = out.data() + start;
    for (const std::uint8_t byte : bytes) {
        *to++ = kHexDigits[byte >> 4];
        *to++ = kHexDigits[byte & 15];
    }
}

/// Text that reads as a number, as that number: a double, or with all its digits where a double would lose some.
void AppendNumericTextOfText(std::string& out, std::string_view text) {
    const std::optional<double> number = ParseDouble(text);
    if (!number) ThrowConversion("Type mismatch");
    Decimal exact, ofDouble;
    const bool doubleIsExact = ReadDecimal(text, exact) != DecimalReading::Number ||
                               (DecimalOfShortest(*number, ofDouble) && ofDouble == exact);
    if (*number >= 0) out += ' ';
    if (!doubleIsExact) {
        AppendDecimalText(out, exact);
    } else {
        AppendDoubleText(out, *number);
    }
}

/// The value of a hexadecimal digit; -1 for anything else.
int HexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

bool HasDashAt(std::size_t place) {
    return place == 8 || place == 13 || place == 18 || place == 23;
}

}  // namespace

void AppendDefaultText(std::string& out, const Value& value) {
    switch (value.Kind()) {
        case ValueKind::Null:
            ThrowConversion("Invalid use of Null");
        case ValueKind::Boolean:
            out += value.AsBoolean() ? "True" : "False";
            return;
        case ValueKind::Integer:
            AppendIntegerText(out, value.AsInteger());
            return;
        case ValueKind::Single:
            AppendSingleText(out, value.AsSingle());
            return;
        case ValueKind::Double:
            AppendDoubleText(out, value.AsDouble());
            return;
        case ValueKind::Currency:
            AppendCurrencyText(out, value.AsCurrency());
            return;
        case ValueKind::Decimal:
            AppendDecimalText(out, value.AsDecimal());
            return;
        case ValueKind::DateTime:
            AppendGeneralDate(out, value.AsDateTime());
            return;
        case ValueKind::Text:
            out.append(value.AsText());
            return;
        case ValueKind::Bytes:
            AppendHex(out, value.AsBytes());
            return;
        case ValueKind::Guid:
            AppendGuidText(out, value.AsGuid());
            return;
        case ValueKind::Failure:
            ThrowConversion(value.FailureText());
    }
}

std::string DefaultText(const Value& value) {
    std::string text;
    AppendDefaultText(text, value);
    return text;
}

void AppendNumericText(std::string& out, const Value& value) {
    bool negative = true;
    switch (value.Kind()) {
        case ValueKind::Text:
            AppendNumericTextOfText(out, value.AsText());
            return;
        case ValueKind::Bytes:
        case ValueKind::Guid:
            ThrowConversion("Type mismatch");
        case ValueKind::Integer:
            negative = value.AsInteger() < 0;
            break;
        case ValueKind::Single:
            negative = value.AsSingle() < 0;
            break;
        case ValueKind::Double:
            negative = value.AsDouble() < 0;
            break;
        case ValueKind::Currency:
            negative = value.AsCurrency() < 0;
            break;
        case ValueKind::Decimal:
            negative = value.AsDecimal().negative;
            break;
        default:
            break;  // no blank before what is no number
    }
    if (!negative) out += ' ';
    AppendDefaultText(out, value);
}

std::string NumericText(const Value& value) {
    std::string text;
    AppendNumericText(text, value);
    return text;
}

void AppendGuidText(std::string& out, const GuidBytes& guid) {
    std::array<char, 38> text;
    std::size_t at = 0;
    text[at++] = '{';
    for (const std::uint8_t byte : guid) {
        if (HasDashAt(at - 1)) text[at++] = '-';
        text[at++] = kHexDigits[byte >> 4];
        text[at++] = kHexDigits[byte & 15];
    }
    text[at++] = '}';
    out.append(text.data(), at);
}

bool ParseGuid(std::string_view text, GuidBytes& guid) {
    if (text.size() == 38 && text.front() == '{' && text.back() == '}') text = text.substr(1, 36);
    if (text.size() != 36) return false;
    GuidBytes read{};
    std::size_t byte = 0;
    for (std::size_t at = 0; at < text.size();) {
        if (HasDashAt(at)) {
            if (text[at++] != '-') return false;
            continue;
        }
        const int high = HexValue(text[at]), low = HexValue(text[at + 1]);
        if (high < 0 || low < 0) return false;
        read[byte++] = static_cast<std::uint8_t>(high << 4 | low);
        at += 2;
    }
    guid = read;
    return true;
}

}  // namespace varnel
