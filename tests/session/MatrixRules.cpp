#include "tests/session/MatrixRules.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>

#include "platform/CodePage.h"

namespace varnel {

namespace {

Cell WithoutTime(const Cell& cell, const TestColumn&) {
    return cell ? cell->substr(0, 10) + " 00:00:00" : cell;
}
Cell WithoutFraction(const Cell& cell, const TestColumn&) {
    return cell ? cell->substr(0, 19) : cell;
}
Cell NullText(const Cell& cell, const TestColumn&) {
    return cell == "NULL" ? Cell() : cell;
}
Cell NullFlag(const Cell& cell, const TestColumn&) {
    return cell ? cell : "0";
}
Cell Whole(const Cell& cell, const TestColumn&) {
    return cell ? PlainDigits(std::nearbyint(std::strtod(cell->c_str(), nullptr))) : cell;
}
Cell AsDouble(const Cell& cell, const TestColumn&) {
    return cell ? PlainDigits(std::strtod(cell->c_str(), nullptr)) : cell;
}
/// Blanks at the end up to width characters.
Cell PaddedTo(const Cell& cell, int width) {
    if (!cell) return cell;
    const auto characters = static_cast<int>(CharacterCount(*cell));
    return *cell + std::string(static_cast<std::size_t>(std::max(0, width - characters)), ' ');
}
Cell Padded(const Cell& cell, const TestColumn& column) {
    return column.width > 254 ? cell : PaddedTo(cell, column.width);
}

enum class Way { Any, RecordByRecord, Other };

/// A change that a kind of target makes to the values of columns of one source type.
struct Rule {
    const char* target;
    Way way;
    const char* type;
    Cell (*change)(const Cell& cell, const TestColumn& column);
    const char* why;
};

constexpr Rule kRules[] = {
    {"ACCESS", Way::Any, "Boolean", NullFlag, "a Yes/No column knows no Null"},
    {"FOXPRO", Way::Any, "Char", Padded, "blanks fill a character field"},
    {"FOXPRO", Way::Any, "Varchar", Padded, "blanks fill a character field"},
    {"FOXPRO", Way::Any, "VarWchar", Padded, "blanks fill a character field"},
    {"MSSQL", Way::Any, "Char", Padded, "blanks fill a char column"},
    {"MySQL", Way::Any, "Date", WithoutTime, "the mapping gives a Date column"},
    {"MySQL", Way::Any, "DBDate", WithoutTime, "the mapping gives a Date column"},
    {"MySQL", Way::RecordByRecord, "DBTimeStamp", WithoutTime, "this way carries no time of day"},
    {"MySQL", Way::Other, "DBTimeStamp", WithoutFraction, "this way carries no fraction of a second"},
    {"MySQL", Way::Other, "Char", NullText, "the text NULL becomes Null"},
    {"MySQL", Way::Other, "Varchar", NullText, "the text NULL becomes Null"},
    {"MySQL", Way::Other, "VarWchar", NullText, "the text NULL becomes Null"},
    {"MySQL", Way::Other, "Single", Whole, "the mapping gives an Int column, and the server rounds"},
    {"MySQL", Way::Other, "Currency", AsDouble, "the mapping gives a Double column, and the server rounds"},
    {"ORACLE", Way::Other, "Currency", AsDouble, "the stand-in keeps a Number without a size as a double"},
};

bool Applies(const Rule& rule, const MatrixTrip& trip, std::size_t k) {
    const Way way = trip.recordByRecord ? Way::RecordByRecord : Way::Other;
    return trip.target == rule.target && (rule.way == Way::Any || rule.way == way) &&
           trip.described[k].type == rule.type;
}

}  // namespace

Cell ComparedCell(const MatrixColumn& column, const Cell& cell) {
    if (!cell) return cell;
    if (column.form == CellForm::Double) return PlainDigits(std::strtod(cell->c_str(), nullptr));
    if (column.form == CellForm::Single) return PlainDigits(std::strtof(cell->c_str(), nullptr));
    if (std::string_view(column.name) != "FLAG") return cell;
    if (*cell == "True" || *cell == "-1" || *cell == "T") return "1";
    return *cell == "False" || *cell == "F" ? "0" : cell;
}

Cell CarriedCell(const MatrixTrip& trip, std::size_t k, const Cell& cell, std::set<std::string>& why) {
    Cell carried = ComparedCell(trip.columns[k], cell);
    for (const Rule& rule : kRules) {
        if (!Applies(rule, trip, k)) continue;
        Cell changed = rule.change(carried, trip.described[k]);
        if (changed != carried) why.insert(std::string(trip.columns[k].name) + ": " + rule.why);
        carried = std::move(changed);
    }
    return carried;
}

bool SpoilsABatch(const MatrixTrip& trip, std::size_t k, const Cell& cell) {
    if (trip.target != "MySQL" || trip.recordByRecord || !cell) return false;
    const std::string& type = trip.described[k].type;
    if (type == "DBTimeStamp") return *cell < "1970-01-01 00:00:01" || *cell > "2038-01-19 03:14:07";
    return type == "Single" && std::strtod(cell->c_str(), nullptr) > 2147483647.0;
}

Cell HeldCell(const std::string& sourceKind, const MatrixColumn& column, const Cell& cell) {
    if (sourceKind == "FIXED" && cell && cell->find_first_not_of(' ') == std::string::npos) return std::nullopt;
    if (sourceKind == "FIXED" && cell && column.form == CellForm::Text)
        return cell->substr(0, cell->find_last_not_of(' ') + 1);
    if (std::string_view(column.name) == "FLAG" && !cell && sourceKind == "ACCESS") return "0";
    if (std::string_view(column.name) == "CODE" && (sourceKind == "FOXPRO" || sourceKind == "MSSQL")) {
        return PaddedTo(cell, 10);
    }
    return ComparedCell(column, cell);
}

}  // namespace varnel
