#include "providers/access/CellDecoder.h"

#include <bit>
#include <cmath>

#include "platform/Utf8.h"
#include "providers/access/ExtendedDate.h"
#include "providers/access/FixedLength.h"
#include "providers/access/UnicodeText.h"

namespace varnel::access {
namespace {

constexpr std::uint8_t kCalculatedFlags = 0xC0;
constexpr std::size_t kEnvelopeLengthAt = 16, kEnvelopeSize = 20;  // what stands before a calculated value
constexpr std::uint8_t kNegativeSign = 0x80;
constexpr int kWesternPage = 1252;

/// u32, u16, u16, each low byte first, then 8 bytes; the text form shows all of them high byte first.
GuidBytes GuidOf(std::span<const std::uint8_t, 16> b) {
    return {b[3], b[2], b[1], b[0], b[5], b[4], b[7], b[6], b[8], b[9], b[10], b[11], b[12], b[13], b[14], b[15]};
}

Fault DecodeDate(double days, Value& value) {
    if (!(days > kFirstDay - 1.0 && days < kLastDay + 1.0)) return "it is no date of the years 100 to 9999";
    value.SetDateTime(FromAutomationDate(days));
    return nullptr;
}

/// Sign, then four u32 of which the first is the highest.
Fault DecodeNumeric(std::span<const std::uint8_t, 17> b, std::uint8_t scale, Value& value) {
    static const UInt128 kLimit = [] {
        UInt128 limit = 1;
        for (int k = 0; k < kMaxDecimalDigits; ++k) limit *= 10;
        return limit;
    }();
    Decimal number;
    for (std::size_t k = 0; k < 4; ++k) number.magnitude = number.magnitude << 32 | LoadU32(b, 1 + 4 * k);
    if (number.magnitude >= kLimit || scale > kMaxDecimalDigits) return "it has more than 38 digits";
    number.scale = scale;
    number.negative = (b[0] & kNegativeSign) != 0 && number.magnitude != 0;
    value.SetDecimal(number);
    return nullptr;
}

Fault AppendBytes(Bytes piece, std::string& out) {
    out.append(reinterpret_cast<const char*>(piece.data()), piece.size());
    return nullptr;
}

Bytes BytesOf(const std::string& text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace

CellPlan PlanCell(const Column& column) {
    CellPlan plan;
    plan.type = column.type;
    plan.fixed = column.IsFixed();
    plan.calculated = (column.moreFlags & kCalculatedFlags) == kCalculatedFlags;
    plan.id = column.id;
    plan.place = plan.fixed ? column.fixedOffset : column.variableNumber;
    plan.size = FixedLength(column.type);
    if (plan.fixed && plan.size == 0) plan.size = column.length;
    if (plan.calculated) plan.size = plan.fixed ? column.length : 0;
    plan.scale = column.scale;
    return plan;
}

Fault CellDecoder::Decode(const CellPlan& plan, RowView& row, Value& value) {
    if (plan.type == ColumnType::Boolean && !plan.calculated) {
        value.SetBoolean(row.Has(plan.id));
        return nullptr;
    }
    if (!row.Has(plan.id)) {
        value.SetNull();
        return nullptr;
    }
    const std::optional<Bytes> cell = plan.fixed ? row.Fixed(plan.place, plan.size) : row.Variable(plan.place);
    if (!cell) return "the row is damaged";
    if (plan.size != 0 && cell->size() != plan.size) return "its stored value has the wrong size";
    return plan.calculated ? DecodeCalculated(plan, *cell, value) : DecodeCell(plan, *cell, value);
}

Fault CellDecoder::DecodeCell(const CellPlan& plan, Bytes cell, Value& value) {
    switch (plan.type) {
        case ColumnType::Boolean:  // calculated
            value.SetBoolean(!cell.empty() && cell[0] != 0);
            return nullptr;
        case ColumnType::Byte:
            value.SetInteger(cell[0]);
            return nullptr;
        case ColumnType::Integer:
            value.SetInteger(static_cast<std::int16_t>(LoadU16(cell, 0)));
            return nullptr;
        case ColumnType::Long:
        case ColumnType::Complex:
            value.SetInteger(static_cast<std::int32_t>(LoadU32(cell, 0)));
            return nullptr;
        case ColumnType::BigInt:
            value.SetInteger(static_cast<std::int64_t>(LoadU64(cell, 0)));
            return nullptr;
        case ColumnType::Currency:
            value.SetCurrency(static_cast<std::int64_t>(LoadU64(cell, 0)));
            return nullptr;
        case ColumnType::Single:
            value.SetSingle(std::bit_cast<float>(LoadU32(cell, 0)));
            return nullptr;
        case ColumnType::Double:
            value.SetDouble(std::bit_cast<double>(LoadU64(cell, 0)));
            return nullptr;
        case ColumnType::Date:
            return DecodeDate(std::bit_cast<double>(LoadU64(cell, 0)), value);
        case ColumnType::Numeric:
            return DecodeNumeric(cell.first<17>(), plan.scale, value);
        case ColumnType::Guid:
            value.SetGuid(GuidOf(cell.first<16>()));
            return nullptr;
        case ColumnType::Text:
            return AppendText(cell, value.StartText());
        case ColumnType::Memo:
            return DecodeMemo(cell, value);
        case ColumnType::Ole:
            return DecodeOle(cell, value);
        case ColumnType::Binary:
        case ColumnType::FixedBlob:
            value.SetBytes(cell);
            return nullptr;
        case ColumnType::ExtendedDate:
            return DecodeExtendedDate(cell.first<42>(), value);
    }
    return "its type is none that this program knows";
}

Fault CellDecoder::DecodeMemo(Bytes cell, Value& value) {
    std::string& out = value.StartText();
    if (codePage_ == nullptr) {
        UnicodeText text(out);
        const Fault fault = longValues_.Read(cell, [&](Bytes piece) { return text.Feed(piece); });
        return fault != nullptr ? fault : text.Finish();
    }
    // A character of two bytes may be cut by the end of a piece.
    joined_.clear();
    const Fault fault = longValues_.Read(cell, [&](Bytes piece) { return AppendBytes(piece, joined_); });
    return fault != nullptr ? fault : AppendText(BytesOf(joined_), out);
}

Fault CellDecoder::DecodeOle(Bytes cell, Value& value) {
    std::string& out = value.StartBytes();
    return longValues_.Read(cell, [&](Bytes piece) { return AppendBytes(piece, out); });
}

/// The value stands in an envelope; that of a memo or OLE object as a whole in the long value.
Fault CellDecoder::DecodeCalculated(const CellPlan& plan, Bytes cell, Value& value) {
    Bytes stored = cell;
    if (plan.type == ColumnType::Memo || plan.type == ColumnType::Ole) {
        joined_.clear();
        const Fault fault = longValues_.Read(cell, [&](Bytes piece) { return AppendBytes(piece, joined_); });
        if (fault != nullptr) return fault;
        stored = BytesOf(joined_);
    }
    if (stored.size() < kEnvelopeSize) return "the frame of its calculated value is cut short";
    const std::size_t length = LoadU32(stored, kEnvelopeLengthAt);
    if (length > stored.size() - kEnvelopeSize) return "its calculated value is cut short";
    const Bytes inner = stored.subspan(kEnvelopeSize, length);
    if (plan.type == ColumnType::Numeric) return "it is a calculated decimal, which this program cannot read";
    if (plan.type == ColumnType::Memo) return AppendText(inner, value.StartText());
    if (plan.type == ColumnType::Ole) return AppendBytes(inner, value.StartBytes());
    if (const std::size_t size = FixedLength(plan.type); size != 0 && inner.size() != size)
        return "its calculated value has the wrong size";
    return DecodeCell(plan, inner, value);
}

Fault CellDecoder::AppendText(Bytes stored, std::string& out) const {
    if (codePage_ == nullptr) return AppendUnicodeText(stored, out);
    std::string_view text(reinterpret_cast<const char*>(stored.data()), stored.size());
    for (;;) {
        text.remove_prefix(codePage_->DecodeSome(out, text));
        if (text.empty()) return nullptr;
        if (codePage_->Number() != kWesternPage) return "its text has a byte without meaning in the file's code page";
        // The five bytes of this page that are no characters are read as the control characters of their numbers.
        AppendCodePoint(out, static_cast<unsigned char>(text[0]));
        text.remove_prefix(1);
    }
}

}  // namespace varnel::access
