#include "providers/mysql/MySqlParameters.h"

#include <cmath>
#include <cstring>

#include "ado/types/ValueText.h"
#include "platform/Error.h"

namespace varnel::mysql {
namespace {

void Point(MYSQL_BIND& bind, enum_field_types type, void* buffer) {
    bind.buffer_type = type;
    bind.buffer = buffer;
}

void RefuseNonFinite(double number) {
    if (!std::isfinite(number)) throw Error(ErrorKind::Conversion, "", "Overflow");
}

}  // namespace

void MySqlParameters::Take(std::span<const Value* const> values) {
    for (std::size_t k = 0; k < cells_.size(); ++k) {
        std::memset(&binds_[k], 0, sizeof binds_[k]);
        cells_[k].content = {};
        cells_[k].length = 0;
        binds_[k].length = &cells_[k].length;
        TakeValue(*values[k], cells_[k], binds_[k]);
    }
}

void MySqlParameters::TakeValue(const Value& value, Cell& cell, MYSQL_BIND& bind) {
    switch (value.Kind()) {
        case ValueKind::Null:
            return Point(bind, MYSQL_TYPE_NULL, nullptr);
        case ValueKind::Boolean:
            cell.integer = value.AsBoolean() ? 1 : 0;
            return Point(bind, MYSQL_TYPE_LONGLONG, &cell.integer);
        case ValueKind::Integer:
            cell.integer = value.AsInteger();
            return Point(bind, MYSQL_TYPE_LONGLONG, &cell.integer);
        case ValueKind::Single:
            RefuseNonFinite(cell.single = value.AsSingle());
            return Point(bind, MYSQL_TYPE_FLOAT, &cell.single);
        case ValueKind::Double:
            RefuseNonFinite(cell.real = value.AsDouble());
            return Point(bind, MYSQL_TYPE_DOUBLE, &cell.real);
        case ValueKind::Currency:
        case ValueKind::Decimal:
            cell.text.clear();
            AppendDefaultText(cell.text, value);
            return TakeContent(cell.text, MYSQL_TYPE_NEWDECIMAL, cell, bind);
        case ValueKind::Guid:
            cell.text.clear();
            AppendGuidText(cell.text, value.AsGuid());
            return TakeContent(cell.text, MYSQL_TYPE_STRING, cell, bind);
        case ValueKind::DateTime:
            return TakeMoment(value.AsDateTime(), cell, bind);
        case ValueKind::Text:
            return TakeContent(value.AsText(), MYSQL_TYPE_STRING, cell, bind);
        case ValueKind::Bytes: {
            const auto bytes = value.AsBytes();
            return TakeContent({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, MYSQL_TYPE_BLOB, cell,
                               bind);
        }
        case ValueKind::Failure:
            throw Error(ErrorKind::Conversion, "", std::string(value.FailureText()));
    }
}

/// A time on day 0 is a pure time of day only for a TIME column; sent as a full moment it suits every column, since the
/// server takes the part that the column holds.
void MySqlParameters::TakeMoment(DateTime moment, Cell& cell, MYSQL_BIND& bind) {
    const CivilTime civil = ToCivil(moment);
    cell.moment = MYSQL_TIME{};
    cell.moment.year = static_cast<unsigned>(civil.year);
    cell.moment.month = static_cast<unsigned>(civil.month);
    cell.moment.day = static_cast<unsigned>(civil.day);
    cell.moment.hour = static_cast<unsigned>(civil.hour);
    cell.moment.minute = static_cast<unsigned>(civil.minute);
    cell.moment.second = static_cast<unsigned>(civil.second);
    cell.moment.second_part = static_cast<unsigned long>(civil.micros);
    cell.moment.time_type = MYSQL_TIMESTAMP_DATETIME;
    Point(bind, MYSQL_TYPE_DATETIME, &cell.moment);
}

void MySqlParameters::TakeContent(std::string_view content, enum_field_types type, Cell& cell, MYSQL_BIND& bind) {
    cell.content = content;
    cell.length = content.size();
    if (content.data() == nullptr) content = "";           // to the library no buffer is Null
    Point(bind, type, const_cast<char*>(content.data()));  // which only reads it
    bind.buffer_length = content.size();
}

}  // namespace varnel::mysql
