// The data layer's type codes, numbered as ActiveX Data Objects numbers them; stored nowhere, but named in tables of
// rules, so the numbers are fixed.
#pragma once

#include <cstdint>
#include <string>

namespace varnel {

enum class DataTypeEnum : std::int16_t {
    adEmpty = 0,
    adSmallInt = 2,
    adInteger = 3,
    adSingle = 4,
    adDouble = 5,
    adCurrency = 6,
    adDate = 7,
    adBSTR = 8,
    adBoolean = 11,
    adVariant = 12,
    adDecimal = 14,
    adTinyInt = 16,
    adUnsignedTinyInt = 17,
    adUnsignedSmallInt = 18,
    adUnsignedInt = 19,
    adBigInt = 20,
    adUnsignedBigInt = 21,
    adGUID = 72,
    adBinary = 128,
    adChar = 129,
    adWChar = 130,
    adNumeric = 131,
    adDBDate = 133,
    adDBTime = 134,
    adDBTimeStamp = 135,
    adVarNumeric = 139,
    adVarChar = 200,
    adLongVarChar = 201,
    adVarWChar = 202,
    adLongVarWChar = 203,
    adVarBinary = 204,
    adLongVarBinary = 205,
};
using enum DataTypeEnum;

/// A long or binary field: one of the codes 128, 201, 203, 204 and 205.
bool IsLongOrBinary(DataTypeEnum type);
/// A text of any sort, short or long, narrow or wide.
bool IsText(DataTypeEnum type);
/// The name without "ad" as session definitions write it ("VarWchar", "LongVarWChar", "DBTimeStamp"); "" when unknown.
const char* DesignerTypeName(DataTypeEnum type);
/// The name without "ad" of any type: "BigInt". A number when there is none: "type 99".
std::string TypeName(DataTypeEnum type);

enum CursorTypeEnum : std::int8_t {
    adOpenUnspecified = -1,
    adOpenForwardOnly = 0,
    adOpenKeyset = 1,
    adOpenDynamic = 2,
    adOpenStatic = 3
};
enum LockTypeEnum : std::int8_t { adLockUnspecified = -1, adLockReadOnly = 1, adLockOptimistic = 3 };
enum CursorLocationEnum : std::int8_t { adUseServer = 2, adUseClient = 3 };
enum CommandTypeEnum : std::int8_t { adCmdUnspecified = -1, adCmdText = 1 };
enum ParameterDirectionEnum : std::int8_t { adParamInput = 1 };

}  // namespace varnel
