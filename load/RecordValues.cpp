#include "load/RecordValues.h"

#include "ado/types/ValueConvert.h"
#include "ado/types/ValueText.h"
#include "platform/CodePage.h"
#include "repository/model/SessionModel.h"

namespace varnel {

namespace {

bool GoesAsByteArray(DataTypeEnum type) {
    return type == adLongVarBinary || type == adLongVarChar || type == adLongVarWChar || type == adBinary;
}

}  // namespace

bool IsDateType(DataTypeEnum type) {
    return type == adDate || type == adDBDate || type == adDBTime || type == adDBTimeStamp;
}

void SetOracleValue(DataTypeEnum sourceType, const Value& from, Value& into) {
    if (sourceType != adBoolean || from.IsNull()) {
        into = from;
    } else {
        into.SetText(ToBoolean(from) ? "T" : "F");
    }
}

const Value& RecordValue(DataTypeEnum sourceType, const Value& from, DataTypeEnum targetType, Value& scratch) {
    if (GoesAsByteArray(sourceType) && from.Kind() == ValueKind::Text && !IsText(targetType)) {
        AppendUtf16FromUtf8(scratch.StartBytes(), from.AsText());
        return scratch;
    }
    if (sourceType == adBoolean && SessionDef.TargetDBName == "ORACLE") {
        SetOracleValue(sourceType, from, scratch);
        return scratch;
    }
    return from;
}

const Value& MySqlRecordValue(DataTypeEnum sourceType, const Value& from, Value& scratch) {
    if (!IsDateType(sourceType) || from.IsNull()) return from;
    Value moment;
    ConvertValue(from, adDate, moment);
    AppendIsoDate(scratch.StartText(), moment.AsDateTime());
    return scratch;
}

}  // namespace varnel
