#include "ado/types/ConnectionString.h"

#include <algorithm>
#include <utility>

#include "platform/CodePage.h"
#include "platform/Error.h"

namespace varnel {
namespace {

/// One pair as it stands in the text.
struct Pair {
    std::string keyword, value;
    std::size_t valueStart = 0, valueEnd = 0;  // of the value with its quotes or braces
    char quote = 0;                            // ", ' or {; 0 for a plain value
    bool loose = false;                        // no equals sign: there is only a value
};

/// All pairs of a text in order. fault: what is wrong behind the last of them; loosePart: complaint about the first
/// part without an equals sign, which only nested texts may have ("text;HDR=Yes").
struct PairScan {
    std::vector<Pair> pairs;
    std::string fault, loosePart;
};

char LowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}
char UpperAscii(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}

class Scanner {
public:
    explicit Scanner(std::string_view text) : text_(text) {}

    PairScan Run() {
        while (scan_.fault.empty() && SkipToPair()) {
            Pair pair;
            if (TakeKeyword(pair) && (pair.loose || TakeValue(pair))) scan_.pairs.push_back(std::move(pair));
        }
        return std::move(scan_);
    }

private:
    bool SkipToPair() {
        while (at_ < text_.size() && (text_[at_] == ';' || text_[at_] == ' ')) ++at_;
        return at_ < text_.size();
    }

    std::string Complaint(const char* what) const {
        return "Part " + std::to_string(scan_.pairs.size() + 1) + " of the connection string " + what;
    }

    bool Fail(const char* what) {
        scan_.fault = Complaint(what);
        return false;
    }

    bool TakeKeyword(Pair& pair) {
        pair.valueStart = at_;
        for (; at_ < text_.size() && text_[at_] != ';'; ++at_) {
            if (text_[at_] == '=') {
                if (at_ + 1 >= text_.size() || text_[at_ + 1] != '=') break;
                ++at_;
            }
            pair.keyword += text_[at_];
        }
        pair.keyword = TrimBlanks(pair.keyword);
        if (at_ == text_.size() || text_[at_] == ';') {
            if (scan_.loosePart.empty()) scan_.loosePart = Complaint("has no equals sign");
            pair.loose = true;
            pair.value = std::exchange(pair.keyword, "");
            pair.valueEnd = at_;
            return true;
        }
        ++at_;
        return pair.keyword.empty() ? Fail("has no keyword") : true;
    }

    bool TakeValue(Pair& pair) {
        while (at_ < text_.size() && text_[at_] == ' ') ++at_;
        pair.valueStart = at_;
        const char first = at_ < text_.size() ? text_[at_] : ';';
        if (first == '"' || first == '\'') return TakeEnclosed(pair, first, first);
        if (first == '{') return TakeEnclosed(pair, '{', '}');
        const std::size_t end = std::min(text_.find(';', at_), text_.size());
        pair.value = TrimBlanks(text_.substr(at_, end - at_));
        pair.valueEnd = pair.valueStart + pair.value.size();
        at_ = end;
        return true;
    }

    bool TakeEnclosed(Pair& pair, char open, char close) {
        pair.quote = open;
        for (++at_;; ++at_) {
            if (at_ >= text_.size()) return Fail(open == '{' ? "has no closing brace" : "has no closing quote");
            if (text_[at_] == close) {
                if (at_ + 1 >= text_.size() || text_[at_ + 1] != close) break;
                ++at_;
            }
            pair.value += text_[at_];
        }
        pair.valueEnd = ++at_;
        while (at_ < text_.size() && text_[at_] == ' ') ++at_;
        if (at_ < text_.size() && text_[at_] != ';') return Fail("goes on behind its closing quote or brace");
        return true;
    }

    std::string_view text_;
    std::size_t at_ = 0;
    PairScan scan_;
};

bool IsPasswordKeyword(std::string_view keyword) {
    std::string plain = AsciiLower(keyword);
    std::erase(plain, ' ');
    return plain.find("password") != std::string::npos || plain.ends_with("pwd") || plain.ends_with("passwd") ||
           plain.ends_with("passphrase") || plain == "pass";
}

/// The value between the pair's own quotes or braces.
std::string Enclosed(const std::string& value, char quote) {
    if (quote == 0) return value;
    const char close = quote == '{' ? '}' : quote;
    std::string text(1, quote);
    for (const char c : value) {
        text += c;
        if (c == close) text += c;
    }
    return text += close;
}

std::string Masked(std::string_view text);

/// The pair's value as it may be shown. afterPassword: a password stands before the pair, so that a part without an
/// equals sign may be the rest of it.
std::string ShownValue(const Pair& pair, std::string_view text, bool afterPassword) {
    if (IsPasswordKeyword(pair.keyword) || (pair.loose && afterPassword)) return "***";
    const bool holdsPairs = !pair.loose && pair.value.find('=') != std::string::npos;
    if (holdsPairs) return Enclosed(Masked(pair.value), pair.quote);
    return std::string(text.substr(pair.valueStart, pair.valueEnd - pair.valueStart));
}

/// text with its passwords masked; a value that is itself a list of pairs is treated the same way.
std::string Masked(std::string_view text) {
    const PairScan scan = Scanner(text).Run();
    std::string shown;
    std::size_t copied = 0;
    bool afterPassword = false;
    for (const Pair& pair : scan.pairs) {
        shown.append(text.substr(copied, pair.valueStart - copied));
        shown += ShownValue(pair, text, afterPassword);
        afterPassword = afterPassword || IsPasswordKeyword(pair.keyword);
        copied = pair.valueEnd;
    }
    // Behind a fault nobody knows what is a password.
    return scan.fault.empty() ? shown.append(text.substr(copied)) : shown + "***";
}

void CollectPasswords(std::string_view text, std::vector<std::string>& passwords) {
    for (const Pair& pair : Scanner(text).Run().pairs) {
        if (IsPasswordKeyword(pair.keyword)) {
            passwords.push_back(pair.value);
            passwords.push_back(Enclosed(pair.value, pair.quote == 0 ? '{' : pair.quote).substr(1));
            passwords.back().pop_back();  // the value as it is written inside quotes or braces
        } else if (pair.value.find('=') != std::string::npos) {
            CollectPasswords(pair.value, passwords);
        }
    }
}

void ReplaceAll(std::string& text, const std::string& part, std::string_view by) {
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + by.size())) {
        text.replace(at, part.size(), by);
    }
}

}  // namespace

bool EqualNoCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return LowerAscii(x) == LowerAscii(y); });
}

std::string AsciiLower(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), LowerAscii);
    return lower;
}

std::string AsciiUpper(std::string_view text) {
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(), UpperAscii);
    return upper;
}

std::string_view TrimBlanks(std::string_view text) {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

ConnectionString::ConnectionString(std::string text) : text_(std::move(text)) {
    PairScan scan = Scanner(text_).Run();
    const std::string& fault = scan.loosePart.empty() ? scan.fault : scan.loosePart;
    if (!fault.empty()) throw Error(ErrorKind::Syntax, "", fault);
    for (Pair& pair : scan.pairs) {
        const auto earlier = std::find_if(pairs_.begin(), pairs_.end(),
                                          [&](const auto& known) { return EqualNoCase(known.first, pair.keyword); });
        if (earlier == pairs_.end()) {
            pairs_.emplace_back(std::move(pair.keyword), std::move(pair.value));
        } else if (!EqualNoCase(pair.keyword, "Provider")) {
            earlier->second = std::move(pair.value);
        }
    }
}

std::optional<std::string> ConnectionString::Find(std::initializer_list<std::string_view> keywords) const {
    for (const std::string_view keyword : keywords) {
        for (const auto& [name, value] : pairs_) {
            if (EqualNoCase(name, keyword)) return value;
        }
    }
    return std::nullopt;
}

std::string ConnectionString::Get(std::initializer_list<std::string_view> keywords, std::string_view otherwise) const {
    return Find(keywords).value_or(std::string(otherwise));
}

std::string ConnectionString::Provider() const {
    std::string name = Get({"Provider"});
    const auto isDigit = [&](std::size_t fromEnd) {
        const char c = name[name.size() - fromEnd];
        return c >= '0' && c <= '9';
    };
    // "SQLOLEDB.1" is a version of SQLOLEDB, while "Microsoft.Jet.OLEDB.4.0" ends with a number of its own.
    if (name.size() > 3 && name[name.size() - 2] == '.' && isDigit(1) && !isDigit(3)) name.resize(name.size() - 2);
    return name;
}

std::string ConnectionString::Driver() const {
    std::string name = Get({"Driver"});
    if (name.size() >= 2 && name.front() == '{' && name.back() == '}') name = name.substr(1, name.size() - 2);
    return name;
}

std::string ConnectionString::Shown() const {
    return Masked(text_);
}

std::string ConnectionString::Redact(std::string text) const {
    constexpr std::size_t kShortestHidden = 4;  // characters; hiding shorter ones would garble the text
    std::vector<std::string> passwords;
    CollectPasswords(text_, passwords);
    std::sort(passwords.begin(), passwords.end(), [](const auto& a, const auto& b) { return a.size() > b.size(); });
    for (const std::string& password : passwords) {
        if (CharacterCount(password) >= kShortestHidden) ReplaceAll(text, password, "***");
    }
    return text;
}

}  // namespace varnel
