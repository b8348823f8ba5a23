// What one column's fields become: values of its type, or the reason why not.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "ado/types/DataTypeEnum.h"
#include "ado/types/Value.h"
#include "providers/text/DatePicture.h"
#include "providers/text/TextFormat.h"

namespace varnel::text {

struct CellRule {
    DataTypeEnum type = adVarWChar;
    std::size_t longest = 0;                     ///< characters that a text may have; 0: no limit
    bool dayFirst = false;                       ///< of dates whose parts are all numbers
    std::shared_ptr<const DatePicture> picture;  ///< the only form of dates; null: the usual forms
};

enum class CellFault : std::uint8_t { None, TypeMismatch, Overflow, TooLong, NotText };

/// "Type mismatch", "Overflow" ...: how the failure text of such a value begins.
std::string_view FaultWords(CellFault fault);

/// Sets value to what text means in a column of this rule. isQualified: text stood in qualifiers, so an empty one is
/// an empty text; otherwise it is Null, and so is a blank one in a column of another type than text.
/// Returns the reason when text is no value of the type; value is then Null.
CellFault ReadCell(const CellRule& rule, const TextFormat& format, std::string_view text, bool isQualified,
                   Value& value);

/// Without the blanks and tabs at both ends.
std::string_view TrimmedCell(std::string_view text);

}  // namespace varnel::text
