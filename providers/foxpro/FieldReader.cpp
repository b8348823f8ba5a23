#include "providers/foxpro/FieldReader.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>
#include <utility>

#include "providers/foxpro/DateField.h"
#include "providers/foxpro/NumberField.h"
#include "providers/foxpro/StoredNumbers.h"

namespace varnel::foxpro {
namespace {

std::string_view AsText(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::span<const std::uint8_t> AsBytes(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

CellFault ReadLogical(std::uint8_t byte, Value& value) {
    constexpr std::string_view kTrue = "TtYy", kFalse{"FfNn ?\0", 7};
    const char letter = static_cast<char>(byte);
    const bool isTrue = kTrue.find(letter) != std::string_view::npos;
    if (!isTrue && kFalse.find(letter) == std::string_view::npos) return CellFault::NotALogical;
    value.SetBoolean(isTrue);
    return CellFault::None;
}

CellFault ReadNumber(std::string_view text, Value& value) {
    Decimal number;
    const CellFault fault = ReadNumberField(text, number);
    if (fault == CellFault::None) value.SetDecimal(number);
    return fault;
}

CellFault ReadDouble(std::uint64_t bits, Value& value) {
    constexpr std::uint64_t kBlank = 0x2020'2020'2020'2020;  // as some writers leave it
    const double number = bits == kBlank ? 0.0 : std::bit_cast<double>(bits);
    if (!std::isfinite(number)) return CellFault::NotANumber;
    value.SetDouble(number);
    return CellFault::None;
}

CellFault SetMoment(CellFault fault, const std::optional<DateTime>& moment, Value& value) {
    if (moment) value.SetDateTime(*moment);
    return fault;
}

/// Big-endian, the sign bit inverted.
std::int64_t DBase7Integer(std::span<const std::uint8_t> bytes) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(BigNumber(bytes, 4)) ^ 0x8000'0000u);
}

/// Big-endian; the sign bit inverted for positive numbers, every bit for negative ones.
std::uint64_t DBase7DoubleBits(std::span<const std::uint8_t> bytes) {
    constexpr std::uint64_t kSign = std::uint64_t{1} << 63;
    const std::uint64_t stored = BigNumber(bytes, 8);
    if (stored == 0) return 0;
    return (stored & kSign) != 0 ? stored ^ kSign : ~stored;
}

/// The block that a memo field names: 4 bytes little-endian, or 10 digits. False when it is neither.
bool ReadReference(std::string_view bytes, std::uint64_t& block) {
    block = 0;
    if (bytes.size() == 4) {
        block = LittleU32(AsBytes(bytes));
        return true;
    }
    Decimal number;
    if (bytes.size() > 10 || ReadNumberField(bytes, number) != CellFault::None) return false;
    if (number.scale != 0 || number.negative || number.magnitude > 0xFFFF'FFFFu) return false;
    block = static_cast<std::uint64_t>(number.magnitude);
    return true;
}

/// Takes the pieces of a text and appends them decoded; a character may be cut between two pieces.
class TextPieces {
public:
    TextPieces(const CodePage& codePage, std::string& out) : codePage_(codePage), out_(out) {}
    void Add(std::string_view piece) {
        if (bad_) return;
        constexpr std::size_t kLongestCharacter = 4;
        if (!held_.empty()) held_.append(piece), piece = held_;
        const std::string_view rest = piece.substr(codePage_.DecodeSome(out_, piece));
        bad_ = rest.size() >= kLongestCharacter;
        held_ = std::string(rest);
    }
    bool IsWhole() const { return !bad_ && held_.empty(); }

private:
    const CodePage& codePage_;
    std::string& out_;
    std::string held_;
    bool bad_ = false;
};

}  // namespace

std::string_view FaultWords(CellFault fault) {
    switch (fault) {
        case CellFault::Overflow:
            return "Numeric overflow";
        case CellFault::NotANumber:
            return "Not a number";
        case CellFault::NotADate:
            return "Not a date";
        case CellFault::NotALogical:
            return "Neither true nor false";
        case CellFault::Damaged:
            return "A stored length that cannot be";
        case CellFault::NotText:
            return "Bytes that have no meaning in the table's code page";
        case CellFault::NoMemoFile:
            return "Memo file is missing";
        case CellFault::BadMemo:
            return "Memo file is invalid";
        default:
            return "A type of field that is not read here";
    }
}

FieldReader::FieldReader(const DbfHeader& header, const MemoReader* memo)
    : header_(header), memo_(memo), codePage_(CodePage::IsSupported(header.codePage) ? header.codePage : 1252) {}

bool FieldReader::BitIsSet(int bit, std::span<const std::uint8_t> record) const {
    const auto place = static_cast<std::size_t>(bit);
    return (record[header_.nullFlags->offset + place / 8] >> (place % 8) & 1) != 0;
}

CellFault FieldReader::ReadText(std::string_view bytes, bool binary, Value& value) const {
    if (binary) {
        value.SetBytes(AsBytes(bytes));
        return CellFault::None;
    }
    if (codePage_.DecodeSome(value.StartText(), bytes) == bytes.size()) return CellFault::None;
    return CellFault::NotText;
}

/// The last byte holds the length, unless the field's bit says that the value fills it.
CellFault FieldReader::ReadVarying(const DbfField& field, std::span<const std::uint8_t> record, Value& value) const {
    std::string_view bytes = AsText(record.subspan(field.offset, field.length));
    if (field.varLengthBit != kNoBit && BitIsSet(field.varLengthBit, record)) {
        const std::size_t count = bytes.empty() ? 0 : static_cast<unsigned char>(bytes.back());
        if (count >= bytes.size()) return CellFault::Damaged;
        bytes = bytes.substr(0, count);
    }
    return ReadText(bytes, field.type == 'Q' || field.binary, value);
}

CellFault FieldReader::ReadMemo(const DbfField& field, std::string_view bytes, Value& value) const {
    std::uint64_t block = 0;
    if (!ReadReference(bytes, block)) return CellFault::BadMemo;
    const bool isText = field.type == 'M' && !(header_.dialect == DbfDialect::VisualFoxPro && field.binary);
    std::string& out = isText ? value.StartText() : value.StartBytes();
    if (block == 0) return CellFault::None;
    if (memo_ == nullptr) return CellFault::NoMemoFile;
    TextPieces pieces(codePage_, out);
    const auto take = [&](std::string_view piece) {
        if (isText) return pieces.Add(piece);
        out.append(piece);
    };
    if (!memo_->Read(block, std::cref(take))) return CellFault::BadMemo;
    return pieces.IsWhole() ? CellFault::None : CellFault::NotText;
}

std::uint64_t FieldReader::MemoBlock(const DbfField& field, std::span<const std::uint8_t> record) const {
    std::uint64_t block = 0;
    const bool isNull = field.nullBit != kNoBit && BitIsSet(field.nullBit, record);
    return !isNull && ReadReference(AsText(record.subspan(field.offset, field.length)), block) ? block : 0;
}

CellFault FieldReader::Read(const DbfField& field, std::span<const std::uint8_t> record, Value& value) const {
    value.SetNull();
    if (field.nullBit != kNoBit && BitIsSet(field.nullBit, record)) return CellFault::None;
    const CellFault fault = ReadStored(field, record, value);
    if (fault != CellFault::None) value.SetNull();
    return fault;
}

CellFault FieldReader::ReadStored(const DbfField& field, std::span<const std::uint8_t> record, Value& value) const {
    const std::span<const std::uint8_t> bytes = record.subspan(field.offset, field.length);
    std::optional<DateTime> moment;
    switch (KindOfField(field, header_.dialect)) {
        case FieldKind::Text:
            return ReadText(AsText(bytes), field.binary, value);
        case FieldKind::Varying:
            return ReadVarying(field, record, value);
        case FieldKind::Number:
            return ReadNumber(AsText(bytes), value);
        case FieldKind::Date:
            return SetMoment(ReadDateField(AsText(bytes), moment), moment, value);
        case FieldKind::Moment:
            return SetMoment(ReadMomentField(bytes, moment), moment, value);
        case FieldKind::Logical:
            return ReadLogical(bytes[0], value);
        case FieldKind::Integer:
            value.SetInteger(static_cast<std::int32_t>(LittleU32(bytes)));
            return CellFault::None;
        case FieldKind::Double:
            return ReadDouble(LittleU64(bytes), value);
        case FieldKind::Currency:
            value.SetCurrency(static_cast<std::int64_t>(LittleU64(bytes)));
            return CellFault::None;
        case FieldKind::Memo:
            return ReadMemo(field, AsText(bytes), value);
        case FieldKind::DBase7Integer:
            value.SetInteger(DBase7Integer(bytes));
            return CellFault::None;
        case FieldKind::DBase7Double:
            return ReadDouble(DBase7DoubleBits(bytes), value);
        default:
            return CellFault::Unsupported;
    }
}

}  // namespace varnel::foxpro
