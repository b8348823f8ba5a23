#include "tools/define/TargetRow.h"

#include <algorithm>

#include "ado/types/ConnectionString.h"

namespace varnel::admin {
namespace {

/// How much a row may hold in columns of one type word, and the word for what does not count towards it.
struct RowLimit {
    std::string_view kind, word, longWord;
    std::int64_t most, perCharacter;  ///< bytes
    std::size_t mostColumns;
};
constexpr RowLimit kLimits[] = {
    {"ACCESS", "", "", 0, 0, 255},
    {"FOXPRO DIR", "Character", "Memo", 60'000, 1, 254},
    {"FOXPRO DBC", "Character", "Memo", 60'000, 1, 254},
    {"ORACLE", "", "", 0, 0, 1000},
    {"MSSQL", "", "", 0, 0, 1024},
    {"MySQL", "Varchar", "LongText", 60'000, 4, 1017},
};

bool Counts(const ColumnMapping& column, const RowLimit& limit) {
    return column.selected && !limit.word.empty() && column.targetType == limit.word;
}

void LengthenWidest(const RowLimit& limit, TableMapping& table) {
    for (;;) {
        std::int64_t bytes = 0;
        ColumnMapping* widest = nullptr;
        for (ColumnMapping& column : table.columns) {
            if (!Counts(column, limit)) continue;
            bytes += column.targetWidth * limit.perCharacter;
            if (widest == nullptr || column.targetWidth > widest->targetWidth) widest = &column;
        }
        if (bytes <= limit.most || widest == nullptr) return;
        widest->targetType = limit.longWord;
    }
}

bool IsLong(const ColumnMapping& column) {
    constexpr std::string_view kLong[] = {"Binary", "VarBinary", "LongVarBinary", "LongVarChar", "LongVarWChar"};
    return column.selected && std::find(std::begin(kLong), std::end(kLong), column.type) != std::end(kLong);
}

/// A table with a long or binary column goes into MySQL record by record, its moments as dates.
void NoteLostTimes(TableMapping& table) {
    if (std::none_of(table.columns.begin(), table.columns.end(), IsLong)) return;
    for (ColumnMapping& column : table.columns) {
        const bool isMoment = column.type == "Date" || column.type == "DBTimeStamp" || column.type == "DBTime";
        if (isMoment) column.comment = "the time of day is lost: beside long or binary columns MySQL gets dates only";
    }
}

}  // namespace

void FitRow(std::string_view kind, TableMapping& table) {
    const auto* limit =
        std::find_if(std::begin(kLimits), std::end(kLimits), [&](const RowLimit& one) { return one.kind == kind; });
    if (limit == std::end(kLimits)) return;
    LengthenWidest(*limit, table);
    if (table.columns.size() > limit->mostColumns)
        table.comments.push_back("The target holds at most " + std::to_string(limit->mostColumns) +
                                 " columns in a table: take some out.");
    if (kind == "MySQL") NoteLostTimes(table);
}

}  // namespace varnel::admin
