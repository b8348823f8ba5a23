// The values of fields, as key expressions see them.
#include <algorithm>
#include <bit>
#include <charconv>
#include <string_view>

#include "platform/DateTime.h"
#include "providers/foxpro/KeyTerm.h"

namespace varnel::foxpro {
namespace {

/// Julian day number of 1899-12-30.
constexpr std::int64_t kJulianDayZero = 2'415'019;
constexpr double kMillisPerDay = 86'400'000.0;

std::uint64_t Little(std::span<const std::uint8_t> bytes) {
    std::uint64_t number = 0;
    for (std::size_t k = bytes.size(); k-- > 0;) number = number << 8 | bytes[k];
    return number;
}

std::string_view AsText(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// The digits of a field; 0 when it holds none.
double NumberOf(std::string_view text) {
    const std::size_t start = text.find_first_not_of(' ');
    if (start == std::string_view::npos) return 0;
    text.remove_prefix(start);
    if (text.front() == '+') text.remove_prefix(1);
    double number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

/// The Julian day of YYYYMMDD; 0 for what is no date.
double JulianDayOf(std::string_view text) {
    const auto part = [&](std::size_t at, std::size_t count) {
        int number = 0;
        std::from_chars(text.data() + at, text.data() + at + count, number);
        return number;
    };
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (text.size() != 8 || !std::all_of(text.begin(), text.end(), isDigit)) return 0;
    CivilTime civil;
    civil.year = part(0, 4), civil.month = part(4, 2), civil.day = part(6, 2);
    if (!IsRealCivil(civil)) return 0;
    return static_cast<double>(FromCivil(civil).days + kJulianDayZero);
}

class StoredField : public KeyTerm {
public:
    StoredField(KeySort sort, const DbfHeader& header, const DbfField& field)
        : KeyTerm(sort), header_(header), field_(field) {}

    void Evaluate(const KeyRecord& record, KeyValue& value) const override {
        value.isNull = BitIsSet(field_.nullBit, record);
        std::span<const std::uint8_t> bytes = record.bytes.subspan(field_.offset, field_.length);
        switch (Sort()) {
            case KeySort::Text:
                return SetText(bytes, record, value);
            case KeySort::Number:
                value.number = field_.type == 'B' ? std::bit_cast<double>(Little(bytes)) : NumberOf(AsText(bytes));
                return;
            case KeySort::Integer:
                value.exact = static_cast<std::int32_t>(Little(bytes));
                value.number = static_cast<double>(value.exact);
                return;
            case KeySort::Currency:
                value.exact = static_cast<std::int64_t>(Little(bytes));
                value.number = static_cast<double>(value.exact) / 10'000;
                return;
            case KeySort::Date:
                value.number = JulianDayOf(AsText(bytes));
                return;
            case KeySort::Moment:
                value.number = static_cast<double>(Little(bytes.first(4))) +
                               static_cast<double>(Little(bytes.subspan(4))) / kMillisPerDay;
                return;
            case KeySort::Logical:
                value.truth = std::string_view("TtYy").find(static_cast<char>(bytes[0])) != std::string_view::npos;
                return;
        }
    }

private:
    bool BitIsSet(int bit, const KeyRecord& record) const {
        if (bit == kNoBit || !header_.nullFlags) return false;
        const std::size_t at = header_.nullFlags->offset + static_cast<std::size_t>(bit) / 8;
        return (record.bytes[at] >> (bit % 8) & 1) != 0;
    }

    void SetText(std::span<const std::uint8_t> bytes, const KeyRecord& record, KeyValue& value) const {
        value.text.assign(AsText(bytes));
        if (!BitIsSet(field_.varLengthBit, record)) return;
        const std::size_t length = std::min<std::size_t>(bytes.back(), bytes.size() - 1);
        value.text.resize(length);
        value.text.resize(bytes.size(), ' ');
    }

    const DbfHeader& header_;
    DbfField field_;
};

/// What the bytes of a field must be so that the term above never reads beyond them.
bool FitsRecord(const DbfHeader& header, const DbfField& field, std::uint32_t bytes) {
    const int bits = std::max(field.nullBit, field.varLengthBit) + 1;
    const bool hasBits = bits == 0 || (header.nullFlags && header.nullFlags->length * 8 >= static_cast<unsigned>(bits));
    return field.length == bytes && bytes > 0 && hasBits && field.offset + field.length <= header.recordBytes &&
           (!header.nullFlags || header.nullFlags->offset + header.nullFlags->length <= header.recordBytes);
}

}  // namespace

KeyTermPtr FieldTerm(const DbfHeader& header, const DbfField& field) {
    struct Letter {
        char type;
        KeySort sort;
        std::uint32_t bytes;  // 0: any
    };
    static constexpr Letter kLetters[] = {
        {'C', KeySort::Text, 0},   {'V', KeySort::Text, 0},    {'N', KeySort::Number, 0},   {'F', KeySort::Number, 0},
        {'B', KeySort::Number, 8}, {'I', KeySort::Integer, 4}, {'Y', KeySort::Currency, 8}, {'D', KeySort::Date, 8},
        {'T', KeySort::Moment, 8}, {'L', KeySort::Logical, 1}};
    for (const Letter& letter : kLetters) {
        if (letter.type != field.type) continue;
        if (!FitsRecord(header, field, letter.bytes == 0 ? field.length : letter.bytes)) return nullptr;
        return std::make_unique<StoredField>(letter.sort, header, field);
    }
    return nullptr;
}

}  // namespace varnel::foxpro
