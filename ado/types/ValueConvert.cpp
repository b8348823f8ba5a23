#include "ado/types/ValueConvert.h"

#include <limits>
#include <string>

#include "ado/types/ConnectionString.h"
#include "ado/types/ExactNumbers.h"
#include "ado/types/ValueText.h"
#include "platform/CodePage.h"
#include "platform/Error.h"

namespace varnel {
namespace {

template <class Whole>
void SetWhole(const Value& from, DataTypeEnum type, Value& into) {
    const std::int64_t number = ExactWhole(from, type);
    if (number < std::int64_t{std::numeric_limits<Whole>::min()} ||
        number > std::int64_t{std::numeric_limits<Whole>::max()}) {
        RefuseOverflow(from, type);
    }
    into.SetInteger(number);
}

DateTime MomentOf(const Value& from, DataTypeEnum type) {
    switch (from.Kind()) {
        case ValueKind::DateTime:
            return from.AsDateTime();
        case ValueKind::Text: {
            const std::optional<DateTime> moment = ParseDateTime(from.AsText());
            if (!moment) RefuseMismatch(from, type);
            return *moment;
        }
        case ValueKind::Integer:
        case ValueKind::Single:
        case ValueKind::Double:
        case ValueKind::Currency:
        case ValueKind::Decimal: {
            const double days = ToDouble(from);
            if (!(days > kFirstDay - 1.0 && days < kLastDay + 1.0)) RefuseOverflow(from, type);
            return FromAutomationDate(days);
        }
        default:
            RefuseMismatch(from, type);
    }
}

void SetMoment(const Value& from, DataTypeEnum type, Value& into) {
    const DateTime moment = MomentOf(from, type);
    const bool outside = type == adDate && (moment.days < kFirstDay || moment.days > kLastDay);
    const bool timeInDate = type == adDBDate && moment.micros != 0;
    const bool dateInTime = type == adDBTime && moment.days != 0;
    if (outside || timeInDate || dateInTime) RefuseOverflow(from, type);
    into.SetDateTime(moment);
}

void SetTruth(const Value& from, DataTypeEnum type, Value& into) {
    const bool isNumber = from.Kind() <= ValueKind::Decimal;
    const std::string_view word = from.Kind() == ValueKind::Text ? TrimBlanks(from.AsText()) : std::string_view();
    const bool isWord = EqualNoCase(word, "True") || EqualNoCase(word, "False") || ParseDouble(word);
    if (!isNumber && !isWord) RefuseMismatch(from, type);
    into.SetBoolean(ToBoolean(from));
}

void SetGuidOf(const Value& from, DataTypeEnum type, Value& into) {
    GuidBytes guid{};
    if (from.Kind() == ValueKind::Guid) {
        guid = from.AsGuid();
    } else if (from.Kind() != ValueKind::Text || !ParseGuid(TrimBlanks(from.AsText()), guid)) {
        RefuseMismatch(from, type);
    }
    into.SetGuid(guid);
}

void SetTextOf(const Value& from, Value& into) {
    if (from.Kind() == ValueKind::Text) {
        into.SetText(from.AsText());
    } else if (from.Kind() == ValueKind::Bytes) {
        AppendUtf8FromUtf16(into.StartText(), from.AsBytes());
    } else {
        AppendDefaultText(into.StartText(), from);
    }
}

void SetBytesOf(const Value& from, DataTypeEnum type, Value& into) {
    if (from.Kind() != ValueKind::Bytes) RefuseMismatch(from, type);
    into.SetBytes(from.AsBytes());
}

/// The value as it is, without the buffer that it may keep from an earlier text.
void CopyValue(const Value& from, Value& into) {
    switch (from.Kind()) {
        case ValueKind::Null:
            return into.SetNull();
        case ValueKind::Boolean:
            return into.SetBoolean(from.AsBoolean());
        case ValueKind::Integer:
            return into.SetInteger(from.AsInteger());
        case ValueKind::Single:
            return into.SetSingle(from.AsSingle());
        case ValueKind::Double:
            return into.SetDouble(from.AsDouble());
        case ValueKind::Currency:
            return into.SetCurrency(from.AsCurrency());
        case ValueKind::Decimal:
            return into.SetDecimal(from.AsDecimal());
        case ValueKind::DateTime:
            return into.SetDateTime(from.AsDateTime());
        case ValueKind::Text:
            return into.SetText(from.AsText());
        case ValueKind::Bytes:
            return into.SetBytes(from.AsBytes());
        case ValueKind::Guid:
            return into.SetGuid(from.AsGuid());
        case ValueKind::Failure:
            return into.SetFailure(from.FailureText());
    }
}

}  // namespace

void ConvertValue(const Value& from, DataTypeEnum type, Value& into) {
    if (from.IsNull()) return into.SetNull();
    if (from.Kind() == ValueKind::Failure) throw Error(ErrorKind::Conversion, "", std::string(from.FailureText()));
    switch (type) {
        case adEmpty:
        case adVariant:
            return CopyValue(from, into);
        case adSmallInt:
            return SetWhole<std::int16_t>(from, type, into);
        case adInteger:
            return SetWhole<std::int32_t>(from, type, into);
        case adTinyInt:
            return SetWhole<std::int8_t>(from, type, into);
        case adUnsignedTinyInt:
            return SetWhole<std::uint8_t>(from, type, into);
        case adUnsignedSmallInt:
            return SetWhole<std::uint16_t>(from, type, into);
        case adUnsignedInt:
            return SetWhole<std::uint32_t>(from, type, into);
        case adBigInt:
            return SetWhole<std::int64_t>(from, type, into);
        case adUnsignedBigInt:
            return into.SetDecimal(ExactUnsigned64(from, type));
        case adSingle:
            return into.SetSingle(ExactSingle(from, type));
        case adDouble:
            return into.SetDouble(ExactDouble(from, type));
        case adCurrency:
            return into.SetCurrency(ExactCurrency(from, type));
        case adDecimal:
        case adNumeric:
        case adVarNumeric:
            return into.SetDecimal(ExactDecimal(from, type));
        case adDate:
        case adDBDate:
        case adDBTime:
        case adDBTimeStamp:
            return SetMoment(from, type, into);
        case adBoolean:
            return SetTruth(from, type, into);
        case adGUID:
            return SetGuidOf(from, type, into);
        case adBSTR:
        case adChar:
        case adWChar:
        case adVarChar:
        case adLongVarChar:
        case adVarWChar:
        case adLongVarWChar:
            return SetTextOf(from, into);
        case adBinary:
        case adVarBinary:
        case adLongVarBinary:
            return SetBytesOf(from, type, into);
    }
    RefuseMismatch(from, type);
}

}  // namespace varnel
