#include "repository/model/RowFields.h"

#include "ado/types/ValueConvert.h"
#include "ado/types/ValueText.h"
#include "platform/Rounding.h"

namespace varnel {

template <class Convert>
auto RowFields::Read(std::string_view column, Convert&& convert) const {
    try {
        return convert(rows_.Fields(column).GetValue());
    } catch (const Error& error) {
        const std::string place =
            "column " + std::string(column) + " of table " + table_ + ", session " + std::to_string(sessionId_);
        throw Error(error.kind, place, std::string(error.what()) + " (" + place + ")");
    }
}

std::string RowFields::RequiredText(std::string_view column) const {
    return Read(column, [](const Value& value) { return DefaultText(value); });
}

std::string RowFields::TextOr(std::string_view column, std::string_view otherwise) const {
    return Read(column,
                [&](const Value& value) { return value.IsNull() ? std::string(otherwise) : DefaultText(value); });
}

std::int16_t RowFields::Int16(std::string_view column) const {
    return Read(column, [](const Value& value) { return ToInt16(ToDouble(value)); });
}

std::int32_t RowFields::Int32(std::string_view column) const {
    return Read(column, [](const Value& value) { return ToInt32(ToDouble(value)); });
}

double RowFields::Number(std::string_view column) const {
    return Read(column, [](const Value& value) { return ToDouble(value); });
}

bool RowFields::Boolean(std::string_view column) const {
    return Read(column, [](const Value& value) { return ToBoolean(value); });
}

bool RowFields::IsOne(std::string_view column) const {
    return Read(column, [](const Value& value) { return !value.IsNull() && ToDouble(value) == 1.0; });
}

}  // namespace varnel
