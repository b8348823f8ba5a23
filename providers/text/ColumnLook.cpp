#include "providers/text/ColumnLook.h"

#include <utility>

#include "platform/CodePage.h"
#include "providers/text/CellCurrency.h"
#include "providers/text/CellDate.h"
#include "providers/text/CellNumber.h"

namespace varnel::text {
namespace {

constexpr int kCurrencyDecimals = 4;
constexpr int kSafeCurrencyDigits = 14;  // within its range whatever they are

/// Whether a number that was scanned as such is surely an amount too.
bool IsPlainAmount(const NumberShape& shape, const TextFormat& format) {
    return !shape.isPadded && !shape.hasExponent && shape.digits <= kSafeCurrencyDigits &&
           shape.exponent >= -kCurrencyDecimals && (shape.isWhole || format.decimalSymbol == format.currencyDecimal);
}

}  // namespace

ColumnLook::ColumnLook(DataTypeEnum stated, std::shared_ptr<const DatePicture> picture)
    : stated_(stated), picture_(std::move(picture)) {
    if (stated_ == adEmpty) {
        candidates_ = picture_ ? kNumbers | MonthFirst : kNumbers | kDates;
        looksAtLength_ = true;
    } else if (stated_ == adDate && !picture_) {
        candidates_ = kDates;
    }
}

void ColumnLook::SeeLength(std::string_view text) {
    isLong_ = CharacterCount(text) > kTextCharacters;
    looksAtLength_ = !isLong_;
}

void ColumnLook::SeeContent(const TextFormat& format, std::string_view text, bool isQualified) {
    const std::string_view trimmed = TrimmedCell(text);
    if (trimmed.empty()) return;
    if (stated_ == adDate) return SeeDayOrder(trimmed);
    hasValue_ = true;
    hasUnqualified_ = hasUnqualified_ || !isQualified;
    if ((candidates_ & kNumbers) != 0) SeeNumber(format, trimmed);
    if ((candidates_ & kDates) != 0) SeeDate(trimmed);
    isNumeric_ = hasUnqualified_ && (candidates_ & kDates) == 0;
}

void ColumnLook::SeeNumber(const TextFormat& format, std::string_view text) {
    NumberShape shape;
    const bool isNumber = ScanNumber(text, format.decimalSymbol, shape);
    if (!isNumber || !FitsLong(shape)) Drop(Long);
    if (!isNumber || !FitsDouble(shape)) Drop(Double);
    if ((candidates_ & Currency) == 0 || (isNumber && IsPlainAmount(shape, format))) return;
    CurrencyShape amount;
    if (!ScanCurrency(text, format, amount) || amount.isPadded) return Drop(Currency);
    hasSymbol_ = hasSymbol_ || amount.hasSymbol;
}

void ColumnLook::SeeDate(std::string_view text) {
    DateShape shape;
    DateTime moment;
    if (picture_) {
        if (!picture_->Read(text, moment)) Drop(kDates);
        return;
    }
    if (!ScanDate(text, shape)) return Drop(kDates);
    if (!MomentOf(shape, false, moment)) Drop(MonthFirst);
    if (!MomentOf(shape, true, moment)) Drop(DayFirst);
}

void ColumnLook::SeeDayOrder(std::string_view text) {
    constexpr int kMonths = 12;
    DateShape shape;
    if (!ScanDate(text, shape) || !shape.isOpen) return;
    firstIsDay_ = firstIsDay_ || shape.first > kMonths;
    secondIsDay_ = secondIsDay_ || shape.second > kMonths;
    if (secondIsDay_) candidates_ = 0;  // month first, whatever else comes
}

CellRule ColumnLook::Outcome() const {
    CellRule rule;
    rule.picture = picture_;
    rule.type = isLong_ ? adLongVarWChar : adVarWChar;
    if (stated_ != adEmpty) {
        rule.type = stated_;
        rule.dayFirst = firstIsDay_ && !secondIsDay_;
        return rule;
    }
    if (!hasValue_ || !hasUnqualified_) return rule;
    if ((candidates_ & Long) != 0) {
        rule.type = adInteger;
    } else if ((candidates_ & Double) != 0) {
        rule.type = adDouble;
    } else if ((candidates_ & Currency) != 0 && hasSymbol_) {
        rule.type = adCurrency;
    } else if ((candidates_ & kDates) != 0) {
        rule.type = adDate;
        rule.dayFirst = (candidates_ & MonthFirst) == 0;
    }
    return rule;
}

}  // namespace varnel::text
