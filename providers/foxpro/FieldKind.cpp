#include "providers/foxpro/FieldKind.h"

#include <algorithm>
#include <utility>

namespace varnel::foxpro {
namespace {

constexpr std::int64_t kMemoSize = 2'147'483'647;
constexpr std::uint32_t kMaxNumericPrecision = 19;

/// The kind by the letter alone.
FieldKind KindOfLetter(char letter, DbfDialect dialect) {
    const bool isVisual = dialect == DbfDialect::VisualFoxPro, isLevel7 = dialect == DbfDialect::DBase7;
    switch (letter) {
        case 'C':
            return FieldKind::Text;
        case 'V':
        case 'Q':
            return isVisual ? FieldKind::Varying : FieldKind::Unsupported;
        case 'N':
        case 'F':
            return FieldKind::Number;
        case 'D':
            return FieldKind::Date;
        case 'T':
            return FieldKind::Moment;
        case 'L':
            return FieldKind::Logical;
        case 'I':
            return isLevel7 ? FieldKind::DBase7Integer : FieldKind::Integer;
        case '+':
            return isLevel7 ? FieldKind::DBase7Integer : FieldKind::Unsupported;
        case 'O':
            return isLevel7 ? FieldKind::DBase7Double : FieldKind::Unsupported;
        case 'B':
            return isVisual ? FieldKind::Double : FieldKind::Memo;
        case 'Y':
            return FieldKind::Currency;
        case 'M':
        case 'G':
        case 'P':
        case 'W':
            return FieldKind::Memo;
        default:
            return FieldKind::Unsupported;
    }
}

/// Whether a field of this kind can have this many bytes.
bool LengthFits(FieldKind kind, std::uint32_t length) {
    switch (kind) {
        case FieldKind::Date:
        case FieldKind::Moment:
        case FieldKind::Double:
        case FieldKind::Currency:
        case FieldKind::DBase7Double:
            return length == 8;
        case FieldKind::Integer:
        case FieldKind::DBase7Integer:
            return length == 4;
        case FieldKind::Logical:
            return length == 1;
        case FieldKind::Memo:
            return length == 4 || length == 10;
        default:
            return true;
    }
}

void DescribeNumeric(const DbfField& field, ColumnInfo& column) {
    column.type = adNumeric;
    column.definedSize = 19;
    column.precision = static_cast<std::uint8_t>(std::min(field.length, kMaxNumericPrecision));
    column.numericScale = field.decimals;
}

void Describe(ColumnInfo& column, DataTypeEnum type, std::int64_t size, std::uint8_t precision = kNotStated) {
    column.type = type;
    column.definedSize = size;
    column.precision = precision;
}

}  // namespace

FieldKind KindOfField(const DbfField& field, DbfDialect dialect) {
    const FieldKind kind = KindOfLetter(field.type, dialect);
    // An 8-byte B is a double whoever wrote it; only a reference has 10 bytes.
    if (field.type == 'B' && field.length == 8) return FieldKind::Double;
    return LengthFits(kind, field.length) ? kind : FieldKind::Unsupported;
}

bool IsBinaryField(const DbfField& field) {
    return field.binary || (field.type != 'C' && field.type != 'V' && field.type != 'M');
}

std::string TypeWordOf(const DbfField& field, DbfDialect dialect) {
    switch (KindOfField(field, dialect)) {
        case FieldKind::Text:
        case FieldKind::Unsupported:
            return "Character";
        case FieldKind::Varying:
            return IsBinaryField(field) ? "Varbinary" : "Varchar";
        case FieldKind::Number:
            return field.type == 'F' ? "Float" : "Numeric";
        case FieldKind::Date:
            return "Date";
        case FieldKind::Moment:
            return "DateTime";
        case FieldKind::Logical:
            return "Logical";
        case FieldKind::Integer:
        case FieldKind::DBase7Integer:
            return "Integer";
        case FieldKind::Double:
        case FieldKind::DBase7Double:
            return "Double";
        case FieldKind::Currency:
            return "Currency";
        case FieldKind::Memo:
            return !IsBinaryField(field) ? "Memo" : field.type == 'G' ? "General" : "Blob";
    }
    return "";
}

ColumnInfo ColumnOfField(const DbfField& field, DbfDialect dialect, std::string name) {
    ColumnInfo column;
    column.name = std::move(name);
    column.nullable = field.nullable;
    const bool isBinary = IsBinaryField(field);
    switch (KindOfField(field, dialect)) {
        case FieldKind::Varying:
            Describe(column, isBinary ? adVarBinary : adVarChar, field.length);
            break;
        case FieldKind::Number:
            DescribeNumeric(field, column);
            break;
        case FieldKind::Date:
            Describe(column, adDBDate, 6);
            break;
        case FieldKind::Moment:
            Describe(column, adDBTimeStamp, 16);
            break;
        case FieldKind::Logical:
            Describe(column, adBoolean, 2);
            break;
        case FieldKind::Integer:
        case FieldKind::DBase7Integer:
            Describe(column, adInteger, 4, 10);
            break;
        case FieldKind::Double:
        case FieldKind::DBase7Double:
            Describe(column, adDouble, 8, 15);
            break;
        case FieldKind::Currency:
            Describe(column, adCurrency, 8, 19);
            break;
        case FieldKind::Memo:
            Describe(column, isBinary ? adLongVarBinary : adLongVarChar, kMemoSize);
            break;
        default:
            Describe(column, isBinary ? adBinary : adChar, field.length);
    }
    return column;
}

}  // namespace varnel::foxpro
