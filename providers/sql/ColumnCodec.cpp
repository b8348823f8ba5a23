#include "providers/sql/ColumnCodec.h"

#include <cmath>
#include <cstring>
#include <utility>

#include "ado/types/ValueText.h"
#include "platform/CodePage.h"
#include "providers/sql/FailureForm.h"

namespace varnel::sql {
namespace {

std::string_view TextOf(sqlite3_value* stored) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(stored));
    return text == nullptr ? std::string_view()
                           : std::string_view(text, static_cast<std::size_t>(sqlite3_value_bytes(stored)));
}

std::string_view BlobOf(sqlite3_value* stored) {
    const auto* bytes = static_cast<const char*>(sqlite3_value_blob(stored));
    return bytes == nullptr ? std::string_view()
                            : std::string_view(bytes, static_cast<std::size_t>(sqlite3_value_bytes(stored)));
}

bool IsAscii(std::string_view text) {
    const char* at = text.data();
    const char* end = at + text.size();
    for (; end - at >= 8; at += 8) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, at, 8);
        if ((eight & 0x8080808080808080U) != 0) return false;
    }
    for (; at != end; ++at)
        if (static_cast<unsigned char>(*at) >= 0x80) return false;
    return true;
}

}  // namespace

ColumnCodec::ColumnCodec(const DeclaredType& type, Affinity affinity, std::string place)
    : decode_(ChooseDecoder(type.type)),
      scale_(type.scale == kNotStated ? 4 : type.scale),
      textMayBeBlob_(affinity != Affinity::Text && affinity != Affinity::Blob),
      place_(std::move(place)) {}

ColumnCodec::Decoder ColumnCodec::ChooseDecoder(DataTypeEnum type) {
    switch (type) {
        case adInteger:
        case adSmallInt:
        case adUnsignedTinyInt:
        case adBigInt:
            return &AsInteger;
        case adSingle:
            return &AsSingle;
        case adDouble:
            return &AsDouble;
        case adCurrency:
            return &AsCurrency;
        case adNumeric:
        case adVarNumeric:
            return &AsDecimal;
        case adBoolean:
            return &AsBoolean;
        case adDate:
        case adDBTimeStamp:
            return &AsMoment;
        case adVarWChar:
        case adWChar:
        case adLongVarWChar:
        case adVariant:
            return &AsText;
        case adGUID:
            return &AsGuid;
        default:
            return &ByStorageClass;
    }
}

void ColumnCodec::TakeText(sqlite3_value* stored, Value& out) const {
    const std::string_view text = TextOf(stored);
    if (IsAscii(text) || IsUtf8(text)) return out.SetText(text);
    out.SetFailure("The text in " + place_ + " is not valid UTF-8.");
}

void ColumnCodec::ByStorageClass(const ColumnCodec& codec, sqlite3_value* stored, Value& out) {
    switch (sqlite3_value_type(stored)) {
        case SQLITE_INTEGER:
            return out.SetInteger(sqlite3_value_int64(stored));
        case SQLITE_FLOAT:
            return out.SetDouble(sqlite3_value_double(stored));
        case SQLITE_TEXT:
            return codec.TakeText(stored, out);
        case SQLITE_BLOB:
            if (!ReadFailureForm(BlobOf(stored), out)) out.StartBytes().assign(BlobOf(stored));
            return;
        default:
            out.SetNull();
    }
}

void ColumnCodec::AsInteger(const ColumnCodec& codec, sqlite3_value* stored, Value& out) {
    const int storage = sqlite3_value_type(stored);
    if (storage == SQLITE_INTEGER) return out.SetInteger(sqlite3_value_int64(stored));
    Decimal digits;
    // The digits of a whole number, kept as other exact numbers are.
    if (storage == SQLITE_BLOB && ReadStoredDigits(BlobOf(stored), digits) && digits.scale == 0) {
        const UInt128 most = static_cast<UInt128>(INT64_MAX) + (digits.negative ? 1 : 0);
        const auto size = static_cast<std::uint64_t>(digits.magnitude);
        if (digits.magnitude <= most)
            return out.SetInteger(static_cast<std::int64_t>(digits.negative ? 0 - size : size));
    }
    ByStorageClass(codec, stored, out);
}

void ColumnCodec::AsSingle(const ColumnCodec& codec, sqlite3_value* stored, Value& out) {
    const int storage = sqlite3_value_type(stored);
    if (storage == SQLITE_FLOAT || storage == SQLITE_INTEGER) {
        const double number = sqlite3_value_double(stored);
        const auto single = static_cast<float>(number);
        const bool exact = static_cast<double>(single) == number;
        if (exact && std::fabs(number) < 9e15) return out.SetSingle(single);
        if (exact && storage == SQLITE_FLOAT) return out.SetSingle(single);
    }
    ByStorageClass(codec, stored, out);
}

void ColumnCodec::AsDouble(const ColumnCodec& codec, sqlite3_value* stored, Value& out) {
    const int storage = sqlite3_value_type(stored);
    if (storage == SQLITE_FLOAT) return out.SetDouble(sqlite3_value_double(stored));
    if (storage == SQLITE_INTEGER) {
        // A numeric column keeps whole doubles as integers; only those that a double holds come back as one.
        const std::int64_t whole = sqlite3_value_int64(stored);
        const double number = static_cast<double>(whole);
        if (std::fabs(number) < 9.2e18 && static_cast<std::int64_t>(number) == whole) return out.SetDouble(number);
    }
    ByStorageClass(codec, stored, out);
}

void ColumnCodec::AsCurrency(const ColumnCodec& codec, sqlite3_value* stored, Value& out) {
    constexpr std::int64_t kMostWhole = INT64_MAX / kCurrencyScale;
    std::int64_t scaled = 0;
    Decimal digits;
    switch (sqlite3_value_type(stored)) {
        case SQLITE_INTEGER: {
            const std::int64_t whole = sqlite3_value_int64(stored);
            if (whole >= -kMostWhole && whole <= kMostWhole) return out.SetCurrency(whole * kCurrencyScale);
            break;
        }
        case SQLITE_FLOAT: {
            const double number = sqlite3_value_double(stored);
            const double rounded = std::nearbyint(number * kCurrencyScale);
            if (std::fabs(rounded) < 9e15 && rounded / kCurrencyScale == number)
                return out.SetCurrency(static_cast<std::int64_t>(rounded));
            break;
        }
        case SQLITE_TEXT:
        case SQLITE_BLOB:
            if (!ReadStoredDigits(BlobOf(stored), digits)) break;
            if (ExactCurrency(digits, scaled)) return out.SetCurrency(scaled);
            return out.SetDecimal(digits);
        default:
            break;
    }
    ByStorageClass(codec, stored, out);
}

void ColumnCodec::AsDecimal(const ColumnCodec& codec, sqlite3_value* stored, Value& out) {
    Decimal number;
    switch (sqlite3_value_type(stored)) {
        case SQLITE_INTEGER:
            return out.SetDecimal(DecimalFromInt64(sqlite3_value_int64(stored)));
        case SQLITE_FLOAT:
            if (!DecimalFromStoredReal(sqlite3_value_double(stored), codec.scale_, number)) break;
            return out.SetDecimal(number);
        case SQLITE_TEXT:
        case SQLITE_BLOB:
            if (!ReadStoredDigits(BlobOf(stored), number)) break;
            return out.SetDecimal(number);
        default:
            break;
    }
    ByStorageClass(codec, stored, out);
}

void ColumnCodec::AsBoolean(const ColumnCodec& codec, sqlite3_value* stored, Value& out) {
    if (sqlite3_value_type(stored) == SQLITE_INTEGER) {
        const std::int64_t number = sqlite3_value_int64(stored);
        if (number >= -1 && number <= 1) return out.SetBoolean(number != 0);
    }
    ByStorageClass(codec, stored, out);
}

void ColumnCodec::AsMoment(const ColumnCodec& codec, sqlite3_value* stored, Value& out) {
    DateTime moment;
    bool known = false;
    switch (sqlite3_value_type(stored)) {
        case SQLITE_TEXT:
            known = ReadStoredMoment(TextOf(stored), moment);
            break;
        case SQLITE_INTEGER:
            known = MomentFromUnixSeconds(sqlite3_value_int64(stored), moment);
            break;
        case SQLITE_FLOAT:
            known = MomentFromJulianDay(sqlite3_value_double(stored), moment);
            break;
        default:
            break;
    }
    if (known) return out.SetDateTime(moment);
    ByStorageClass(codec, stored, out);
}

void ColumnCodec::AsText(const ColumnCodec& codec, sqlite3_value* stored, Value& out) {
    const int storage = sqlite3_value_type(stored);
    if (storage == SQLITE_TEXT) return codec.TakeText(stored, out);
    if (storage == SQLITE_BLOB && codec.textMayBeBlob_ && LooksNumeric(BlobOf(stored)))
        return out.SetText(BlobOf(stored));
    ByStorageClass(codec, stored, out);
}

void ColumnCodec::AsGuid(const ColumnCodec& codec, sqlite3_value* stored, Value& out) {
    GuidBytes guid;
    if (sqlite3_value_type(stored) == SQLITE_TEXT && ParseGuid(TextOf(stored), guid)) return out.SetGuid(guid);
    ByStorageClass(codec, stored, out);
}

int BindForm(sqlite3_stmt* statement, int parameter, const StoredForm& form) {
    // A null pointer would bind Null: empty texts and blobs point to something.
    const char* bytes = form.bytes.data() == nullptr ? "" : form.bytes.data();
    switch (form.storage) {
        case StorageClass::Integer:
            return sqlite3_bind_int64(statement, parameter, form.integer);
        case StorageClass::Real:
            return sqlite3_bind_double(statement, parameter, form.real);
        case StorageClass::Text:
            return sqlite3_bind_text64(statement, parameter, bytes, form.bytes.size(), SQLITE_STATIC, SQLITE_UTF8);
        case StorageClass::Blob:
            return sqlite3_bind_blob64(statement, parameter, bytes, form.bytes.size(), SQLITE_STATIC);
        case StorageClass::Null:
            break;
    }
    return sqlite3_bind_null(statement, parameter);
}

void ReturnForm(sqlite3_context* context, const StoredForm& form) {
    const char* bytes = form.bytes.data() == nullptr ? "" : form.bytes.data();
    switch (form.storage) {
        case StorageClass::Integer:
            return sqlite3_result_int64(context, form.integer);
        case StorageClass::Real:
            return sqlite3_result_double(context, form.real);
        case StorageClass::Text:
            return sqlite3_result_text64(context, bytes, form.bytes.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
        case StorageClass::Blob:
            return sqlite3_result_blob64(context, bytes, form.bytes.size(), SQLITE_TRANSIENT);
        case StorageClass::Null:
            break;
    }
    sqlite3_result_null(context);
}

}  // namespace varnel::sql
