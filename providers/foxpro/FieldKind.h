// What a field's letter means in a dialect.
#pragma once

#include <cstdint>
#include <string>

#include "ado/types/Provider.h"
#include "providers/foxpro/DbfHeader.h"

namespace varnel::foxpro {

enum class FieldKind : std::uint8_t {
    Text,
    Varying,  ///< V and Q
    Number,   ///< digits: N and F
    Date,
    Moment,
    Logical,
    Integer,
    Double,
    Currency,
    Memo,  ///< a reference into the memo file: M, G, P, W, and B of dBASE 5
    DBase7Integer,
    DBase7Double,
    Unsupported  ///< also a known letter with a length that it cannot have
};

FieldKind KindOfField(const DbfField& field, DbfDialect dialect);
/// True when the field's texts are bytes to which no code page applies.
bool IsBinaryField(const DbfField& field);
/// The type in FoxPro's words, as CREATE TABLE takes them: "Character".
std::string TypeWordOf(const DbfField& field, DbfDialect dialect);
/// The column as ADO describes it. name: as it is to be called.
ColumnInfo ColumnOfField(const DbfField& field, DbfDialect dialect, std::string name);

}  // namespace varnel::foxpro
