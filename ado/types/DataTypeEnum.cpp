#include "ado/types/DataTypeEnum.h"

namespace varnel {

bool IsText(DataTypeEnum type) {
    switch (type) {
        case adBSTR:
        case adChar:
        case adWChar:
        case adVarChar:
        case adLongVarChar:
        case adVarWChar:
        case adLongVarWChar:
            return true;
        default:
            return false;
    }
}

bool IsLongOrBinary(DataTypeEnum type) {
    return type == adBinary || type == adLongVarChar || type == adLongVarWChar || type == adVarBinary ||
           type == adLongVarBinary;
}

const char* DesignerTypeName(DataTypeEnum type) {
    switch (type) {
        case adSmallInt:
            return "SmallInt";
        case adInteger:
            return "Integer";
        case adSingle:
            return "Single";
        case adDouble:
            return "Double";
        case adCurrency:
            return "Currency";
        case adDate:
            return "Date";
        case adBoolean:
            return "Boolean";
        case adTinyInt:
            return "TinyInt";
        case adUnsignedTinyInt:
            return "UnsignedTinyInt";
        case adGUID:
            return "GUID";
        case adBinary:
            return "Binary";
        case adChar:
            return "Char";
        case adWChar:
            return "Wchar";
        case adNumeric:
            return "Numeric";
        case adDBDate:
            return "DBDate";
        case adDBTime:
            return "DBTime";
        case adDBTimeStamp:
            return "DBTimeStamp";
        case adVarNumeric:
            return "VarNumeric";
        case adVarChar:
            return "Varchar";
        case adLongVarChar:
            return "LongVarChar";
        case adVarWChar:
            return "VarWchar";
        case adLongVarWChar:
            return "LongVarWChar";
        case adVarBinary:
            return "VarBinary";
        case adLongVarBinary:
            return "LongVarBinary";
        default:
            return "";
    }
}

std::string TypeName(DataTypeEnum type) {
    switch (type) {
        case adBSTR:
            return "BSTR";
        case adVariant:
            return "Variant";
        case adDecimal:
            return "Decimal";
        case adUnsignedSmallInt:
            return "UnsignedSmallInt";
        case adUnsignedInt:
            return "UnsignedInt";
        case adBigInt:
            return "BigInt";
        case adUnsignedBigInt:
            return "UnsignedBigInt";
        default:
            break;
    }
    const std::string name = DesignerTypeName(type);
    return name.empty() ? "type " + std::to_string(static_cast<int>(type)) : name;
}

}  // namespace varnel
