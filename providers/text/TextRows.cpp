#include "providers/text/TextRows.h"

#include <algorithm>
#include <utility>

#include "platform/Error.h"
#include "providers/text/OpenRecords.h"

namespace varnel::text {

TextRows::TextRows(const std::shared_ptr<const ByteSource>& source, std::string fileName, TextFormat format,
                   std::shared_ptr<const FileLook> look, std::span<const std::size_t> wanted, std::size_t bufferBytes)
    : fileName_(std::move(fileName)),
      format_(std::move(format)),
      look_(std::move(look)),
      wanted_(wanted.begin(), wanted.end()),
      records_(OpenRecords(source, format_, look_->codePage, bufferBytes)) {
    std::size_t kept = 0;
    for (const std::size_t column : wanted_) {
        if (column >= look_->columns.size()) {
            throw Error(ErrorKind::Misuse, fileName_,
                        "'" + fileName_ + "' has no column " + std::to_string(column + 1));
        }
        kept = std::max(kept, column + 1);
    }
    records_->LimitFields(kept, look_->usualFields);
    if (format_.hasHeader) records_->Next();
    if (look_->columns.size() == 1) records_->KeepEmptyLines();
}

bool TextRows::Next(std::span<Value> row) {
    if (!records_->Next()) return false;
    ++current_;
    for (std::size_t k = 0; k < wanted_.size(); ++k) ReadValue(wanted_[k], row[k]);
    if (records_->HasSurplus() && !wanted_.empty()) {
        row[wanted_.size() - 1].SetFailure("More values than columns in " + Place() + ": " +
                                           std::to_string(records_->FieldCount()) + " instead of " +
                                           std::to_string(look_->usualFields));
    }
    return true;
}

void TextRows::ReadValue(std::size_t column, Value& value) {
    const std::span<const Field> fields = records_->Fields();
    if (column >= fields.size()) return value.SetNull();
    const Field& field = fields[column];
    const bool isPlain = field.shape == FieldShape::Plain;
    const std::string_view text = isPlain ? field.Raw() : records_->TextOf(field, scratch_);
    const CellFault fault = ReadCell(look_->rules[column], format_, text, !isPlain, value);
    if (fault == CellFault::None) return;
    value.SetFailure(std::string(FaultWords(fault)) + " in " + Place() + ", column '" + look_->columns[column].name +
                     "'");
}

std::string TextRows::Place() const {
    return "'" + fileName_ + "', record " + std::to_string(current_);
}

}  // namespace varnel::text
