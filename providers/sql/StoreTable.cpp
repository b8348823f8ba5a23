#include "providers/sql/StoreTable.h"

#include <utility>

#include "platform/CodePage.h"

namespace varnel::sql {
namespace {

/// The type that stands for all those that hold the same values.
DataTypeEnum CommonType(DataTypeEnum type) {
    switch (type) {
        case adDBDate:
        case adDBTime:
            return adDate;
        case adBSTR:
        case adChar:
        case adVarChar:
            return adVarWChar;
        case adLongVarChar:
            return adLongVarWChar;
        case adDecimal:
        case adUnsignedBigInt:
            return adNumeric;
        case adTinyInt:
        case adUnsignedSmallInt:
            return adInteger;
        case adUnsignedInt:
            return adBigInt;
        default:
            return type;
    }
}

TableShape ShapeOf(const TableFile& file, const std::string& name) {
    TableShape shape;
    shape.name = name;
    shape.file = &file;
    for (const ColumnInfo& info : file.Columns()) {
        ShapeColumn column;
        column.name = info.name;
        column.type.type = CommonType(info.type);
        column.type.size = info.definedSize;
        column.type.precision = info.precision;
        column.type.scale = info.type == adUnsignedBigInt ? 0 : info.numericScale;
        column.notNull = !info.nullable;
        shape.columns.push_back(std::move(column));
    }
    return shape;
}

bool IsPlace(const std::string& owner) {
    return owner.find_first_of("/\\;") != std::string::npos;
}

}  // namespace

std::shared_ptr<StoreTable> OpenStoreTable(std::shared_ptr<OpenStore> store, const ExpressionRules& rules,
                                           const std::string& name, const std::string& owner) {
    auto table = std::make_shared<StoreTable>();
    table->store = std::move(store);
    table->file = table->store->Tables().OpenTable(IsPlace(owner) ? "[" + owner + "].[" + name + "]" : name);
    table->shape = ShapeOf(*table->file, name);
    table->shape.rules = &rules;
    return table;
}

std::optional<std::size_t> ColumnNamed(const StoreTable& table, std::string_view alias, const Expr& name) {
    if (name.kind != ExprKind::Column) return std::nullopt;
    if (!name.owner.empty()) {
        const std::string owner = FoldCase(name.owner);
        if (owner != FoldCase(table.shape.name) && owner != FoldCase(alias)) return std::nullopt;
    }
    return table.file->FindColumn(name.name);
}

std::optional<std::vector<std::size_t>> PlainColumns(const StoreTable& table, const SelectStatement& select) {
    std::vector<std::size_t> columns;
    if (select.everything)
        for (std::size_t i = 0; i < table.Columns().size(); ++i) columns.push_back(i);
    for (const SelectItem& item : select.items) {
        const std::optional<std::size_t> column = ColumnNamed(table, select.tableAlias, item.expression);
        if (!column) return std::nullopt;
        columns.push_back(*column);
    }
    return columns;
}

std::vector<ColumnInfo> DescribePlain(const StoreTable& table, const SelectStatement& select,
                                      const std::vector<std::size_t>& columns) {
    std::vector<ColumnInfo> described;
    for (std::size_t k = 0; k < columns.size(); ++k) {
        described.push_back(table.Columns()[columns[k]]);
        if (!select.everything && !select.items[k].alias.empty()) described.back().name = select.items[k].alias;
    }
    return described;
}

}  // namespace varnel::sql
