// Copying the rows of one table into its prepared target table.
#pragma once

#include <cstdint>

#include "ado/types/DataTypeEnum.h"

namespace varnel {

/// Copies the rows of table i one by one, for every target kind but MySQL: with one prepared INSERT into an Oracle
/// target when the source has no long or binary field, else as new records of the target table. Failures are logged
/// and counted; more than 50 of them end the table.
/// Returns true when the source rows were read to their end or a cancel was requested, false when it was given up.
bool TransferRows(std::int16_t i);

/// The same for a MySQL target: 100 rows a statement, or record by record when the source has a long or binary field.
bool TransferRowsMulti(std::int16_t i);

/// The type of the parameter for a source field of type t.
DataTypeEnum MapParamType(DataTypeEnum t);

}  // namespace varnel
