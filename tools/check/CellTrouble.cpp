#include "tools/check/CellTrouble.h"

#include <algorithm>
#include <utility>

#include "ado/types/ConnectionString.h"
#include "ado/types/ExactFit.h"
#include "ado/types/ValueConvert.h"
#include "ado/types/ValueText.h"
#include "export/OutputLines.h"
#include "export/Padding.h"
#include "load/RecordValues.h"
#include "platform/CodePage.h"
#include "platform/Error.h"
#include "tools/check/ExportRules.h"
#include "tools/check/TypeTraits.h"

namespace varnel::admin {
namespace {

constexpr int kUtf8 = 65001, kWindowsLatin = 1252;

Trouble Refused(std::string sort) {
    return {Severity::Fault, std::move(sort)};
}

Trouble Changed(std::string sort) {
    return {Severity::Warning, std::move(sort)};
}

/// The first and last day that a type of the target takes, in days since 1899-12-30.
struct DayRange {
    std::int32_t first = kFirstDay, last = kLastDay;
};

DayRange DaysOf(const std::string& kind, const std::string& word) {
    const auto day = [](int year, int month, int d) { return FromCivil({year, month, d}).days; };
    if (kind == "MySQL" && word.starts_with("TIMESTAMP")) return {day(1970, 1, 1), day(2038, 1, 19)};
    if (kind == "MSSQL" && word == "DATETIME") return {day(1753, 1, 1), kLastDay};
    if (kind == "MSSQL" && word.starts_with("SMALLDATETIME")) return {day(1900, 1, 1), day(2079, 6, 6)};
    return {};
}

/// A value for a column of a database table.
class TableJudge : public ColumnJudge {
public:
    TableJudge(const TableFacts& facts, std::size_t k, const TableColumn& to)
        : from_(facts.source[k].type),
          to_(to.info),
          batches_(facts.way == WayOfWriting::Batches),
          rowByRow_(SessionDef.TargetDBName == "MySQL" && !batches_),
          days_(DaysOf(SessionDef.TargetDBName, AsciiUpper(to.typeName))) {
        if (SessionDef.TargetDBName == "FOXPRO" && IsText(to_.type)) codePage_.emplace(kWindowsLatin);
    }

    std::optional<Trouble> Judge(const Value& value) override {
        if (value.IsNull()) {
            if (to_.nullable) return std::nullopt;
            return Refused("is Null, and the target column takes none");
        }
        if (batches_ && value.Kind() == ValueKind::Text && value.AsText() == "NULL")
            return Changed("reads exactly NULL and arrives as Null");
        if (from_ == adBoolean && SessionDef.TargetDBName == "ORACLE") return std::nullopt;
        try {
            ConvertValue(value, to_.type, converted_);
            RefuseRounding(to_, converted_);
        } catch (const Error&) {
            return Misfit();
        }
        return JudgeConverted();
    }

private:
    std::optional<Trouble> Misfit() const {
        const TypeSort from = SortOf(from_), to = SortOf(to_.type);
        const bool numbers =
            from != TypeSort::Text && (to == TypeSort::Whole || to == TypeSort::Exact || to == TypeSort::Float);
        if (batches_ && numbers) return Changed("has digits that the server rounds away or refuses");
        return Refused("does not convert to the target's " + TypeText(to_) + " without a loss");
    }

    std::optional<Trouble> JudgeConverted() {
        switch (converted_.Kind()) {
            case ValueKind::Text:
                return JudgeText(converted_.AsText());
            case ValueKind::Bytes:
                if (to_.definedSize <= 0 || static_cast<std::int64_t>(converted_.AsBytes().size()) <= to_.definedSize)
                    return std::nullopt;
                return Refused("is longer than the target column's " + std::to_string(to_.definedSize) + " bytes");
            case ValueKind::Decimal:
                return JudgeDigits();
            case ValueKind::DateTime:
                return JudgeMoment(converted_.AsDateTime());
            default:
                return std::nullopt;
        }
    }

    std::optional<Trouble> JudgeText(std::string_view text) {
        if (to_.definedSize > 0 && static_cast<std::int64_t>(CharacterCount(text)) > to_.definedSize)
            return Refused("is longer than the target column's " + std::to_string(to_.definedSize) + " characters");
        if (!codePage_) return std::nullopt;
        try {
            bytes_.clear();
            codePage_->Encode(bytes_, text);
        } catch (const Error&) {
            return Refused("holds a character that code page 1252 of the FoxPro table lacks");
        }
        return std::nullopt;
    }

    std::optional<Trouble> JudgeDigits() const {
        const bool foxPro = SessionDef.TargetDBName == "FOXPRO";
        const DigitRange takes = DigitsOf(to_, foxPro);
        if (takes.isOpen || takes.places < 0) return std::nullopt;
        const std::string text = DefaultText(converted_);
        const std::size_t start = text.starts_with('-') ? 1 : 0;
        const std::size_t point = std::min(text.find('.'), text.size());
        const bool isZero = text.substr(start, point - start) == "0";
        if (isZero || static_cast<int>(foxPro ? point : point - start) <= takes.before) return std::nullopt;
        return Refused("has more digits than the target's " + TypeText(to_));
    }

    std::optional<Trouble> JudgeMoment(DateTime moment) const {
        if (moment.days < days_.first || moment.days > days_.last)
            return Refused("lies outside of the dates that the target column takes");
        if (moment.micros != 0 && (rowByRow_ || to_.type == adDBDate)) return Changed("loses its time of day");
        return std::nullopt;
    }

    DataTypeEnum from_;
    ColumnInfo to_;
    bool batches_, rowByRow_;
    DayRange days_;
    std::optional<CodePage> codePage_;
    Value converted_;
    std::string bytes_;
};

/// A value for a cell of a text file.
class CellJudge : public ColumnJudge {
public:
    CellJudge(const TableFacts& facts, std::size_t k)
        : rule_(RuleOf(facts, k)), delimited_(SessionDef.FileFormat == "DELIMITED") {
        const int codePage = ExportCodePage(SessionDef.TargetConnStr);
        if (codePage != kUtf8) codePage_.emplace(codePage);
    }

    std::optional<Trouble> Judge(const Value& value) override {
        cell_.clear();
        bytes_.clear();
        try {
            if (delimited_)
                AppendDelimitedCell(cell_, rule_, value, SessionDef.DTextQ);
            else
                AppendFixedCell(cell_, rule_, value);
        } catch (const Error&) {
            return Refused("has no text for its cell");
        }
        try {
            if (codePage_) codePage_->Encode(bytes_, cell_);
        } catch (const Error&) {
            return Refused("holds a character that code page " + std::to_string(codePage_->Number()) +
                           " of the file lacks");
        }
        if (value.IsNull()) return std::nullopt;
        return delimited_ ? JudgeDelimited(value) : JudgeFixed(value);
    }

private:
    std::optional<Trouble> JudgeDelimited(const Value& value) const {
        const std::string_view inner = value.Kind() == ValueKind::Text ? value.AsText() : std::string_view(cell_);
        const std::string& qualifier = SessionDef.DTextQ;
        const bool qualified = rule_.group == CellGroup::Text && !qualifier.empty();
        if (qualified && inner.find(qualifier) != std::string_view::npos)
            return Changed("holds the qualifier, which is not doubled: a reader may end the text there");
        const bool splits = (!SessionDef.DFormat.empty() && inner.find(SessionDef.DFormat) != std::string_view::npos) ||
                            inner.find_first_of("\r\n") != std::string_view::npos;
        if (!qualified && splits) return Changed("holds a separator or line break outside of qualifiers");
        return std::nullopt;
    }

    std::optional<Trouble> JudgeFixed(const Value& value) const {
        if (rule_.group == CellGroup::Number && NumberWidth(rule_.type) > 0 &&
            TrimBlanks(NumericText(value)).size() > static_cast<std::size_t>(NumberWidth(rule_.type)))
            return Changed("is cut to " + std::to_string(NumberWidth(rule_.type)) + " characters");
        if (rule_.group == CellGroup::Numeric && TrimBlanks(cell_).empty())
            return Changed("is too long for its cell and becomes blanks");
        if (cell_.find_first_of("\r\n") != std::string::npos) return Changed("holds a line break, which ends the line");
        return std::nullopt;
    }

    CellRule rule_;
    bool delimited_;
    std::optional<CodePage> codePage_;
    std::string cell_, bytes_;
};

}  // namespace

std::unique_ptr<ColumnJudge> JudgeOf(const TableFacts& facts, std::size_t k) {
    if (facts.preparation == Preparation::Export) return std::make_unique<CellJudge>(facts, k);
    const TableColumn* to = facts.TargetOf(k);
    if (to == nullptr) return nullptr;
    return std::make_unique<TableJudge>(facts, k, *to);
}

}  // namespace varnel::admin
