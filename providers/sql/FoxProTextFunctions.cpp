#include <algorithm>

#include "platform/CodePage.h"
#include "platform/Utf8.h"
#include "providers/sql/FoxProRules.h"
#include "providers/sql/SqlFunctionTable.h"
#include "providers/sql/TextParts.h"

namespace varnel::sql {
namespace {

std::string_view TextArgument(const Value& value) {
    if (value.Kind() != ValueKind::Text) ThrowFoxProArgument();
    return value.AsText();
}

std::int64_t NumberArgument(const Value& value) {
    if (!IsNumber(value) || value.Kind() == ValueKind::Boolean) ThrowFoxProArgument();
    return static_cast<std::int64_t>(std::clamp(NumberOf(value), -1e15, 1e15));
}

std::int64_t Characters(std::string_view text) {
    return static_cast<std::int64_t>(CharacterCount(text));
}

void CheckLength(std::size_t bytes) {
    if (bytes > static_cast<std::size_t>(kLongestText)) ThrowFoxProArgument();
}

void Upper(Arguments a, Value& out) {
    out.SetText(UpperCase(TextArgument(*a[0])));
}
void Lower(Arguments a, Value& out) {
    out.SetText(FoldCase(TextArgument(*a[0])));
}

/// The first letter of every word in upper case, the others in lower case.
void Proper(Arguments a, Value& out) {
    const std::string lower = FoldCase(TextArgument(*a[0]));
    std::string proper;
    bool first = true;
    for (std::size_t at = 0; at < lower.size();) {
        const std::size_t next = at + OffsetOf(std::string_view(lower).substr(at), 1);
        const std::string_view letter = std::string_view(lower).substr(at, next - at);
        proper += first ? UpperCase(letter) : std::string(letter);
        first = letter == " ";
        at = next;
    }
    out.SetText(proper);
}

void AllTrim(Arguments a, Value& out) {
    out.SetText(WithoutRight(WithoutLeft(TextArgument(*a[0]))));
}
void RTrim(Arguments a, Value& out) {
    out.SetText(WithoutRight(TextArgument(*a[0])));
}
void LTrim(Arguments a, Value& out) {
    out.SetText(WithoutLeft(TextArgument(*a[0])));
}

void SubStr(Arguments a, Value& out) {
    const std::string_view text = TextArgument(*a[0]);
    const std::int64_t start = NumberArgument(*a[1]);
    if (start < 1) ThrowFoxProArgument();
    std::string_view rest = text.substr(OffsetOf(text, start - 1));
    if (a.size() > 2) rest = rest.substr(0, OffsetOf(rest, std::max<std::int64_t>(0, NumberArgument(*a[2]))));
    out.SetText(rest);
}

void Left(Arguments a, Value& out) {
    const std::string_view text = TextArgument(*a[0]);
    out.SetText(text.substr(0, OffsetOf(text, std::max<std::int64_t>(0, NumberArgument(*a[1])))));
}
void Right(Arguments a, Value& out) {
    const std::string_view text = TextArgument(*a[0]);
    const std::int64_t count = std::max<std::int64_t>(0, NumberArgument(*a[1]));
    out.SetText(text.substr(OffsetOf(text, std::max<std::int64_t>(0, Characters(text) - count))));
}

void Len(Arguments a, Value& out) {
    out.SetInteger(Characters(TextArgument(*a[0])));
}

/// The position, from 1, at which part begins for the nth time; 0 when it does not.
std::int64_t PositionOf(std::string_view part, std::string_view text, std::int64_t nth) {
    if (part.empty() || nth < 1) return 0;
    std::size_t found = text.find(part);
    while (--nth > 0 && found != std::string_view::npos) found = text.find(part, found + part.size());
    return found == std::string_view::npos ? 0 : Characters(text.substr(0, found)) + 1;
}

void At(Arguments a, Value& out) {
    const std::int64_t nth = a.size() > 2 ? NumberArgument(*a[2]) : 1;
    out.SetInteger(PositionOf(TextArgument(*a[0]), TextArgument(*a[1]), nth));
}
void AtC(Arguments a, Value& out) {
    const std::int64_t nth = a.size() > 2 ? NumberArgument(*a[2]) : 1;
    out.SetInteger(PositionOf(FoldCase(TextArgument(*a[0])), FoldCase(TextArgument(*a[1])), nth));
}
void RAt(Arguments a, Value& out) {
    const std::string_view part = TextArgument(*a[0]), text = TextArgument(*a[1]);
    std::int64_t nth = a.size() > 2 ? NumberArgument(*a[2]) : 1;
    std::size_t found = part.empty() || nth < 1 ? std::string_view::npos : text.rfind(part);
    while (found != std::string_view::npos && --nth > 0)
        found = found == 0 ? std::string_view::npos : text.rfind(part, found - 1);
    out.SetInteger(found == std::string_view::npos ? 0 : Characters(text.substr(0, found)) + 1);
}
void Occurs(Arguments a, Value& out) {
    const std::string_view part = TextArgument(*a[0]), text = TextArgument(*a[1]);
    std::int64_t count = 0;
    for (std::size_t at = part.empty() ? std::string_view::npos : text.find(part); at != std::string_view::npos;
         at = text.find(part, at + part.size()))
        ++count;
    out.SetInteger(count);
}

/// STRTRAN(text, part [, with [, first [, count]]])
void StrTran(Arguments a, Value& out) {
    const std::string_view text = TextArgument(*a[0]), part = TextArgument(*a[1]);
    const std::string_view with = a.size() > 2 ? TextArgument(*a[2]) : "";
    const std::int64_t first = a.size() > 3 ? NumberArgument(*a[3]) : 1;
    const std::int64_t most = a.size() > 4 ? NumberArgument(*a[4]) : INT64_MAX;
    std::string changed;
    std::int64_t seen = 0, done = 0;
    std::size_t at = 0;
    while (!part.empty()) {
        const std::size_t found = text.find(part, at);
        if (found == std::string_view::npos) break;
        const bool change = ++seen >= first && done < most;
        changed += text.substr(at, found - at);
        changed += change ? with : part;
        done += change ? 1 : 0;
        at = found + part.size();
        CheckLength(changed.size());
    }
    changed += text.substr(at);
    out.SetText(changed);
}

/// STUFF(text, start, count, with)
void Stuff(Arguments a, Value& out) {
    const std::string_view text = TextArgument(*a[0]);
    const std::int64_t start = std::max<std::int64_t>(1, NumberArgument(*a[1]));
    const std::size_t from = OffsetOf(text, start - 1);
    const std::size_t to = from + OffsetOf(text.substr(from), std::max<std::int64_t>(0, NumberArgument(*a[2])));
    out.SetText(std::string(text.substr(0, from)) + std::string(TextArgument(*a[3])) + std::string(text.substr(to)));
}

std::vector<std::string_view> Letters(std::string_view text) {
    std::vector<std::string_view> letters;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t size = OffsetOf(text.substr(at), 1);
        letters.push_back(text.substr(at, size));
        at += size;
    }
    return letters;
}

/// CHRTRAN(text, these, byThose): letters without a partner go.
void ChrTran(Arguments a, Value& out) {
    const std::vector<std::string_view> these = Letters(TextArgument(*a[1])), those = Letters(TextArgument(*a[2]));
    std::string changed;
    for (const std::string_view letter : Letters(TextArgument(*a[0]))) {
        const auto found = static_cast<std::size_t>(std::find(these.begin(), these.end(), letter) - these.begin());
        if (found == these.size())
            changed += letter;
        else if (found < those.size())
            changed += those[found];
    }
    out.SetText(changed);
}

void Replicate(Arguments a, Value& out) {
    const std::string_view text = TextArgument(*a[0]);
    const std::int64_t count = std::max<std::int64_t>(0, NumberArgument(*a[1]));
    if (!text.empty() && count > kLongestText / static_cast<std::int64_t>(text.size())) ThrowFoxProArgument();
    std::string repeated;
    for (std::int64_t i = 0; i < count; ++i) repeated += text;
    out.SetText(repeated);
}
void Space(Arguments a, Value& out) {
    const std::int64_t count = NumberArgument(*a[0]);
    if (count < 0 || count > kLongestText) ThrowFoxProArgument();
    out.SetText(std::string(static_cast<std::size_t>(count), ' '));
}

/// A text of exactly this many characters; left: how many of the missing ones go before it.
void Pad(Arguments a, Value& out, std::int64_t (*left)(std::int64_t missing)) {
    const std::string_view text = TextArgument(*a[0]);
    const std::int64_t width = NumberArgument(*a[1]);
    const std::string_view fill = a.size() > 2 ? TextArgument(*a[2]) : " ";
    if (width < 0 || width > kLongestText || fill.empty()) ThrowFoxProArgument();
    const std::int64_t missing = width - Characters(text);
    if (missing <= 0) return out.SetText(text.substr(0, OffsetOf(text, width)));
    const std::string_view letter = fill.substr(0, OffsetOf(fill, 1));
    std::string padded;
    for (std::int64_t i = 0; i < left(missing); ++i) padded += letter;
    padded += text;
    for (std::int64_t i = left(missing); i < missing; ++i) padded += letter;
    out.SetText(padded);
}
void PadL(Arguments a, Value& out) {
    Pad(a, out, [](std::int64_t missing) { return missing; });
}
void PadR(Arguments a, Value& out) {
    Pad(a, out, [](std::int64_t) { return std::int64_t{0}; });
}
void PadC(Arguments a, Value& out) {
    Pad(a, out, [](std::int64_t missing) { return missing / 2; });
}

void Chr(Arguments a, Value& out) {
    const std::int64_t code = NumberArgument(*a[0]);
    if (code < 0 || code > 255) ThrowFoxProArgument();
    out.SetText(WesternCharacter(static_cast<char>(code)));
}
void Asc(Arguments a, Value& out) {
    const std::string_view text = TextArgument(*a[0]);
    if (text.empty()) return out.SetInteger(0);
    std::string byte;
    CodePage(1252).Encode(byte, text.substr(0, OffsetOf(text, 1)));
    out.SetInteger(static_cast<unsigned char>(byte[0]));
}

/// LIKE(pattern, text): * is any run, ? is one character.
void Like(Arguments a, Value& out) {
    std::string pattern;
    for (const char c : WithoutRight(TextArgument(*a[0]))) {
        if (c == '%' || c == '_' || c == '\\') pattern += '\\';
        pattern += c == '*' ? '%' : (c == '?' ? '_' : c);
    }
    out.SetBoolean(MatchesLike(WithoutRight(TextArgument(*a[1])), pattern, {}, '\\'));
}

template <char First, char Last, char FirstToo, char LastToo>
void BeginsWith(Arguments a, Value& out) {
    const std::string_view text = TextArgument(*a[0]);
    const char c = text.empty() ? ' ' : text[0];
    out.SetBoolean((c >= First && c <= Last) || (c >= FirstToo && c <= LastToo));
}

constexpr SqlFunction kFunctions[] = {
    {"upper", 1, 1, adVarWChar, false, Upper},
    {"lower", 1, 1, adVarWChar, false, Lower},
    {"proper", 1, 1, adVarWChar, false, Proper},
    {"alltrim", 1, 1, adVarWChar, false, AllTrim},
    {"trim", 1, 1, adVarWChar, false, RTrim},
    {"rtrim", 1, 1, adVarWChar, false, RTrim},
    {"ltrim", 1, 1, adVarWChar, false, LTrim},
    {"substr", 2, 3, adVarWChar, false, SubStr},
    {"left", 2, 2, adVarWChar, false, Left},
    {"right", 2, 2, adVarWChar, false, Right},
    {"len", 1, 1, adInteger, false, Len},
    {"at", 2, 3, adInteger, false, At},
    {"atc", 2, 3, adInteger, false, AtC},
    {"rat", 2, 3, adInteger, false, RAt},
    {"occurs", 2, 2, adInteger, false, Occurs},
    {"strtran", 2, 5, adVarWChar, false, StrTran},
    {"stuff", 4, 4, adVarWChar, false, Stuff},
    {"chrtran", 3, 3, adVarWChar, false, ChrTran},
    {"replicate", 2, 2, adVarWChar, false, Replicate},
    {"space", 1, 1, adVarWChar, false, Space},
    {"padl", 2, 3, adVarWChar, false, PadL},
    {"padr", 2, 3, adVarWChar, false, PadR},
    {"padc", 2, 3, adVarWChar, false, PadC},
    {"chr", 1, 1, adVarWChar, false, Chr},
    {"asc", 1, 1, adInteger, false, Asc},
    {"like", 2, 2, adBoolean, false, Like},
    {"isalpha", 1, 1, adBoolean, false, BeginsWith<'a', 'z', 'A', 'Z'>},
    {"isdigit", 1, 1, adBoolean, false, BeginsWith<'0', '9', '0', '9'>},
    {"islower", 1, 1, adBoolean, false, BeginsWith<'a', 'z', 'a', 'z'>},
    {"isupper", 1, 1, adBoolean, false, BeginsWith<'A', 'Z', 'A', 'Z'>},
};

}  // namespace

std::span<const SqlFunction> FoxProTextFunctions() {
    return kFunctions;
}

}  // namespace varnel::sql
