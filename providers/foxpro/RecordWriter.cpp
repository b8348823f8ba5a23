#include "providers/foxpro/RecordWriter.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <utility>

#include "ado/types/ValueConvert.h"
#include "platform/Error.h"
#include "providers/foxpro/DateField.h"
#include "providers/foxpro/NumberField.h"
#include "providers/foxpro/StoredNumbers.h"

namespace varnel::foxpro {
namespace {

[[noreturn]] void Refuse(const std::string& why) {
    throw Error(ErrorKind::Constraint, "", why);
}

std::string_view AsText(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

void Copy(std::string_view bytes, std::span<std::uint8_t> into) {
    if (!bytes.empty()) std::memcpy(into.data(), bytes.data(), bytes.size());
}

void PutDigits(std::span<std::uint8_t> into, int number) {
    for (std::size_t k = into.size(); k-- > 0; number /= 10) into[k] = static_cast<std::uint8_t>('0' + number % 10);
}

/// YYYYMMDD.
void PutDate(std::span<std::uint8_t> into, DateTime moment) {
    const CivilTime civil = ToCivil(moment);
    if (civil.year < 1 || civil.year > 9999) Refuse("the date is out of range");
    PutDigits(into.first(4), civil.year);
    PutDigits(into.subspan(4, 2), civil.month);
    PutDigits(into.subspan(6, 2), civil.day);
}

/// Julian day, milliseconds. What is less than a millisecond off a whole second comes from a floating-point date.
void PutMoment(std::span<std::uint8_t> into, DateTime moment) {
    constexpr std::int64_t kSlack = 500;
    std::int64_t day = moment.days + kJulianDayZero;
    std::int64_t seconds = (moment.micros + kMicrosPerSecond / 2) / kMicrosPerSecond;
    if (std::abs(seconds * kMicrosPerSecond - moment.micros) > kSlack) {
        Refuse("the fraction of a second would be lost");
    }
    if (seconds == 86'400) seconds = 0, ++day;
    if (day < kFirstJulianDay || day > kLastJulianDay) Refuse("the date is out of range");
    PutLittle(into.first(4), static_cast<std::uint64_t>(day));
    PutLittle(into.subspan(4, 4), static_cast<std::uint64_t>(seconds * 1000));
}

}  // namespace

RecordWriter::RecordWriter(DbfHeader& header, MemoFile* memo, std::string fileName)
    : header_(header),
      memo_(memo),
      fileName_(std::move(fileName)),
      codePage_(CodePage::IsSupported(header.codePage) ? header.codePage : 1252),
      record_(header.recordBytes),
      blank_(header.recordBytes, std::uint8_t{' '}),
      nextMarks_(header.fields.size()) {
    for (const DbfField& field : header_.fields) {
        const std::span<std::uint8_t> place = std::span(blank_).subspan(field.offset, field.length);
        columns_.push_back(ColumnOfField(field, header_.dialect, field.name));
        kinds_.push_back(KindOfField(field, header_.dialect));
        if (kinds_.back() == FieldKind::Varying) place.back() = 0;
        if (!IsBlankWithSpaces(kinds_.back(), field)) std::fill(place.begin(), place.end(), std::uint8_t{0});
    }
    if (!header_.nullFlags) return;
    const DbfField& flags = *header_.nullFlags;
    std::fill_n(blank_.begin() + static_cast<std::ptrdiff_t>(flags.offset), flags.length, std::uint8_t{0});
}

/// Numbers and references that are not written as text are empty as zeros.
bool RecordWriter::IsBlankWithSpaces(FieldKind kind, const DbfField& field) {
    switch (kind) {
        case FieldKind::Text:
        case FieldKind::Varying:
        case FieldKind::Number:
        case FieldKind::Date:
        case FieldKind::Logical:
            return true;
        case FieldKind::Memo:
            return field.length == 10;
        default:
            return false;
    }
}

void RecordWriter::Mark() {
    memoMark_ = memo_ != nullptr ? memo_->NextBlock() : 0;
    for (std::size_t k = 0; k < nextMarks_.size(); ++k) nextMarks_[k] = header_.fields[k].nextValue;
}

void RecordWriter::Undo() noexcept {
    if (memo_ != nullptr) memo_->ReturnTo(memoMark_);
    for (std::size_t k = 0; k < nextMarks_.size(); ++k) header_.fields[k].nextValue = nextMarks_[k];
}

std::span<const std::uint8_t> RecordWriter::NewRecord(std::span<const Value> values,
                                                      const std::vector<bool>& assigned) {
    Mark();
    UndoGuard guard(*this);
    record_ = blank_;
    for (std::size_t k = 0; k < header_.fields.size(); ++k) {
        if (header_.fields[k].autoIncrement) {
            PutAutoIncrement(k, record_, assigned[k]);
        } else if (assigned[k]) {
            Put(k, record_, values[k]);
        } else {
            PutUnassigned(k, record_);
        }
    }
    guard.Keep();
    return record_;
}

void RecordWriter::ChangeRecord(std::span<std::uint8_t> record, std::span<const Value> values,
                                const std::vector<bool>& assigned) {
    Mark();
    UndoGuard guard(*this);
    for (std::size_t k = 0; k < header_.fields.size(); ++k) {
        if (!assigned[k]) continue;
        if (header_.fields[k].autoIncrement) RefuseAutoIncrement(k);
        PutBlank(k, record);
        Put(k, record, values[k]);
    }
    guard.Keep();
}

void RecordWriter::RefuseAutoIncrement(std::size_t k) const {
    throw Error(ErrorKind::Constraint, fileName_,
                "Field '" + header_.fields[k].name + "' of '" + fileName_ + "' is given its values by the table");
}

void RecordWriter::PutAutoIncrement(std::size_t k, std::span<std::uint8_t> record, bool isAssigned) {
    DbfField& field = header_.fields[k];
    if (isAssigned) RefuseAutoIncrement(k);
    PutLittle(record.subspan(field.offset, field.length), field.nextValue);
    field.nextValue += field.step;
}

void RecordWriter::PutBlank(std::size_t k, std::span<std::uint8_t> record) const {
    const DbfField& field = header_.fields[k];
    std::copy_n(blank_.begin() + static_cast<std::ptrdiff_t>(field.offset), field.length,
                record.begin() + static_cast<std::ptrdiff_t>(field.offset));
}

/// Null where that can be; else a number is 0, a logical false, everything else empty.
void RecordWriter::PutUnassigned(std::size_t k, std::span<std::uint8_t> record) {
    const DbfField& field = header_.fields[k];
    if (field.nullBit != kNoBit) return PutNull(field, record);
    if (kinds_[k] == FieldKind::Varying) SetBit(field.varLengthBit, record, true);
    if (header_.dialect != DbfDialect::VisualFoxPro) return;
    if (kinds_[k] == FieldKind::Number) PutNumber(field, record.subspan(field.offset, field.length), Decimal());
    if (kinds_[k] == FieldKind::Logical) record[field.offset] = 'F';
}

void RecordWriter::PutNull(const DbfField& field, std::span<std::uint8_t> record) const {
    SetBit(field.nullBit, record, true);
    if (field.varLengthBit != kNoBit) SetBit(field.varLengthBit, record, true);
}

void RecordWriter::SetBit(int bit, std::span<std::uint8_t> record, bool isSet) const {
    if (bit == kNoBit) return;
    const auto place = static_cast<std::size_t>(bit);
    std::uint8_t& byte = record[header_.nullFlags->offset + place / 8];
    const auto mask = static_cast<std::uint8_t>(1u << (place % 8));
    byte = static_cast<std::uint8_t>(isSet ? byte | mask : byte & ~mask);
}

/// The place of the field is blank.
void RecordWriter::Put(std::size_t k, std::span<std::uint8_t> record, const Value& value) {
    const DbfField& field = header_.fields[k];
    try {
        PutValue(k, record, value);
    } catch (const Error& refused) {
        throw Error(refused.kind, fileName_ + ", column " + field.name,
                    "Field '" + field.name + "' of '" + fileName_ + "': " + refused.what());
    }
}

void RecordWriter::PutValue(std::size_t k, std::span<std::uint8_t> record, const Value& value) {
    const DbfField& field = header_.fields[k];
    if (value.IsNull()) {
        if (field.nullBit != kNoBit) return PutNull(field, record);
        const bool isEmptyDate = kinds_[k] == FieldKind::Date || kinds_[k] == FieldKind::Moment;
        if (!isEmptyDate) Refuse("it does not accept null values");
        return;
    }
    SetBit(field.nullBit, record, false);
    const Value* stored = &value;
    if (NeedsConversion(k, value)) {
        ConvertValue(value, columns_[k].type, converted_);
        stored = &converted_;
    }
    PutStored(k, record, *stored);
}

/// What is of the column's kind already is stored as it is.
bool RecordWriter::NeedsConversion(std::size_t k, const Value& value) const {
    switch (columns_[k].type) {
        case adChar:
        case adVarChar:
        case adLongVarChar:
            return value.Kind() != ValueKind::Text;
        case adNumeric:
            return value.Kind() != ValueKind::Decimal;
        case adDouble:
            return value.Kind() != ValueKind::Double;
        case adCurrency:
            return value.Kind() != ValueKind::Currency;
        case adBoolean:
            return value.Kind() != ValueKind::Boolean;
        case adBinary:
        case adVarBinary:
        case adLongVarBinary:
            return value.Kind() != ValueKind::Bytes;
        case adDBTimeStamp:
            return value.Kind() != ValueKind::DateTime;
        default:
            return true;
    }
}

void RecordWriter::PutStored(std::size_t k, std::span<std::uint8_t> record, const Value& value) {
    const DbfField& field = header_.fields[k];
    const std::span<std::uint8_t> into = record.subspan(field.offset, field.length);
    switch (kinds_[k]) {
        case FieldKind::Text:
            return Copy(FittingBytes(field, value), into);
        case FieldKind::Varying:
            return PutVarying(field, record, FittingBytes(field, value));
        case FieldKind::Number:
            return PutNumber(field, into, value.AsDecimal());
        case FieldKind::Date:
            return PutDate(into, value.AsDateTime());
        case FieldKind::Moment:
            return PutMoment(into, value.AsDateTime());
        case FieldKind::Logical:
            into[0] = value.AsBoolean() ? 'T' : 'F';
            return;
        case FieldKind::Integer:
            return PutLittle(into, static_cast<std::uint64_t>(value.AsInteger()));
        case FieldKind::Double:
            if (!std::isfinite(value.AsDouble())) Refuse("the value is not a number");
            return PutLittle(into, std::bit_cast<std::uint64_t>(value.AsDouble()));
        case FieldKind::Currency:
            return PutLittle(into, static_cast<std::uint64_t>(value.AsCurrency()));
        case FieldKind::Memo:
            return PutMemo(field, into, BytesOf(value));
        default:
            Refuse("fields of its type are not written");
    }
}

/// Texts in the table's code page. Valid until the next call.
std::string_view RecordWriter::BytesOf(const Value& value) {
    if (value.Kind() == ValueKind::Bytes) return AsText(value.AsBytes());
    scratch_.clear();
    codePage_.Encode(scratch_, value.AsText());
    return scratch_;
}

std::string_view RecordWriter::FittingBytes(const DbfField& field, const Value& value) {
    const std::string_view bytes = BytesOf(value);
    if (bytes.size() > field.length) {
        Refuse("the value has " + std::to_string(bytes.size()) + " bytes, the field holds " +
               std::to_string(field.length));
    }
    return bytes;
}

/// Shorter than the field: the last byte is the length, which the field's bit says.
void RecordWriter::PutVarying(const DbfField& field, std::span<std::uint8_t> record, std::string_view bytes) {
    const std::span<std::uint8_t> into = record.subspan(field.offset, field.length);
    const bool fills = bytes.size() == into.size();
    std::fill(into.begin(), into.end(), std::uint8_t{' '});
    Copy(bytes, into);
    if (!fills) into.back() = static_cast<std::uint8_t>(bytes.size());
    SetBit(field.varLengthBit, record, !fills);
}

void RecordWriter::PutMemo(const DbfField& field, std::span<std::uint8_t> into, std::string_view bytes) {
    if (bytes.empty()) return;
    if (memo_ == nullptr) Refuse("the memo file is missing");
    const std::uint32_t block = memo_->Append(bytes, field.type != 'G');
    if (into.size() == 4) return PutLittle(into, block);
    const std::string digits = std::to_string(block);
    Copy(digits, into.last(digits.size()));
}

}  // namespace varnel::foxpro
