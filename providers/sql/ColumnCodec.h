// From SQLite's values to ours, and back into a statement's parameters. A column's decoder is chosen once.
#pragma once

#include <sqlite3.h>

#include <string>

#include "ado/types/Value.h"
#include "providers/sql/DeclaredTypes.h"
#include "providers/sql/ValueStorage.h"

namespace varnel::sql {

/// Turns one column's stored values into Values. A value that does not fit the column's type comes by its storage
/// class; a text that is not UTF-8 becomes a Failure that names the column.
class ColumnCodec {
public:
    /// place: "column 'Name' of table 'Customer'", for the text of a Failure.
    ColumnCodec(const DeclaredType& type, Affinity affinity, std::string place);

    void Decode(sqlite3_value* stored, Value& out) const { decode_(*this, stored, out); }

private:
    using Decoder = void (*)(const ColumnCodec&, sqlite3_value*, Value&);

    static Decoder ChooseDecoder(DataTypeEnum type);
    static void ByStorageClass(const ColumnCodec& codec, sqlite3_value* stored, Value& out);
    static void AsInteger(const ColumnCodec& codec, sqlite3_value* stored, Value& out);
    static void AsSingle(const ColumnCodec& codec, sqlite3_value* stored, Value& out);
    static void AsDouble(const ColumnCodec& codec, sqlite3_value* stored, Value& out);
    static void AsCurrency(const ColumnCodec& codec, sqlite3_value* stored, Value& out);
    static void AsDecimal(const ColumnCodec& codec, sqlite3_value* stored, Value& out);
    static void AsBoolean(const ColumnCodec& codec, sqlite3_value* stored, Value& out);
    static void AsMoment(const ColumnCodec& codec, sqlite3_value* stored, Value& out);
    static void AsText(const ColumnCodec& codec, sqlite3_value* stored, Value& out);
    static void AsGuid(const ColumnCodec& codec, sqlite3_value* stored, Value& out);

    void TakeText(sqlite3_value* stored, Value& out) const;

    Decoder decode_;
    int scale_;
    bool textMayBeBlob_;  ///< a numeric column of texts: digits are kept as BLOB
    std::string place_;
};

/// Binds form to a parameter without a copy: its bytes must live until the statement is reset or bound anew.
/// Returns SQLite's code.
int BindForm(sqlite3_stmt* statement, int parameter, const StoredForm& form);
/// Hands form to SQLite as a function's result (copied).
void ReturnForm(sqlite3_context* context, const StoredForm& form);

}  // namespace varnel::sql
