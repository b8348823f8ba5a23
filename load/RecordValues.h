// What becomes of a source value on its way into a parameter or a new record's field.
#pragma once

#include "ado/types/DataTypeEnum.h"
#include "ado/types/Value.h"

namespace varnel {

/// Into a parameter of an Oracle statement: a Boolean field as the text "T" or "F", anything else as it is.
void SetOracleValue(DataTypeEnum sourceType, const Value& from, Value& into);

/// The value for a new record's field: a long or binary source field (205, 201, 203, 128) as a byte array, texts as
/// their UTF-16 code units; a Boolean for an Oracle target as "T" or "F"; anything else as it is. A long text for a
/// text column is handed over as text: the byte array would be read back into the same text.
/// scratch: where a converted value lives. Returns from or scratch.
const Value& RecordValue(DataTypeEnum sourceType, const Value& from, DataTypeEnum targetType, Value& scratch);

/// The value for a new record of a MySQL table: a date without its time of day, anything else as it is.
/// Throws Error{Conversion} when a date field holds no date.
const Value& MySqlRecordValue(DataTypeEnum sourceType, const Value& from, Value& scratch);

/// A date field: 7, 133, 134 or 135.
bool IsDateType(DataTypeEnum type);

}  // namespace varnel
