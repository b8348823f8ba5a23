#include "ado/types/ExactFit.h"

#include "ado/types/ValueText.h"

namespace varnel {

void RefuseRounding(const ColumnInfo& column, const Value& value) {
    if (value.Kind() != ValueKind::Decimal || column.numericScale == kNotStated) return;
    if (value.AsDecimal().scale <= column.numericScale) return;
    if (RoundedToScale(value.AsDecimal(), column.numericScale) == value.AsDecimal()) return;
    throw Error(ErrorKind::Conversion, column.name,
                column.name + ": '" + DefaultText(value) + "' has more decimal places than the column's " +
                    std::to_string(column.numericScale));
}

}  // namespace varnel
