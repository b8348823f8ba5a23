// The key and the FOR expression of a tag: read once, evaluated on every record.
//
//   expression  = and { .OR. and }        and = not { .AND. not }        not = [.NOT.] comparison
//   comparison  = sum [ (= == <> # != < <= > >=) sum ]                   sum = part { (+ | -) part }
//   part        = 'text' | number | .T. | .F. | name | function ( [ expression { , expression } ] ) | ( expression )
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "providers/foxpro/CdxFile.h"
#include "providers/foxpro/KeyTerm.h"

namespace varnel::foxpro {

/// The field that an expression calls name; null when there is none.
using FindKeyField = std::function<const DbfField*(std::string_view name)>;

/// Throws Error{NotSupported} for what is beyond the grammar above, with the reason in words behind whose ("Index tag
/// NAME: ") and the text.
KeyTermPtr ParseKeyExpression(std::string_view text, const DbfHeader& header, const FindKeyField& findField,
                              std::string_view whose);

/// What one tag stores of a record.
class TagKeys {
public:
    /// header: outlives this. Throws Error{NotSupported} naming the tag and why its keys cannot be made, behind intro
    /// ("'x.dbf' cannot be changed: ").
    TagKeys(const CdxTag& tag, const DbfHeader& header, const FindKeyField& findField, const std::string& intro = "");

    KeyShape Shape() const { return shape_; }
    bool IsUnique() const { return (options_ & kUniqueTag) != 0; }
    /// Two records must not have the same key.
    bool IsCandidate() const { return (options_ & kCandidateTag) != 0; }
    bool IsFiltered() const { return filter_ != nullptr; }
    /// False when the tag leaves the record out; else key becomes its key.
    bool KeyOf(const KeyRecord& record, std::vector<std::uint8_t>& key);

private:
    KeyShape shape_;
    std::uint8_t options_;
    KeyTermPtr key_, filter_;
    KeyValue value_;
};

/// Appends the bytes by which an index orders value: length of them, of which the first tells Null when nullable.
void AppendKeyBytes(const KeyValue& value, KeySort sort, bool nullable, KeyShape shape, std::vector<std::uint8_t>& key);

}  // namespace varnel::foxpro
