// What a column's declared type word means: the Jet words, standard SQL's words and those of the usual servers, all
// without case. One word may mean the same type in two dialects; where dialects differ, Jet's meaning holds.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "ado/types/Provider.h"

namespace varnel::sql {

/// SQLite's five ways to treat a value that is stored into a column.
enum class Affinity : std::uint8_t { Integer, Text, Blob, Real, Numeric };

/// SQLite's own rule: which letters a declaration contains.
Affinity AffinityOf(std::string_view declaration);

struct DeclaredType {
    DataTypeEnum type = adVariant;
    std::int64_t size = 16;  ///< as ColumnInfo::definedSize
    std::uint8_t precision = kNotStated;
    std::uint8_t scale = kNotStated;
    bool counter = false;  ///< takes the next number when it is not set
};

/// word: upper case, one blank between its parts ("DOUBLE PRECISION"). Nothing for an unknown word.
std::optional<DeclaredType> FindDeclaredType(std::string_view word, std::span<const int> arguments);

/// True when "word next" begins a type of several parts ("DOUBLE" and "PRECISION").
bool ContinuesTypeWord(std::string_view word, std::string_view next);

/// The type of a column of an existing file from its declaration ("varchar(20)"); an unknown word falls back to the
/// declaration's affinity, no word at all to adVariant.
DeclaredType TypeOfDeclaration(std::string_view declaration);

/// The declaration to store for a new column. It means the same type when it is read again, and its affinity leaves
/// the type's values as they are.
std::string DeclarationToStore(const DeclaredType& type, std::string_view word, std::span<const int> arguments);

/// The type as an open record set reports it.
ColumnInfo DescribeColumn(std::string name, const DeclaredType& type, bool nullable);

/// Size, precision and scale of a type without arguments, for computed columns.
DeclaredType PlainType(DataTypeEnum type);

}  // namespace varnel::sql
