#include <algorithm>

#include "ado/types/ConnectionString.h"
#include "ado/types/ValueConvert.h"
#include "platform/CodePage.h"
#include "providers/sql/ExpressionValues.h"
#include "providers/sql/FoxProForms.h"
#include "providers/sql/FoxProMoment.h"
#include "providers/sql/FoxProRules.h"
#include "providers/sql/SqlFunctionTable.h"
#include "providers/sql/TextParts.h"

namespace varnel::sql {
namespace {

bool IsBlankText(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

/// '' or blanks, 0, .F.; Null is not empty. (Of a date the binder asks for Null instead.)
void Empty(Arguments a, Value& out) {
    const Value& value = *a[0];
    if (value.Kind() == ValueKind::Text) return out.SetBoolean(IsBlankText(value.AsText()));
    if (value.Kind() == ValueKind::Boolean) return out.SetBoolean(!value.AsBoolean());
    if (value.Kind() == ValueKind::Bytes) return out.SetBoolean(value.AsBytes().empty());
    out.SetBoolean(IsNumber(value) && NumberOf(value) == 0);
}
void IsBlank(Arguments a, Value& out) {
    out.SetBoolean(a[0]->Kind() == ValueKind::Text && IsBlankText(a[0]->AsText()));
}
void IsNull(Arguments a, Value& out) {
    out.SetBoolean(a[0]->IsNull());
}
void Nvl(Arguments a, Value& out) {
    out = a[0]->IsNull() ? *a[1] : *a[0];
}
/// Rows that are marked as deleted are not delivered.
void Deleted(Arguments, Value& out) {
    out.SetBoolean(false);
}

void VarType(Arguments a, Value& out) {
    switch (a[0]->Kind()) {
        case ValueKind::Null:
            return out.SetText("X");
        case ValueKind::Boolean:
            return out.SetText("L");
        case ValueKind::Text:
            return out.SetText("C");
        case ValueKind::Currency:
            return out.SetText("Y");
        case ValueKind::Bytes:
            return out.SetText("Q");
        case ValueKind::DateTime:
            return out.SetText(a[0]->AsDateTime().micros == 0 ? "D" : "T");
        default:
            return out.SetText("N");
    }
}

/// Digits where the picture has 9 or #, its commas where digits stand around them.
std::string FilledPicture(const Value& number, std::string_view picture) {
    if (picture.find_first_not_of("9#,.") != std::string_view::npos) ThrowFoxProArgument();
    const std::size_t point = std::min(picture.find('.'), picture.size());
    const std::string_view whole = picture.substr(0, point);
    const std::size_t decimals = point == picture.size() ? 0 : picture.size() - point - 1;
    const auto places =
        static_cast<int>(whole.size() - static_cast<std::size_t>(std::count(whole.begin(), whole.end(), ',')));
    const int width = places + (decimals == 0 ? 0 : static_cast<int>(decimals) + 1);
    if (width < 1) ThrowFoxProArgument();
    const std::string digits = FoxProStr(number, width, static_cast<int>(decimals));
    std::string filled;
    std::size_t next = 0;
    for (const char c : picture) {
        if (c != ',') {
            filled += digits[next++];
        } else {
            const bool between = next > 0 && digits[next - 1] >= '0' && digits[next - 1] <= '9';
            filled += between ? ',' : ' ';
        }
    }
    return filled;
}

/// TRANSFORM(value [, picture]); of the format codes @! alone.
void Transform(Arguments a, Value& out) {
    if (a.size() == 1) return out.SetText(FoxProText(*a[0]));
    if (a[1]->Kind() != ValueKind::Text) ThrowFoxProArgument();
    const std::string_view picture = WithoutRight(a[1]->AsText());
    if (picture.empty()) return out.SetText(FoxProText(*a[0]));
    if (picture == "@!") return out.SetText(UpperCase(FoxProText(*a[0])));
    if (!IsNumber(*a[0])) ThrowFoxProArgument();
    out.SetText(FilledPicture(*a[0], picture));
}

void CastToText(const Value& value, std::int64_t width, bool padded, Value& out) {
    std::string text = value.Kind() == ValueKind::Text ? std::string(value.AsText()) : FoxProText(value);
    if (width >= 0) text.resize(OffsetOf(text, width));
    if (padded) text.append(static_cast<std::size_t>(width) - CharacterCount(text), ' ');
    out.SetText(text);
}

void CastToNumber(const Value& value, std::int64_t decimals, Value& out) {
    Value number;
    if (value.Kind() == ValueKind::Text)
        ConvertValue(value, adDouble, number);
    else if (value.Kind() == ValueKind::Boolean)
        number.SetInteger(value.AsBoolean() ? 1 : 0);
    else
        number = value;
    RoundFoxPro(number, static_cast<int>(std::max<std::int64_t>(0, decimals)), out);
}

void CastToMoment(const Value& value, bool withTime, Value& out) {
    DateTime moment;
    if (value.Kind() == ValueKind::DateTime) {
        moment = value.AsDateTime();
    } else {
        if (value.Kind() != ValueKind::Text) ThrowFoxProArgument();
        const std::optional<WrittenMoment> written = ReadFoxProMoment(value.AsText());
        if (!written) return out.SetNull();
        moment = written->moment;
    }
    out.SetDateTime({moment.days, withTime ? moment.micros : 0});
}

/// The arguments behind the value: the type's letter, width and decimals, -1 for what was not written.
void Cast(Arguments a, Value& out) {
    const std::int64_t width = a[2]->AsInteger(), decimals = a[3]->AsInteger();
    switch (a[1]->AsText()[0]) {
        case 'C':
            return CastToText(*a[0], width, true, out);
        case 'V':
        case 'M':
            return CastToText(*a[0], width, false, out);
        case 'I':
        case 'N':
        case 'F':
            return CastToNumber(*a[0], decimals, out);
        case 'B':
            return ConvertValue(*a[0], adDouble, out);
        case 'Y':
            return ConvertValue(*a[0], adCurrency, out);
        case 'D':
        case 'T':
            return CastToMoment(*a[0], a[1]->AsText()[0] == 'T', out);
        case 'L':
            return ConvertValue(*a[0], adBoolean, out);
        default:
            ThrowFoxProArgument();
    }
}

constexpr SqlFunction kFunctions[] = {
    {"empty", 1, 1, adBoolean, true, Empty},          {"isblank", 1, 1, adBoolean, true, IsBlank},
    {"isnull", 1, 1, adBoolean, true, IsNull},        {"nvl", 2, 2, adVariant, true, Nvl},
    {"deleted", 0, 1, adBoolean, true, Deleted},      {"vartype", 1, 1, adVarWChar, true, VarType},
    {"transform", 1, 2, adVarWChar, true, Transform}, {"cast", 4, 4, adVariant, false, Cast},
};

}  // namespace

std::span<const SqlFunction> FoxProValueFunctions() {
    return kFunctions;
}

}  // namespace varnel::sql
