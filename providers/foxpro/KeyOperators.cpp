#include "providers/foxpro/KeyOperators.h"

#include <algorithm>
#include <utility>

namespace varnel::foxpro {
namespace {

constexpr double kSecondsPerDay = 86'400;

class Literal : public KeyTerm {
public:
    Literal(KeySort sort, KeyValue value) : KeyTerm(sort), value_(std::move(value)) {}
    void Evaluate(const KeyRecord&, KeyValue& value) const override { value = value_; }

private:
    KeyValue value_;
};

/// Null when an operand is Null.
class Binary : public KeyTerm {
public:
    Binary(KeySort sort, KeyTermPtr left, KeyTermPtr right)
        : KeyTerm(sort), left_(std::move(left)), right_(std::move(right)) {}

    void Evaluate(const KeyRecord& record, KeyValue& value) const override {
        left_->Evaluate(record, value);
        right_->Evaluate(record, other_);
        value.isNull = value.isNull || other_.isNull;
        if (!value.isNull) Combine(value, other_);
    }

protected:
    const KeyTerm& Left() const { return *left_; }
    /// value: the left operand on entry, the result on return.
    virtual void Combine(KeyValue& value, const KeyValue& right) const = 0;

private:
    KeyTermPtr left_, right_;
    mutable KeyValue other_;  // kept for its buffer
};

class Concatenation : public Binary {
public:
    Concatenation(KeyTermPtr left, KeyTermPtr right) : Binary(KeySort::Text, std::move(left), std::move(right)) {}

protected:
    void Combine(KeyValue& value, const KeyValue& right) const override { value.text += right.text; }
};

class Addition : public Binary {
public:
    Addition(KeySort sort, double rightTimes, KeyTermPtr left, KeyTermPtr right)
        : Binary(sort, std::move(left), std::move(right)), rightTimes_(rightTimes) {}

protected:
    void Combine(KeyValue& value, const KeyValue& right) const override { value.number += rightTimes_ * right.number; }

private:
    double rightTimes_;
};

int CompareTexts(std::string_view left, std::string_view right, bool onlyAsFarAsRight) {
    if (onlyAsFarAsRight) left = left.substr(0, right.size());
    for (std::size_t k = 0; k < std::max(left.size(), right.size()); ++k) {
        const int a = k < left.size() ? static_cast<unsigned char>(left[k]) : ' ';
        const int b = k < right.size() ? static_cast<unsigned char>(right[k]) : ' ';
        if (a != b) return a - b;
    }
    return 0;
}

class Comparison : public Binary {
public:
    Comparison(std::string_view comparison, KeyTermPtr left, KeyTermPtr right)
        : Binary(KeySort::Logical, std::move(left), std::move(right)), comparison_(comparison) {}

protected:
    void Combine(KeyValue& value, const KeyValue& right) const override {
        const int order = Order(value, right);
        if (comparison_ == "=" || comparison_ == "==") {
            value.truth = order == 0;
        } else if (comparison_ == "<>") {
            value.truth = order != 0;
        } else {
            value.truth = (comparison_[0] == '<' ? order < 0 : order > 0) || (comparison_.size() > 1 && order == 0);
        }
    }

private:
    int Order(const KeyValue& a, const KeyValue& b) const {
        if (Left().IsText()) return CompareTexts(a.text, b.text, comparison_ == "=" || comparison_ == "<>");
        if (Left().Sort() == KeySort::Logical) return static_cast<int>(a.truth) - static_cast<int>(b.truth);
        return a.number < b.number ? -1 : a.number > b.number ? 1 : 0;
    }

    std::string comparison_;
};

/// A false (of AND) or true (of OR) operand decides, even beside Null.
class Junction : public KeyTerm {
public:
    Junction(bool decisive, KeyTermPtr left, KeyTermPtr right)
        : KeyTerm(KeySort::Logical), decisive_(decisive), left_(std::move(left)), right_(std::move(right)) {}

    void Evaluate(const KeyRecord& record, KeyValue& value) const override {
        left_->Evaluate(record, value);
        if (!value.isNull && value.truth == decisive_) return;
        const bool leftIsNull = value.isNull;
        right_->Evaluate(record, value);
        if (value.isNull || value.truth == decisive_) return;
        value.isNull = leftIsNull;
    }

private:
    bool decisive_;
    KeyTermPtr left_, right_;
};

class Negation : public KeyTerm {
public:
    explicit Negation(KeyTermPtr operand) : KeyTerm(KeySort::Logical), operand_(std::move(operand)) {}
    void Evaluate(const KeyRecord& record, KeyValue& value) const override {
        operand_->Evaluate(record, value);
        value.truth = !value.truth;
    }

private:
    KeyTermPtr operand_;
};

bool IsLogical(const KeyTerm& term) {
    return term.Sort() == KeySort::Logical;
}

}  // namespace

KeyTermPtr TextLiteral(std::string text) {
    KeyValue value;
    value.text = std::move(text);
    return std::make_unique<Literal>(KeySort::Text, std::move(value));
}

KeyTermPtr NumberLiteral(double number) {
    KeyValue value;
    value.number = number;
    return std::make_unique<Literal>(KeySort::Number, std::move(value));
}

KeyTermPtr LogicalLiteral(bool truth) {
    KeyValue value;
    value.truth = truth;
    return std::make_unique<Literal>(KeySort::Logical, std::move(value));
}

KeyTermPtr SumTerm(char sign, KeyTermPtr left, KeyTermPtr right) {
    const double times = sign == '+' ? 1 : -1;
    if (left->IsText() && right->IsText() && sign == '+') {
        return std::make_unique<Concatenation>(std::move(left), std::move(right));
    }
    if (!right->IsNumeric() || !(left->IsNumeric() || left->IsDay())) return nullptr;
    const KeySort sort = left->IsNumeric() ? KeySort::Number : left->Sort();
    const double unit = sort == KeySort::Moment ? kSecondsPerDay : 1;
    return std::make_unique<Addition>(sort, times / unit, std::move(left), std::move(right));
}

KeyTermPtr ComparisonTerm(std::string_view comparison, KeyTermPtr left, KeyTermPtr right) {
    const bool fits = (left->IsText() && right->IsText()) || (left->IsNumeric() && right->IsNumeric()) ||
                      (left->IsDay() && right->IsDay()) || (IsLogical(*left) && IsLogical(*right));
    return fits ? std::make_unique<Comparison>(comparison, std::move(left), std::move(right)) : nullptr;
}

KeyTermPtr AndTerm(KeyTermPtr left, KeyTermPtr right) {
    if (!IsLogical(*left) || !IsLogical(*right)) return nullptr;
    return std::make_unique<Junction>(false, std::move(left), std::move(right));
}

KeyTermPtr OrTerm(KeyTermPtr left, KeyTermPtr right) {
    if (!IsLogical(*left) || !IsLogical(*right)) return nullptr;
    return std::make_unique<Junction>(true, std::move(left), std::move(right));
}

KeyTermPtr NotTerm(KeyTermPtr operand) {
    return IsLogical(*operand) ? std::make_unique<Negation>(std::move(operand)) : nullptr;
}

}  // namespace varnel::foxpro
