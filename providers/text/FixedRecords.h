// Records of fields of fixed widths, one record a line. Widths count characters; a line may end early.
#pragma once

#include <string>
#include <vector>

#include "providers/text/Records.h"

namespace varnel::text {

class FixedRecords : public Records {
public:
    /// widths: characters of each field, at least 1.
    FixedRecords(RecordBuffer buffer, std::vector<std::size_t> widths);

    /// Blanks behind a field's text are filling and left out. Text behind the last field is one surplus field.
    bool Next() override;
    std::string_view TextOf(const Field& field, std::string& scratch) const override;

private:
    bool FindLine(std::string_view& line);
    void Cut(std::string_view line);

    std::vector<std::size_t> widths_;
};

}  // namespace varnel::text
