// What key and FOR expressions of an index are made of: terms that are evaluated on the bytes of a record.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "providers/foxpro/DbfHeader.h"

namespace varnel::foxpro {

enum class KeySort : std::uint8_t {
    Text,
    Number,    ///< N, F, B fields and all arithmetic
    Integer,   ///< an I field itself; a number everywhere else
    Currency,  ///< a Y field itself
    Date,      ///< number is the Julian day, 0 when empty
    Moment,    ///< the same with the time of day as a fraction
    Logical
};

/// A value on its way to becoming a key. Its text buffer is used again.
struct KeyValue {
    bool isNull = false;
    bool truth = false;
    double number = 0;
    std::int64_t exact = 0;  ///< of an Integer or Currency (times 10,000), beside number
    std::string text;        ///< in the table's code page
};

struct KeyRecord {
    std::span<const std::uint8_t> bytes;  ///< the whole record, its delete flag first
    RecordNumber number = 0;
};

class KeyTerm {
public:
    explicit KeyTerm(KeySort sort) : sort_(sort) {}
    virtual ~KeyTerm() = default;
    KeySort Sort() const { return sort_; }
    bool IsText() const { return sort_ == KeySort::Text; }
    bool IsNumeric() const {
        return sort_ == KeySort::Number || sort_ == KeySort::Integer || sort_ == KeySort::Currency;
    }
    bool IsDay() const { return sort_ == KeySort::Date || sort_ == KeySort::Moment; }
    /// Fills every member of value that its sort has.
    virtual void Evaluate(const KeyRecord& record, KeyValue& value) const = 0;

private:
    KeySort sort_;
};

using KeyTermPtr = std::unique_ptr<KeyTerm>;
using KeyTerms = std::vector<KeyTermPtr>;

/// A field's value. header: outlives the term. Null when a field of this type can be no part of a key.
KeyTermPtr FieldTerm(const DbfHeader& header, const DbfField& field);

/// A call of a function that key expressions may have. name: upper case; four letters or more of a longer name do.
/// Null when there is no such function, or not with these arguments; the arguments are then gone.
/// codePage: Windows number, for UPPER and LOWER.
KeyTermPtr FunctionTerm(const std::string& name, KeyTerms arguments, int codePage);

}  // namespace varnel::foxpro
