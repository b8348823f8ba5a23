#include "tools/check/FitRules.h"

#include <array>

#include "ado/types/ConnectionString.h"
#include "ado/types/ValueConvert.h"
#include "load/RecordValues.h"
#include "platform/Error.h"
#include "tools/check/NearestName.h"
#include "tools/check/TypeTraits.h"

namespace varnel::admin {
namespace {

/// One source column and the target column that it goes to.
struct Pair {
    const TableFacts& facts;
    const std::string& name;  ///< of the target column
    const ColumnInfo& from;
    const ColumnInfo& to;
    std::string word;  ///< the target's type word in capitals, "" when unknown

    bool certainOnly;  ///< the values themselves are looked at: what may be is not told

    void Warn(const std::string& what, const std::string& remedy) const {
        if (certainOnly) return;
        facts.Found().Warning(name, "'" + from.name + "' (" + TypeText(from) + ") " + what, remedy);
    }
    void Fail(const std::string& what, const std::string& remedy) const {
        facts.Found().Fault(name, "'" + from.name + "' (" + TypeText(from) + ") " + what, remedy);
    }
    bool InBatches() const { return facts.way == WayOfWriting::Batches; }
    /// What becomes of a value that does not fit.
    std::string Refused() const {
        return InBatches() ? "the server refuses it, and with it the whole batch of up to 100 rows"
                           : "its row is refused and reported";
    }
    std::string Goes() const { return "goes to a column of " + TypeText(to); }
};

const std::string kWiden = "make the target column wider, or filter such rows out";

void CheckTexts(const Pair& pair) {
    constexpr std::int64_t kAlwaysEnough = 16'000'000;
    if (pair.to.definedSize <= 0 || pair.to.definedSize >= pair.from.definedSize) return;
    if (pair.to.definedSize >= kAlwaysEnough) return;
    pair.Warn(pair.Goes() + ": where a value is longer, " + pair.Refused(), kWiden);
}

void CheckIntoText(const Pair& pair) {
    const bool oracleFlag = pair.from.type == adBoolean && SessionDef.TargetDBName == "ORACLE";
    const std::int64_t needed = oracleFlag ? 1 : TextLengthOf(pair.from);
    if (needed > pair.to.definedSize && pair.to.definedSize > 0)
        pair.Warn("may need " + std::to_string(needed) + " characters and " + pair.Goes() + ": where it does, " +
                      pair.Refused(),
                  kWiden);
}

void CheckFromText(const Pair& pair) {
    const std::string guess = pair.facts.typesAreGuessed ? " (at least one value reads as nothing but text)" : "";
    pair.Warn(pair.Goes() + guess + ": where a text does not read as one, " + pair.Refused(),
              "run the check with --values to see whether there are such texts");
}

std::string RoundedOrRefused(const Pair& pair) {
    return pair.InBatches() ? "the server rounds it without a word" : pair.Refused();
}

void CheckNumbers(const Pair& pair) {
    const TypeSort from = SortOf(pair.from.type), to = SortOf(pair.to.type);
    const DigitRange has = DigitsOf(pair.from), takes = DigitsOf(pair.to, SessionDef.TargetDBName == "FOXPRO");
    if (takes.isOpen) return;
    if (to == TypeSort::Float) {
        const int exact = pair.to.type == adSingle ? 7 : 15;
        const bool fits = from == TypeSort::Float ? pair.from.type == adSingle || pair.to.type == adDouble
                                                  : !has.isOpen && has.before + has.places <= exact;
        if (!fits)
            pair.Warn(pair.Goes() + ", which keeps " + std::to_string(exact) + " digits: where a number has more, " +
                          RoundedOrRefused(pair),
                      "use an exact number in the target, such as Decimal(19,4)");
        return;
    }
    if (has.places < 0 || has.places > takes.places)
        pair.Warn(pair.Goes() + ": where a number has more decimal places, " + RoundedOrRefused(pair),
                  "use a target type with a fraction, or with more decimal places");
    const bool unsignedTarget = pair.to.type == adUnsignedTinyInt && pair.from.type != adUnsignedTinyInt;
    const bool sameDigits = has.before == takes.before && pair.from.type != pair.to.type && to == TypeSort::Whole;
    const bool isFloat = from == TypeSort::Float || has.isOpen;
    if (!isFloat && (has.before > takes.before || unsignedTarget || (sameDigits && from == TypeSort::Exact)))
        pair.Warn(pair.Goes() + (to == TypeSort::Whole ? " (" + RangeText(pair.to.type) + ")" : "") +
                      ": where a number is larger, " + pair.Refused(),
                  kWiden);
}

bool HasTime(DataTypeEnum type) {
    return type == adDate || type == adDBTimeStamp || type == adDBTime;
}

/// The moments that a server's type has no place for; "" when there are none worth telling.
std::string MissingMoments(const std::string& kind, const std::string& word) {
    if (kind == "MySQL" && word.starts_with("TIMESTAMP")) return "before 1970 or after January 2038";
    if (kind == "MSSQL" && word.starts_with("SMALLDATETIME")) return "before 1900 or after June 2079";
    if (kind == "MSSQL" && word == "DATETIME") return "before 1753";
    return "";
}

void CheckMoments(const Pair& pair) {
    const bool rowByRow = SessionDef.TargetDBName == "MySQL" && pair.facts.way == WayOfWriting::NewRecords;
    if (rowByRow && HasTime(pair.from.type) && pair.to.type != adDBDate) {
        pair.Warn("loses its time of day: a table with long columns goes to MySQL row by row, with dates only",
                  "load the long columns in a table entry of their own");
    } else if (HasTime(pair.from.type) && pair.to.type == adDBDate) {
        pair.Warn(pair.Goes() + ", which has no place for the time of day", "use a DateTime column in the target");
    }
    const std::string missing = MissingMoments(SessionDef.TargetDBName, pair.word);
    if (!missing.empty())
        pair.Warn("goes to a column of type " + pair.word + ": where a date lies " + missing + ", " + pair.Refused(),
                  SessionDef.TargetDBName == "MySQL" ? "use DateTime in the target" : "use datetime2 in the target");
}

void CheckBytes(const Pair& pair) {
    if (pair.to.definedSize > 0 && pair.to.definedSize < pair.from.definedSize && pair.to.definedSize < 16'000'000)
        pair.Warn(pair.Goes() + ": where a value is longer, " + pair.Refused(), kWiden);
}

void CheckBoolean(const Pair& pair) {
    if (SessionDef.TargetDBName == "ORACLE" && SortOf(pair.to.type) != TypeSort::Text)
        pair.Fail("is written to Oracle as T or F and " + pair.Goes() + ": every row is refused",
                  "use Varchar2(1) in the target");
}

/// A value of a type that converts always or never.
Value SampleOf(TypeSort sort) {
    Value sample;
    if (sort == TypeSort::Guid) sample.SetGuid(GuidBytes{1, 2, 3});
    if (sort == TypeSort::Bytes) sample.SetBytes(std::array<std::uint8_t, 2>{65, 0});
    if (sort == TypeSort::Moment) sample.SetDateTime(DateTime{40'000, 0});
    if (sort == TypeSort::Boolean) sample.SetBoolean(true);
    return sample;
}

bool Converts(const Pair& pair) {
    try {
        Value into;
        ConvertValue(SampleOf(SortOf(pair.from.type)), pair.to.type, into);
        return true;
    } catch (const Error&) {
        return false;
    }
}

void CheckOtherSort(const Pair& pair) {
    const TypeSort from = SortOf(pair.from.type), to = SortOf(pair.to.type);
    if (!Converts(pair))
        return pair.Fail(pair.Goes() + ", into which it never converts: every row with a value is refused",
                         "choose another target type, or de-select the column");
    if (from == TypeSort::Bytes && to == TypeSort::Text)
        return pair.Warn(pair.Goes() + " and is read as UTF-16 there, which bytes rarely are",
                         "use a binary type in the target");
    if (to == TypeSort::Text) return CheckIntoText(pair);
    if (from == TypeSort::Moment || to == TypeSort::Moment)
        return pair.Warn(pair.Goes() + ": moments and numbers are exchanged as days since 1899-12-30",
                         "use a date type on both sides");
}

bool IsNumber(TypeSort sort) {
    return sort == TypeSort::Whole || sort == TypeSort::Exact || sort == TypeSort::Float;
}

void CheckPair(const Pair& pair) {
    const TypeSort from = SortOf(pair.from.type), to = SortOf(pair.to.type);
    if (from == TypeSort::Other || to == TypeSort::Other) return;
    if (from == TypeSort::Boolean) CheckBoolean(pair);
    if (from == TypeSort::Text) {
        if (to != TypeSort::Text) return CheckFromText(pair);
        if (!pair.facts.typesAreGuessed) CheckTexts(pair);
        return;
    }
    if (IsNumber(from) && IsNumber(to)) {
        if (!pair.facts.typesAreGuessed) CheckNumbers(pair);
        return;
    }
    if (IsNumber(from) && to == TypeSort::Text) return CheckIntoText(pair);
    if (IsNumber(from) && to == TypeSort::Boolean)
        return pair.Warn(pair.Goes() + ": every number but 0 becomes True", "use a number in the target");
    if (from == TypeSort::Boolean && (IsNumber(to) || SessionDef.TargetDBName == "ORACLE")) return;
    if (from == TypeSort::Moment && to == TypeSort::Moment) return CheckMoments(pair);
    if (from == TypeSort::Bytes && to == TypeSort::Bytes) return CheckBytes(pair);
    if (from != to) CheckOtherSort(pair);
}

/// A Yes/No column of an Access database knows no Null.
void CheckNullFlags(const TableFacts& facts) {
    std::string columns;
    for (std::size_t k = 0; k < facts.source.size(); ++k) {
        const TableColumn* to = facts.TargetOf(k);
        if (to == nullptr || to->info.type != adBoolean || SessionDef.TargetDBName != "ACCESS") continue;
        if (facts.source[k].nullable && SessionDef.SourceDBName != "ACCESS")
            columns += " '" + facts.source[k].name + "'";
    }
    if (!columns.empty()) facts.Found().Note("", "a Null of" + columns + " arrives as False in an Access database");
}

/// FoxPro tables and the narrow columns of SQL Server hold the characters of one code page.
void CheckNarrowTexts(const TableFacts& facts) {
    std::vector<std::string> narrow;
    for (std::size_t k = 0; k < facts.source.size(); ++k) {
        const TableColumn* to = facts.TargetOf(k);
        if (to == nullptr || !IsText(to->info.type) || !IsText(facts.source[k].type)) continue;
        const DataTypeEnum type = to->info.type;
        const bool isNarrow = type == adChar || type == adVarChar || type == adLongVarChar;
        const bool foxPro = SessionDef.TargetDBName == "FOXPRO" && SessionDef.SourceDBName != "FOXPRO";
        if (foxPro || (SessionDef.TargetDBName == "MSSQL" && isNarrow)) narrow.push_back(facts.written[k]);
    }
    if (!narrow.empty())
        facts.Found().Note("", ShortList(narrow) + (narrow.size() == 1 ? " holds" : " hold") +
                                   " the characters of one code page: the row of a text with any other is refused");
}

/// The batch way has one text that means Null.
void CheckNullTexts(const TableFacts& facts) {
    if (facts.way != WayOfWriting::Batches) return;
    for (const ColumnInfo& column : facts.source)
        if (IsText(column.type)) {
            facts.Found().Note("", "a text that reads exactly NULL arrives as Null, because rows go in batches");
            return;
        }
}

}  // namespace

void CheckFit(const TableFacts& facts, bool certainOnly) {
    if (facts.source.empty() || facts.target.empty()) return;
    for (std::size_t k = 0; k < facts.source.size(); ++k) {
        const TableColumn* to = facts.TargetOf(k);
        if (to == nullptr) continue;
        CheckPair({facts, facts.written[k], facts.source[k], to->info, AsciiUpper(to->typeName), certainOnly});
    }
    CheckNullFlags(facts);
    CheckNarrowTexts(facts);
    CheckNullTexts(facts);
}

}  // namespace varnel::admin
