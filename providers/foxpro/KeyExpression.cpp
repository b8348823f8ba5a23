#include "providers/foxpro/KeyExpression.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <utility>

#include "platform/Error.h"
#include "providers/foxpro/KeyOperators.h"

namespace varnel::foxpro {
namespace {

constexpr int kMostNested = 50;

bool IsNameByte(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte == '_' || byte >= 0x80 || (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= 'a' && byte <= 'z');
}

std::string UpperAscii(std::string_view text) {
    std::string upper(text);
    for (char& c : upper) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
    return upper;
}

class Parser {
public:
    Parser(std::string_view text, const DbfHeader& header, const FindKeyField& findField, std::string_view whose)
        : text_(text), header_(header), findField_(findField), whose_(whose) {}

    KeyTermPtr Whole() {
        KeyTermPtr term = Or();
        if (SkipBlanks() < text_.size()) Unsupported("'" + std::string(text_.substr(at_)) + "' is not understood");
        return term;
    }

private:
    [[noreturn]] void Unsupported(const std::string& what) const {
        throw Error(ErrorKind::NotSupported, "", std::string(whose_) + "in '" + std::string(text_) + "' " + what + ".");
    }

    std::size_t SkipBlanks() {
        while (at_ < text_.size() && text_[at_] == ' ') ++at_;
        return at_;
    }

    bool Take(std::string_view token) {
        SkipBlanks();
        if (!text_.substr(at_).starts_with(token)) return false;
        at_ += token.size();
        return true;
    }

    /// A word operator, with dots around it or without.
    bool TakeWord(std::string_view word) {
        SkipBlanks();
        const std::string rest = UpperAscii(text_.substr(at_, word.size() + 2));
        const std::string dotted = "." + std::string(word) + ".";
        if (rest == dotted) return at_ += dotted.size(), true;
        const std::size_t end = at_ + word.size();
        if (!rest.starts_with(word) || (end < text_.size() && IsNameByte(text_[end]))) return false;
        return at_ = end, true;
    }

    KeyTermPtr Sound(KeyTermPtr term, const char* what) const {
        if (!term) Unsupported(std::string(what) + " has operands of the wrong type");
        return term;
    }

    KeyTermPtr Or() {
        if (++nested_ > kMostNested) Unsupported("it is nested too deeply");
        KeyTermPtr term = And();
        while (TakeWord("OR")) term = Sound(OrTerm(std::move(term), And()), "OR");
        --nested_;
        return term;
    }

    KeyTermPtr And() {
        KeyTermPtr term = Not();
        while (TakeWord("AND")) term = Sound(AndTerm(std::move(term), Not()), "AND");
        return term;
    }

    KeyTermPtr Not() {
        bool negates = false;
        while (TakeWord("NOT") || Take("!")) negates = !negates;
        KeyTermPtr term = Comparison();
        return negates ? Sound(NotTerm(std::move(term)), "NOT") : std::move(term);
    }

    KeyTermPtr Comparison() {
        KeyTermPtr left = Sum();
        for (const std::string_view sign : {"==", "=", "<>", "!=", "#", "<=", ">=", "<", ">"}) {
            if (!Take(sign)) continue;
            const std::string_view comparison = sign == "!=" || sign == "#" ? "<>" : sign;
            return Sound(ComparisonTerm(comparison, std::move(left), Sum()), "a comparison");
        }
        return left;
    }

    KeyTermPtr Sum() {
        KeyTermPtr term = Part();
        for (;;) {
            const char sign = Take("+") ? '+' : Take("-") ? '-' : '\0';
            if (sign == 0) return term;
            term = Sound(SumTerm(sign, std::move(term), Part()), "a sum");
        }
    }

    KeyTermPtr Part() {
        SkipBlanks();
        const char c = at_ < text_.size() ? text_[at_] : '\0';
        if (c == '(') return Parenthesis();
        if (c == '\'' || c == '"' || c == '[') return Text(c == '[' ? ']' : c);
        if (c == '-' && ++at_ > 0) return Sound(SumTerm('-', NumberLiteral(0), Part()), "a sign");
        if (TakeWord("T") || TakeWord("Y")) return AfterDots(true);
        if (TakeWord("F") || TakeWord("N")) return AfterDots(false);
        if ((c >= '0' && c <= '9') || c == '.') return Number();
        if (IsNameByte(c)) return NameOrCall();
        Unsupported(c == 0 ? "it ends too early" : "'" + std::string(text_.substr(at_)) + "' is not understood");
    }

    /// A letter without dots around it is a field's name.
    KeyTermPtr AfterDots(bool truth) {
        if (text_[at_ - 1] == '.') return LogicalLiteral(truth);
        --at_;
        return NameOrCall();
    }

    KeyTermPtr Parenthesis() {
        ++at_;
        KeyTermPtr term = Or();
        if (!Take(")")) Unsupported("a parenthesis is not closed");
        return term;
    }

    KeyTermPtr Text(char end) {
        const std::size_t start = ++at_, stop = text_.find(end, start);
        if (stop == std::string_view::npos) Unsupported("a text is not closed");
        at_ = stop + 1;
        return TextLiteral(std::string(text_.substr(start, stop - start)));
    }

    KeyTermPtr Number() {
        double number = 0;
        const auto [end, error] = std::from_chars(text_.data() + at_, text_.data() + text_.size(), number);
        if (error != std::errc()) Unsupported("'" + std::string(text_.substr(at_)) + "' is not understood");
        at_ = static_cast<std::size_t>(end - text_.data());
        if (text_[at_ - 1] == '.') --at_;  // it may begin an operator
        return NumberLiteral(number);
    }

    KeyTermPtr NameOrCall() {
        const std::size_t start = at_;
        while (at_ < text_.size() && IsNameByte(text_[at_])) ++at_;
        const std::string name(text_.substr(start, at_ - start));
        if (Take("(")) return CallOf(name);
        if (Take("->") || IsDot()) Unsupported("it names a field of another table ('" + name + "')");
        const DbfField* field = findField_(name);
        if (field == nullptr) Unsupported("the table has no field '" + name + "'");
        KeyTermPtr term = FieldTerm(header_, *field);
        if (!term) Unsupported("a field like '" + name + "' can be no key");
        return term;
    }

    /// A dot that belongs to no operator.
    bool IsDot() const {
        const std::string rest = UpperAscii(text_.substr(at_, 5));
        return rest.starts_with(".") && !rest.starts_with(".AND.") && !rest.starts_with(".OR.");
    }

    KeyTermPtr CallOf(const std::string& name) {
        KeyTerms arguments;
        while (!Take(")")) {
            if (!arguments.empty() && !Take(",")) Unsupported("a call of '" + name + "' is not closed");
            arguments.push_back(Or());
        }
        KeyTermPtr term = FunctionTerm(UpperAscii(name), std::move(arguments), header_.codePage);
        if (!term) Unsupported("the function '" + name + "', as it is used, is not known here");
        return term;
    }

    std::string_view text_;
    const DbfHeader& header_;
    const FindKeyField& findField_;
    std::string_view whose_;
    std::size_t at_ = 0;
    int nested_ = 0;
};

/// What is not a plain index over bytes, in words; "" for one that is.
std::string WhyOdd(const CdxTag& tag) {
    if (tag.signature > 1) return "it is of a sort that only Visual FoxPro can keep";
    if (!tag.collation.empty() && tag.collation != "MACHINE") return "its collating sequence is " + tag.collation;
    constexpr unsigned kKnown = kUniqueTag | kNullableTag | kCandidateTag | kFilteredTag | kCompactTag | kCompoundTag;
    if ((tag.options & ~kKnown) != 0 || !tag.Has(kCompactTag)) return "it has unknown options";
    return "";
}

/// Bytes of a key of this sort without the one for Null; 0: any number.
std::size_t FixedKeyBytes(KeySort sort) {
    switch (sort) {
        case KeySort::Text:
            return 0;
        case KeySort::Integer:
            return 4;
        case KeySort::Logical:
            return 1;
        default:
            return 8;
    }
}

void AppendBig(std::vector<std::uint8_t>& key, std::uint64_t number, unsigned bytes) {
    for (unsigned k = bytes; k-- > 0;) key.push_back(static_cast<std::uint8_t>(number >> (8 * k)));
}

/// Doubles in an order of bytes: the sign bit turned over, of negative ones all bits.
std::uint64_t OrderedBits(double number) {
    const auto bits = std::bit_cast<std::uint64_t>(number);
    constexpr std::uint64_t kSign = std::uint64_t{1} << 63;
    return (bits & kSign) != 0 ? ~bits : bits | kSign;
}

}  // namespace

KeyTermPtr ParseKeyExpression(std::string_view text, const DbfHeader& header, const FindKeyField& findField,
                              std::string_view whose) {
    return Parser(text, header, findField, whose).Whole();
}

void AppendKeyBytes(const KeyValue& value, KeySort sort, bool nullable, KeyShape shape,
                    std::vector<std::uint8_t>& key) {
    const std::size_t end = key.size() + shape.length;
    if (nullable) key.push_back(value.isNull ? 0 : 0x80);
    if (nullable && value.isNull) return key.resize(end, 0);
    switch (sort) {
        case KeySort::Text:
            key.insert(key.end(), value.text.begin(), value.text.end());
            key.resize(std::min(end, key.size()));
            return key.resize(end, ' ');
        case KeySort::Integer:
            return AppendBig(key, static_cast<std::uint32_t>(value.exact) ^ 0x8000'0000U, 4);
        case KeySort::Currency:
            return AppendBig(key, static_cast<std::uint64_t>(value.exact) ^ std::uint64_t{1} << 63, 8);
        case KeySort::Logical:
            return key.push_back(value.truth ? 'T' : 'F');
        default:
            return AppendBig(key, OrderedBits(value.number), 8);
    }
}

TagKeys::TagKeys(const CdxTag& tag, const DbfHeader& header, const FindKeyField& findField, const std::string& intro)
    : shape_{tag.keyLength, 0}, options_(tag.options) {
    const std::string whose = intro + "index tag " + tag.name + ": ";
    const auto refuse = [&](const std::string& reason) {
        throw Error(ErrorKind::NotSupported, tag.name, whose + reason + ".");
    };
    if (const std::string odd = WhyOdd(tag); !odd.empty()) refuse(odd);
    key_ = ParseKeyExpression(tag.keyText, header, findField, whose);
    if (key_->IsText()) shape_.pad = ' ';
    const std::size_t fixed = FixedKeyBytes(key_->Sort()), prefix = tag.Has(kNullableTag) ? 1 : 0;
    if (fixed != 0 && fixed + prefix != tag.keyLength) refuse("its keys have an unexpected length");
    if (!tag.Has(kFilteredTag)) return;
    filter_ = ParseKeyExpression(tag.filterText, header, findField, whose);
    if (filter_->Sort() != KeySort::Logical) refuse("its FOR expression is no condition");
}

bool TagKeys::KeyOf(const KeyRecord& record, std::vector<std::uint8_t>& key) {
    key.clear();
    if (filter_) {
        filter_->Evaluate(record, value_);
        if (value_.isNull || !value_.truth) return false;
    }
    key_->Evaluate(record, value_);
    AppendKeyBytes(value_, key_->Sort(), (options_ & kNullableTag) != 0, shape_, key);
    return true;
}

}  // namespace varnel::foxpro
