// How values are kept in SQLite's five storage classes, so that each one reads back exactly.
//   Boolean            INTEGER 0 or 1
//   integers           INTEGER
//   single, double     REAL; infinities included, NaN is refused (SQLite would store Null)
//   currency, decimal  INTEGER or REAL while 64 bits or 15 digits hold the number; else BLOB with its digits, because
//                      a numeric column would round a TEXT
//   moment             TEXT 2026-11-18 16:23:05, with up to six digits after a point when there is a fraction
//   text               TEXT; BLOB where a numeric column would turn a text of digits into a number
//   bytes              BLOB
//   GUID               TEXT {0123ABCD-…}
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ado/types/Value.h"
#include "providers/sql/DeclaredTypes.h"

namespace varnel::sql {

enum class StorageClass : std::uint8_t { Null, Integer, Real, Text, Blob };

/// A value as it is handed to SQLite. bytes point into the value or into the scratch buffer.
struct StoredForm {
    StorageClass storage = StorageClass::Null;
    std::int64_t integer = 0;
    double real = 0;
    std::string_view bytes;
};

/// scratch: must live, unchanged, as long as the form is used.
/// Throws Error{Conversion} for NaN and for a Failure value.
StoredForm StoreValue(const Value& value, Affinity affinity, std::string& scratch);

/// True for a text that a numeric column might turn into a number: only digits, signs, point, E and blanks.
bool LooksNumeric(std::string_view text);

/// Reads "2026-11-18", "2026-11-18 16:23[:05[.25]]" (a T in place of the blank) or "16:23[:05[.25]]" (on day 0).
/// Returns false for anything else; digits beyond the microsecond are cut off.
bool ReadStoredMoment(std::string_view text, DateTime& moment);
/// Seconds since 1970-01-01 00:00. Returns false outside the years 100 to 9999.
bool MomentFromUnixSeconds(std::int64_t seconds, DateTime& moment);
/// A Julian day number, to the millisecond. Returns false outside the years 100 to 9999.
bool MomentFromJulianDay(double days, DateTime& moment);

/// Reads the digits of a currency or decimal kept as BLOB or TEXT. Returns false when it is no such number.
bool ReadStoredDigits(std::string_view digits, Decimal& number);
/// The decimal that a REAL of a column with this scale stands for; false when 38 digits cannot hold it.
bool DecimalFromStoredReal(double real, int scale, Decimal& number);
/// number as a currency; false when it has more than four places or is out of range.
bool ExactCurrency(const Decimal& number, std::int64_t& scaled);

}  // namespace varnel::sql
