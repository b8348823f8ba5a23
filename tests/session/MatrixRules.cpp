#include "tests/session/MatrixRules.h"

#include <cstdlib>
#include <string_view>

namespace varnel {

namespace {

bool IsLongWay(const std::vector<MatrixColumn>& columns) {
    for (const MatrixColumn& column : columns) {
        if (column.isLong) return true;
    }
    return false;
}

Cell WithoutTime(const Cell& cell) {
    return cell->substr(0, 10) + " 00:00:00";
}

Cell NullText(const Cell& cell) {
    return *cell == "NULL" ? Cell() : cell;
}

/// A change that the load prescribes for Values of one form.
struct Rule {
    const char* target;
    bool recordByRecord;  ///< or in the other way, batches say
    CellForm form;
    Cell (*change)(const Cell& cell);
    const char* why;
};

constexpr Rule kRules[] = {
    {"MySQL", true, CellForm::Moment, WithoutTime, "the record-by-record way carries no time of day"},
    {"MySQL", false, CellForm::Text, NullText, "the batch way writes the text NULL as Null"},
};

}  // namespace

Cell ComparedCell(const MatrixColumn& column, const Cell& cell) {
    if (std::string_view(column.name) != "FLAG" || !cell) return cell;
    if (*cell == "True" || *cell == "-1" || *cell == "T") return "1";
    if (*cell == "False" || *cell == "F") return "0";
    return cell;
}

Cell CarriedCell(const std::string& sourceKind, const std::string& targetKind, const std::vector<MatrixColumn>& columns,
                 std::size_t k, const Cell& cell) {
    static_cast<void>(sourceKind);
    if (!cell) return cell;
    Cell carried = ComparedCell(columns[k], cell);
    for (const Rule& rule : kRules) {
        if (targetKind == rule.target && IsLongWay(columns) == rule.recordByRecord && columns[k].form == rule.form) {
            if (carried) carried = rule.change(carried);
        }
    }
    return carried;
}

}  // namespace varnel
