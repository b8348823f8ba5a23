#include <algorithm>
#include <vector>

#include "platform/CodePage.h"
#include "platform/Error.h"
#include "platform/Utf8.h"
#include "providers/sql/ExpressionValues.h"
#include "providers/sql/JetRules.h"
#include "providers/sql/SqlFunctionTable.h"

namespace varnel::sql {
namespace {

/// No function makes a longer text than this, so that a filter cannot ask for all memory.
constexpr std::int64_t kLongestText = 16 * 1024 * 1024;

[[noreturn]] void ThrowBadArgument() {
    throw Error(ErrorKind::Conversion, "", "Invalid procedure call or argument");
}

/// An argument as text, kept as long as it is needed.
class Text {
public:
    explicit Text(const Value& value) : view_(TextOf(value, scratch_)) {}
    std::string_view operator*() const { return view_; }

private:
    std::string scratch_;
    std::string_view view_;
};

/// The byte offset of the character at position count (from 0), or the end.
std::size_t OffsetOf(std::string_view text, std::int64_t count) {
    std::size_t at = 0;
    while (count > 0 && at < text.size()) NextCodePoint(text, at), --count;
    return at;
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

std::string_view WithoutLeft(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}
std::string_view WithoutRight(std::string_view text) {
    return text.substr(0, text.find_last_not_of(' ') + 1);
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

/// Upper case of one letter of the Latin, Greek and Cyrillic alphabets.
char32_t UpperOf(char32_t c) {
    if (c < 0x80) return c >= 'a' && c <= 'z' ? c - 32 : c;
    if (c == 0xFF) return 0x178;
    if (c >= 0xE0 && c <= 0xFE) return c == 0xF7 ? c : c - 32;
    if ((c >= 0x100 && c <= 0x137) || (c >= 0x14A && c <= 0x177)) return c == 0x131 ? 'I' : c & ~char32_t{1};
    if ((c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E)) return (c & 1) != 0 ? c : c - 1;
    if (c == 0x3C2) return 0x3A3;
    if (c >= 0x3B1 && c <= 0x3CB) return c - 32;
    if (c >= 0x430 && c <= 0x44F) return c - 32;
    if (c >= 0x450 && c <= 0x45F) return c - 80;
    return c;
}

void UCase(Arguments a, Value& out) {
    const Text text(*a[0]);
    std::string upper;
    for (std::size_t at = 0; at < (*text).size();) {
        const std::size_t start = at;
        const char32_t c = NextCodePoint(*text, at);
        if (c == kNoCodePoint)
            upper += (*text)[start];
        else
            AppendCodePoint(upper, UpperOf(c));
    }
    out.SetText(upper);
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
    const char byte = static_cast<char>(code);
    std::string text;
    if (code < 0x80)
        text = byte;
    else
        CodePage(1252).Decode(text, {&byte, 1});
    out.SetText(text);
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
