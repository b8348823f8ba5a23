#include <algorithm>
#include <vector>

#include "platform/CodePage.h"
#include "platform/Error.h"
#include "platform/Utf8.h"
#include "providers/sql/ExpressionValues.h"
#include "providers/sql/JetRules.h"
#include "providers/sql/SqlFunctionTable.h"
#include "providers/sql/TextParts.h"

namespace varnel::sql {
namespace {

[[noreturn]] void ThrowBadArgument() {
    throw Error(ErrorKind::Conversion, "", "Invalid procedure call or argument");
}

std::int64_t CountOf(const Value& value) {
    const std::int64_t count = WholeOf(value);
    if (count < 0) ThrowBadArgument();
    return count;
}

void Left(Arguments a, Value& out) {
    const Text text(*a[0]);
    out.SetText((*text).substr(0, OffsetOf(*text, CountOf(*a[1]))));
}

void Right(Arguments a, Value& out) {
    const Text text(*a[0]);
    const auto size = static_cast<std::int64_t>(CharacterCount(*text));
    out.SetText((*text).substr(OffsetOf(*text, std::max<std::int64_t>(0, size - CountOf(*a[1])))));
}

void Mid(Arguments a, Value& out) {
    const Text text(*a[0]);
    const std::int64_t start = WholeOf(*a[1]);
    if (start < 1) ThrowBadArgument();
    std::string_view rest = (*text).substr(OffsetOf(*text, start - 1));
    if (a.size() > 2) rest = rest.substr(0, OffsetOf(rest, CountOf(*a[2])));
    out.SetText(rest);
}

void Len(Arguments a, Value& out) {
    const Text text(*a[0]);
    out.SetInteger(static_cast<std::int64_t>(CharacterCount(*text)));
}

void LTrim(Arguments a, Value& out) {
    out.SetText(WithoutLeft(*Text(*a[0])));
}
void RTrim(Arguments a, Value& out) {
    out.SetText(WithoutRight(*Text(*a[0])));
}
void Trim(Arguments a, Value& out) {
    out.SetText(WithoutRight(WithoutLeft(*Text(*a[0]))));
}

void LCase(Arguments a, Value& out) {
    out.SetText(FoldCase(*Text(*a[0])));
}

void UCase(Arguments a, Value& out) {
    out.SetText(UpperCase(*Text(*a[0])));
}

/// InStr([start,] text, part [, compare]): without case unless compare is 0.
void InStr(Arguments a, Value& out) {
    const bool hasStart = a.size() > 2 && a[0]->Kind() != ValueKind::Text;
    const std::int64_t start = hasStart ? WholeOf(*a[0]) : 1;
    if (start < 1) ThrowBadArgument();
    const Text text(*a[hasStart ? 1 : 0]), part(*a[hasStart ? 2 : 1]);
    const std::size_t compareAt = hasStart ? 3 : 2;
    const bool exact = a.size() > compareAt && WholeOf(*a[compareAt]) == 0;
    // Folding may change the number of bytes, never the number of characters.
    const std::string in = exact ? std::string(*text) : FoldCase(*text);
    const std::string what = exact ? std::string(*part) : FoldCase(*part);
    const std::size_t from = OffsetOf(in, start - 1);
    const std::size_t found =
        static_cast<std::size_t>(start) > CharacterCount(in) + 1 ? std::string::npos : in.find(what, from);
    out.SetInteger(found == std::string::npos
                       ? 0
                       : static_cast<std::int64_t>(CharacterCount(std::string_view(in).substr(0, found))) + 1);
}

void Space(Arguments a, Value& out) {
    const std::int64_t count = CountOf(*a[0]);
    if (count > kLongestText) ThrowBadArgument();
    out.SetText(std::string(static_cast<std::size_t>(count), ' '));
}

void StringOf(Arguments a, Value& out) {
    const std::int64_t count = CountOf(*a[0]);
    if (count > kLongestText) ThrowBadArgument();
    std::string letter;
    if (a[1]->Kind() == ValueKind::Text)
        letter = a[1]->AsText().substr(0, OffsetOf(a[1]->AsText(), 1));
    else
        AppendCodePoint(letter, static_cast<char32_t>(WholeOf(*a[1]) & 0xFF));
    std::string text;
    for (std::int64_t i = 0; i < count; ++i) text += letter;
    out.SetText(text);
}

void StrComp(Arguments a, Value& out) {
    const Text left(*a[0]), right(*a[1]);
    const bool exact = a.size() > 2 && WholeOf(*a[2]) == 0;
    const int order = exact ? (*left).compare(*right) : CompareTexts(*left, *right);
    out.SetInteger(order < 0 ? -1 : (order > 0 ? 1 : 0));
}

void Chr(Arguments a, Value& out) {
    const std::int64_t code = WholeOf(*a[0]);
    if (code < 0 || code > 255) ThrowBadArgument();
    out.SetText(WesternCharacter(static_cast<char>(code)));
}

void ChrW(Arguments a, Value& out) {
    const std::int64_t code = WholeOf(*a[0]);
    if (code < 0 || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) ThrowBadArgument();
    std::string text;
    AppendCodePoint(text, static_cast<char32_t>(code));
    out.SetText(text);
}

void AscW(Arguments a, Value& out) {
    const Text text(*a[0]);
    if ((*text).empty()) ThrowBadArgument();
    std::size_t at = 0;
    out.SetInteger(NextCodePoint(*text, at));
}

void Asc(Arguments a, Value& out) {
    const Text text(*a[0]);
    if ((*text).empty()) ThrowBadArgument();
    std::string byte;
    CodePage(1252).Encode(byte, (*text).substr(0, OffsetOf(*text, 1)));
    out.SetInteger(static_cast<unsigned char>(byte[0]));
}

void StrReverse(Arguments a, Value& out) {
    const Text text(*a[0]);
    std::string reversed;
    for (std::size_t end = (*text).size(); end > 0;) {
        std::size_t start = end - 1;
        while (start > 0 && (static_cast<unsigned char>((*text)[start]) & 0xC0) == 0x80) --start;
        reversed += (*text).substr(start, end - start);
        end = start;
    }
    out.SetText(reversed);
}

/// Replace(text, find, with [, start [, count [, compare]]]): without case unless compare is 0.
void Replace(Arguments a, Value& out) {
    const Text text(*a[0]), find(*a[1]), with(*a[2]);
    const std::int64_t start = a.size() > 3 ? WholeOf(*a[3]) : 1;
    std::int64_t left = a.size() > 4 ? WholeOf(*a[4]) : -1;
    const bool exact = a.size() > 5 && WholeOf(*a[5]) == 0;
    if (start < 1) ThrowBadArgument();
    const std::string_view rest = (*text).substr(OffsetOf(*text, start - 1));
    const std::string what = exact ? std::string(*find) : FoldCase(*find);
    const auto length = static_cast<std::int64_t>(CharacterCount(what));
    std::string replaced;
    for (std::size_t at = 0; at < rest.size();) {
        const std::string_view here = rest.substr(at, OffsetOf(rest.substr(at), length));
        if (left != 0 && length > 0 && (exact ? std::string(here) : FoldCase(here)) == what) {
            replaced += *with;
            at += here.size();
            if (left > 0) --left;
        } else {
            const std::size_t next = at + OffsetOf(rest.substr(at), 1);
            replaced += rest.substr(at, next - at);
            at = next;
        }
        if (replaced.size() > static_cast<std::size_t>(kLongestText)) ThrowBadArgument();
    }
    out.SetText(replaced);
}

constexpr SqlFunction kFunctions[] = {
    {"left", 2, 2, adVarWChar, false, Left},       {"right", 2, 2, adVarWChar, false, Right},
    {"mid", 2, 3, adVarWChar, false, Mid},         {"len", 1, 1, adInteger, false, Len},
    {"trim", 1, 1, adVarWChar, false, Trim},       {"ltrim", 1, 1, adVarWChar, false, LTrim},
    {"rtrim", 1, 1, adVarWChar, false, RTrim},     {"ucase", 1, 1, adVarWChar, false, UCase},
    {"lcase", 1, 1, adVarWChar, false, LCase},     {"instr", 2, 4, adInteger, false, InStr},
    {"space", 1, 1, adVarWChar, false, Space},     {"string", 2, 2, adVarWChar, false, StringOf},
    {"strcomp", 2, 3, adInteger, false, StrComp},  {"chr", 1, 1, adVarWChar, false, Chr},
    {"chrw", 1, 1, adVarWChar, false, ChrW},       {"asc", 1, 1, adInteger, false, Asc},
    {"ascw", 1, 1, adInteger, false, AscW},        {"strreverse", 1, 1, adVarWChar, false, StrReverse},
    {"replace", 3, 6, adVarWChar, false, Replace},
};

}  // namespace

std::span<const SqlFunction> TextFunctions() {
    return kFunctions;
}

}  // namespace varnel::sql
