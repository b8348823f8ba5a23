#include "providers/sql/FoxProTypes.h"

#include <algorithm>
#include <charconv>

#include "ado/types/ConnectionString.h"

namespace varnel::sql {
namespace {

enum class Digits : std::uint8_t {
    None,     ///< what stands in parentheses means nothing
    Width,    ///< (w), which must be written
    Both,     ///< (w[,d])
    Decimals  ///< (d)
};

struct TypeWord {
    char letter;
    std::string_view words[2];
    Digits digits;
    int widest = 0, mostDecimals = 0;
};

constexpr TypeWord kTypes[] = {
    {'C', {"CHAR", "CHARACTER"}, Digits::Width, 254},
    {'V', {"VARCHAR", ""}, Digits::Width, 254},
    {'Q', {"VARBINARY", ""}, Digits::Width, 254},
    {'N', {"NUM", "NUMERIC"}, Digits::Both, 20, 18},
    {'F', {"FLOAT", ""}, Digits::Both, 20, 18},
    {'I', {"INT", "INTEGER"}, Digits::None},
    {'B', {"DOUBLE", ""}, Digits::Decimals, 0, 18},
    {'Y', {"CURRENCY", ""}, Digits::None},
    {'D', {"DATE", ""}, Digits::None},
    {'T', {"DATETIME", ""}, Digits::None},
    {'L', {"LOGICAL", ""}, Digits::None},
    {'M', {"MEMO", ""}, Digits::None},
    {'G', {"GENERAL", ""}, Digits::None},
    {'W', {"BLOB", ""}, Digits::None},
};

const TypeWord* FindType(std::string_view word) {
    const auto* found = std::find_if(std::begin(kTypes), std::end(kTypes), [&](const TypeWord& type) {
        const bool letter = word.size() == 1 && EqualNoCase(word, std::string_view(&type.letter, 1));
        return letter || EqualNoCase(word, type.words[0]) ||
               (!type.words[1].empty() && EqualNoCase(word, type.words[1]));
    });
    return found == std::end(kTypes) ? nullptr : found;
}

[[noreturn]] void FailWidth(TokenCursor& tokens, const std::string& word) {
    tokens.Fail("Field width or number of decimal places is invalid: " + word + ".");
}

int TakeNumber(TokenCursor& tokens, const std::string& word) {
    const Token& token = tokens.Now();
    int number = 0;
    const char* end = token.text.data() + token.text.size();
    const auto read = std::from_chars(token.text.data(), end, number);
    if (token.kind != TokenKind::Number || read.ec != std::errc() || read.ptr != end) FailWidth(tokens, word);
    tokens.Take();
    return number;
}

void CheckDigits(TokenCursor& tokens, const TypeWord& type, const std::string& word, const FoxProType& made) {
    const bool hasWidth = type.digits == Digits::Width || type.digits == Digits::Both;
    if (type.digits == Digits::Width && made.width < 0) FailWidth(tokens, word + " needs a width");
    if (hasWidth && made.width >= 0 && (made.width < 1 || made.width > type.widest)) FailWidth(tokens, word);
    if (made.decimals > type.mostDecimals) FailWidth(tokens, word);
    // The point takes one place, and one digit stands before it.
    if (made.width >= 0 && made.decimals > 0 && made.decimals > made.width - 1) FailWidth(tokens, word);
}

}  // namespace

FoxProType TakeFoxProType(TokenCursor& tokens) {
    if (tokens.Now().kind != TokenKind::Word) tokens.Fail();
    const std::string word = tokens.Now().text;
    const TypeWord* type = FindType(word);
    if (type == nullptr) tokens.Fail("Syntax error: '" + word + "' is no type of a field.");
    tokens.Take();
    int numbers[2] = {-1, -1};
    if (tokens.TakeSymbol("(")) {
        numbers[0] = TakeNumber(tokens, word);
        if (tokens.TakeSymbol(",")) numbers[1] = TakeNumber(tokens, word);
        tokens.NeedSymbol(")");
    }
    FoxProType made{type->letter, -1, -1};
    if (type->digits == Digits::Width || type->digits == Digits::Both) made.width = numbers[0];
    if (type->digits == Digits::Both) made.decimals = numbers[1];
    if (type->digits == Digits::Decimals) made.decimals = numbers[0];
    CheckDigits(tokens, *type, word, made);
    return made;
}

}  // namespace varnel::sql
