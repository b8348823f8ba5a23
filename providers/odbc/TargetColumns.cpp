#include "providers/odbc/TargetColumns.h"

#include <cstdlib>

#include "ado/types/ExactFit.h"
#include "ado/types/ValueConvert.h"
#include "ado/types/ValueText.h"

namespace varnel::odbc {
namespace {

/// Microseconds that a moment kept as a number of days may be off.
constexpr std::int64_t kNoise = 50;

/// The step of the column that is nearest to a time of day.
std::int64_t NearestStep(const OdbcColumn& column, std::int64_t micros) {
    constexpr std::int64_t kMilli = 1000;
    const std::int64_t step = column.momentStep == kThreeHundredth ? kMilli : column.momentStep;
    return (micros + step / 2) / step * step;
}

/// Thousandths of a second that a step of a 300th keeps: 0, 3 and 7 in the last place.
bool IsThreeHundredth(std::int64_t micros) {
    const std::int64_t last = micros / 1000 % 10;
    return last == 0 || last == 3 || last == 7;
}

const Value& FittedMoment(const OdbcColumn& column, const Value& value, Value& scratch) {
    const DateTime moment = value.AsDateTime();
    const std::int64_t nearest = NearestStep(column, moment.micros);
    const bool onStep = column.momentStep != kThreeHundredth || IsThreeHundredth(nearest);
    if (onStep && nearest == moment.micros) return value;
    if (onStep && std::llabs(nearest - moment.micros) <= kNoise) {
        scratch.SetDateTime(nearest < kMicrosPerDay ? DateTime{moment.days, nearest} : DateTime{moment.days + 1, 0});
        return scratch;
    }
    std::string shown;
    AppendIsoDateTime(shown, moment);
    throw Error(ErrorKind::Conversion, column.info.name,
                column.info.name + ": the column does not hold the whole time of '" + shown + "'");
}

}  // namespace

std::optional<std::vector<OdbcColumn>> DescribeSelect(const StatementHandle& statement, const std::string& select,
                                                      const ConnectionText& connection) {
    SQLCHAR* text = reinterpret_cast<SQLCHAR*>(const_cast<char*>(select.c_str()));  // which is only read
    SQLSMALLINT count = 0;
    if (!SQL_SUCCEEDED(SQLPrepare(statement.Get(), text, static_cast<SQLINTEGER>(select.size()))) ||
        !SQL_SUCCEEDED(SQLNumResultCols(statement.Get(), &count)))
        return std::nullopt;
    std::vector<OdbcColumn> columns;
    for (SQLSMALLINT number = 1; number <= count; ++number) {
        DriverColumn column;
        if (!ReadDriverColumn(statement, static_cast<SQLUSMALLINT>(number), column)) return std::nullopt;
        columns.push_back(DescribeColumn(column, connection));
    }
    return columns;
}

const Value& Fitted(const OdbcColumn& column, const Value& value, Value& scratch) {
    switch (value.Kind()) {
        case ValueKind::DateTime:
            return column.momentStep == 0 ? value : FittedMoment(column, value, scratch);
        case ValueKind::Decimal:
            RefuseRounding(column.info, value);
            return value;
        case ValueKind::Single:
        case ValueKind::Double:
        case ValueKind::Currency:
            if (column.form != CellForm::Decimal || column.info.numericScale == kNotStated) return value;
            ConvertValue(value, adNumeric, scratch);
            RefuseRounding(column.info, scratch);
            return value;
        default:
            return value;
    }
}

}  // namespace varnel::odbc
