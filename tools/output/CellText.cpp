#include "tools/output/CellText.h"

#include "ado/types/ValueText.h"

namespace varnel::admin {

void AppendCell(std::string& out, const Value& value) {
    if (value.Kind() != ValueKind::DateTime) return AppendDefaultText(out, value);
    if (value.AsDateTime().micros == 0)
        AppendIsoDate(out, value.AsDateTime());
    else
        AppendIsoDateTime(out, value.AsDateTime());
}

}  // namespace varnel::admin
