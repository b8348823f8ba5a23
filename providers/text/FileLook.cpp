#include "providers/text/FileLook.h"

#include <algorithm>
#include <utility>

#include "platform/Error.h"
#include "platform/Utf8.h"
#include "providers/text/ColumnLook.h"
#include "providers/text/OpenRecords.h"

namespace varnel::text {
namespace {

constexpr std::int64_t kMemoCharacters = 536'870'910;
constexpr std::size_t kTextCharacters = 255;

/// Size, precision and scale by which a column of a type is reported.
ColumnInfo InfoOf(std::string name, DataTypeEnum type, std::size_t width) {
    const auto info = [&](std::int64_t size, std::uint8_t precision) {
        return ColumnInfo{std::move(name), type, size, precision, kNotStated, true};
    };
    switch (type) {
        case adBoolean:
            return info(2, kNotStated);
        case adUnsignedTinyInt:
            return info(1, 3);
        case adSmallInt:
            return info(2, 5);
        case adInteger:
            return info(4, 10);
        case adSingle:
            return info(4, 7);
        case adDouble:
            return info(8, 15);
        case adCurrency:
            return info(8, 19);
        case adDate:
            return info(8, kNotStated);
        case adNumeric:
            return info(19, kMaxDecimalDigits);
        case adLongVarWChar:
            return info(kMemoCharacters, kNotStated);
        default:
            return info(static_cast<std::int64_t>(width > 0 ? width : kTextCharacters), kNotStated);
    }
}

/// One reading of a file in one code page.
class Look {
public:
    Look(const std::shared_ptr<const ByteSource>& source, const TextFormat& format, int page, std::size_t bufferBytes)
        : format_(format), records_(OpenRecords(source, format, page, bufferBytes)) {
        if (!format.datePicture.empty()) picture_ = std::make_shared<const DatePicture>(format.datePicture);
        for (const ColumnSpec& column : format.columns) AddColumn(column);
    }

    void Run() {
        if (format_.hasHeader) ReadHeader();
        emptyBefore_ = records_->EmptyLines();
        // Columns that nothing has named are counted off the first records.
        std::int64_t open = 0;
        if (columns_.empty()) open = format_.maxScanRows == 0 ? INT64_MAX : format_.maxScanRows;
        if (open == 0) records_->LimitFields(columns_.size(), SIZE_MAX);
        while (records_->Next()) {
            if (++count_ == 1) firstFields_ = records_->FieldCount();
            while (count_ <= open && columns_.size() < records_->FieldCount()) AddColumn({});
            if (count_ == open) records_->LimitFields(columns_.size(), SIZE_MAX);
            SeeFields();
        }
    }

    bool IsMisjudged() const { return records_->Stream().IsMisjudged(); }
    bool IsEmpty() const { return !hasHeader_ && Count() == 0; }
    FileLook Outcome() const;

private:
    void ReadHeader();
    void AddColumn(const ColumnSpec& spec);
    void SeeFields();
    std::int64_t Count() const {
        const bool countsEmptyLines = columns_.size() == 1;
        return count_ + (countsEmptyLines ? records_->EmptyLines() - emptyBefore_ : 0);
    }

    const TextFormat& format_;
    std::unique_ptr<Records> records_;
    std::shared_ptr<const DatePicture> picture_;
    std::vector<ColumnSpec> columns_;
    std::vector<ColumnLook> looks_;
    std::vector<std::string> headerTexts_;
    std::string scratch_;
    std::int64_t count_ = 0, emptyBefore_ = 0;
    std::size_t headerFields_ = 0, firstFields_ = 0;
    bool hasHeader_ = false;
};

/// text with every byte that is no text as the character that stands for such.
std::string WithoutFaults(std::string_view text) {
    std::string clean;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t start = at;
        const char32_t code = NextCodePoint(text, at);
        if (code != kNoCodePoint) {
            clean.append(text.substr(start, at - start));
            continue;
        }
        clean += "\xEF\xBF\xBD";
        if (text[start] == kFaultMark) at = std::min(start + kFaultLength, text.size());
    }
    return clean;
}

/// Takes the names off the first line, unless Col lines have given them.
void Look::ReadHeader() {
    hasHeader_ = records_->Next();
    if (!hasHeader_) return;
    headerFields_ = records_->FieldCount();
    if (!format_.columns.empty()) return;
    for (const Field& field : records_->Fields()) {
        AddColumn({WithoutFaults(records_->TextOf(field, scratch_)), adEmpty, 0, ""});
    }
}

void Look::AddColumn(const ColumnSpec& spec) {
    columns_.push_back(spec);
    looks_.emplace_back(spec.type,
                        spec.datePicture.empty() ? picture_ : std::make_shared<const DatePicture>(spec.datePicture));
}

void Look::SeeFields() {
    const std::span<const Field> fields = records_->Fields();
    const std::size_t count = std::min(fields.size(), looks_.size());
    for (std::size_t k = 0; k < count; ++k) {
        if (!looks_[k].IsCurious()) continue;
        const Field& field = fields[k];
        const bool isPlain = field.shape == FieldShape::Plain;
        looks_[k].See(format_, isPlain ? field.Raw() : records_->TextOf(field, scratch_), !isPlain);
    }
}

FileLook Look::Outcome() const {
    FileLook look;
    const int page = records_->Stream().Page();
    look.codePage = page == kUnknownPage ? kUtf8Page : page;
    look.records = Count();
    look.usualFields = columns_.size();
    // Col lines may name fewer columns than the file has fields: these are then left out on purpose.
    if (!format_.columns.empty() && format_.layout == FileLayout::Delimited) {
        look.usualFields = std::max({columns_.size(), headerFields_, firstFields_});
    }
    std::vector<std::string> texts;
    for (const ColumnSpec& column : columns_) texts.push_back(column.name);
    const std::vector<std::string> names = ReportedNames(texts);
    for (std::size_t k = 0; k < columns_.size(); ++k) {
        look.rules.push_back(looks_[k].Outcome());
        look.columns.push_back(InfoOf(names[k], look.rules[k].type, columns_[k].width));
        const bool isStatedText = columns_[k].type == adVarWChar;
        if (isStatedText) look.rules[k].longest = static_cast<std::size_t>(look.columns[k].definedSize);
    }
    look.names = ColumnNames(names, texts);
    return look;
}

}  // namespace

FileLook LookAtFile(const std::shared_ptr<const ByteSource>& source, const TextFormat& format,
                    std::string_view fileName, std::size_t bufferBytes) {
    Look look(source, format, format.codePage, bufferBytes);
    look.Run();
    if (look.IsMisjudged()) {
        TextFormat ansi = format;
        ansi.codePage = kAnsiPage;
        return LookAtFile(source, ansi, fileName, bufferBytes);
    }
    if (look.IsEmpty()) {
        throw Error(ErrorKind::Corrupt, std::string(fileName),
                    "An attempt was made to import or link an empty text file: '" + std::string(fileName) + "'");
    }
    return look.Outcome();
}

}  // namespace varnel::text
