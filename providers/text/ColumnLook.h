// Finds out the type of one column from its values. All values decide: the column is of the first type that every one
// of them fits, in this order.
//   Long      whole number of 32 bits
//   Double    number of at most 15 significant digits
//   Currency  amount; one at least with the currency symbol
//   Date      moment; all in the same order of day and month
//   Text      at most 255 characters
//   Memo      longer
// A zero before further digits makes a number a text (article numbers, postcodes), and so does a column whose values
// are all qualified. Blank values say nothing.
#pragma once

#include <cstdint>
#include <string_view>

#include "providers/text/CellRule.h"
#include "providers/text/TextFormat.h"

namespace varnel::text {

class ColumnLook {
public:
    /// stated: the type that a Col line gives; adEmpty when it is to be found out. Of a stated date type the order of
    /// day and month is found out. picture: the only form of dates, or null.
    ColumnLook(DataTypeEnum stated, std::shared_ptr<const DatePicture> picture);

    /// False once no further value can change the outcome.
    bool IsCurious() const { return candidates_ != 0 || looksAtLength_; }
    /// text: a value of the column. isQualified: it stood in qualifiers.
    void See(const TextFormat& format, std::string_view text, bool isQualified) {
        if (text.size() > kTextCharacters && looksAtLength_) SeeLength(text);
        if (candidates_ != 0 && !text.empty() && !(isNumeric_ && IsPlainWhole(text, isQualified))) {
            SeeContent(format, text, isQualified);
        }
    }
    CellRule Outcome() const;

private:
    enum Candidate : std::uint8_t { Long = 1, Double = 2, Currency = 4, MonthFirst = 8, DayFirst = 16 };
    static constexpr std::uint8_t kNumbers = Long | Double | Currency;
    static constexpr std::uint8_t kDates = MonthFirst | DayFirst;
    static constexpr std::size_t kTextCharacters = 255;

    /// A short whole number fits every numeric type: it changes nothing once the column is known to hold numbers.
    static bool IsPlainWhole(std::string_view text, bool isQualified) {
        constexpr std::size_t kLongest = 9;
        if (text.size() > kLongest || text[0] == '0' || isQualified) return false;
        for (const char c : text) {
            if (static_cast<unsigned char>(c - '0') > 9) return false;
        }
        return true;
    }
    void SeeLength(std::string_view text);
    void SeeContent(const TextFormat& format, std::string_view text, bool isQualified);
    void SeeNumber(const TextFormat& format, std::string_view text);
    void SeeDate(std::string_view text);
    void SeeDayOrder(std::string_view text);
    void Drop(unsigned which) { candidates_ = static_cast<std::uint8_t>(candidates_ & ~which); }

    DataTypeEnum stated_;
    std::shared_ptr<const DatePicture> picture_;
    std::uint8_t candidates_ = 0;
    bool looksAtLength_ = false;
    bool isNumeric_ = false;  // holds an unqualified value, and only numbers are left
    bool isLong_ = false;     // holds a text of more than kTextCharacters
    bool hasValue_ = false, hasUnqualified_ = false;
    bool hasSymbol_ = false;
    bool firstIsDay_ = false, secondIsDay_ = false;  // that part of a date was above 12
};

}  // namespace varnel::text
