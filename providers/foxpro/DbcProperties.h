// The properties of an object of a container, as its PROPERTY memo holds them: records one after another, no head, no
// end mark.
//
//   0 4 bytes of the record, these 7 included   4 2 bytes of the id (1)   6 1 id
//   7 … value: a text with a zero behind it, one byte, or a number of four bytes (big-endian)
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace varnel::foxpro {

inline constexpr std::uint8_t kPathProperty = 1, kClassProperty = 2, kRelatedTableProperty = 18;
inline constexpr std::uint8_t kPrimaryKeyProperty = 20;
inline constexpr std::uint8_t kVersionProperty = 24;

struct DbcProperty {
    std::uint8_t id = 0;
    std::string value;  ///< the stored bytes
};

/// Throws Error{Corrupt} when the records do not fill memo.
std::vector<DbcProperty> ParseDbcProperties(std::span<const std::uint8_t> memo);
std::string EncodeDbcProperties(std::span<const DbcProperty> properties);
/// The value up to its zero; nothing when there is no such property.
std::optional<std::string> TextProperty(std::span<const DbcProperty> properties, std::uint8_t id);

}  // namespace varnel::foxpro
