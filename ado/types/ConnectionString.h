// Connection strings as Windows programs stored them: "keyword=value" pairs between semicolons.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace varnel {

/// A connection string split into its pairs. Keywords compare without case and keep inner blanks; of a repeated
/// keyword the last counts, of a repeated Provider the first. At the start of a value " or ' opens a quoted form (the
/// quote doubled inside), { a braced form (} doubled inside); anything else runs to the next semicolon, blanks trimmed.
/// An "=" inside a keyword is written twice. Empty pairs are skipped.
class ConnectionString {
public:
    /// Throws Error{Syntax} for a pair without "=", an unclosed quote or brace; the text never repeats a value.
    explicit ConnectionString(std::string text);

    const std::string& Text() const { return text_; }
    /// The pairs in the order written, keywords as written.
    const std::vector<std::pair<std::string, std::string>>& Pairs() const { return pairs_; }

    /// The value of the first of these keywords that is present (synonyms, most usual first); nothing when none is.
    std::optional<std::string> Find(std::initializer_list<std::string_view> keywords) const;
    /// The same, with a value for when none is present.
    std::string Get(std::initializer_list<std::string_view> keywords, std::string_view otherwise = "") const;

    /// The Provider keyword's value without a version suffix of one digit (".1"); "" when there is none.
    std::string Provider() const;
    /// The Driver keyword's value without braces; "" when there is none.
    std::string Driver() const;

    /// The string with every password's value written as ***, fit for a log or a screen.
    std::string Shown() const;
    /// text with every password of this string (four characters or longer) written as ***.
    std::string Redact(std::string text) const;

private:
    std::string text_;
    std::vector<std::pair<std::string, std::string>> pairs_;
};

/// Equal without regard to the case of ASCII letters: keywords, kind words of drivers, type words.
bool EqualNoCase(std::string_view a, std::string_view b);
/// Lower case of ASCII letters only.
std::string AsciiLower(std::string_view text);
/// Upper case of ASCII letters only.
std::string AsciiUpper(std::string_view text);
/// Without the blanks (code 32 only) at both ends.
std::string_view TrimBlanks(std::string_view text);

}  // namespace varnel
