#include "load/BatchInsert.h"

#include "ado/types/ConnectionString.h"
#include "ado/types/ValueConvert.h"
#include "ado/types/ValueText.h"
#include "load/RecordValues.h"
#include "platform/Error.h"

namespace varnel {

namespace {

bool IsShortText(DataTypeEnum type) {
    return type == adBSTR || type == adChar || type == adWChar || type == adVarChar || type == adVarWChar;
}

void AppendQuoted(std::string& out, std::string_view text) {
    if (text == "NULL") {
        out += "NULL";
        return;
    }
    out += '\'';
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t quote = text.find('\'', at);
        if (quote == std::string_view::npos) {
            out.append(text.substr(at));
            break;
        }
        out.append(text.substr(at, quote - at)).append("''");
        at = quote + 1;
    }
    out += '\'';
}

void AppendDate(std::string& out, const Value& value) {
    Value moment;
    const Value* date = &value;
    if (value.Kind() != ValueKind::DateTime) {
        ConvertValue(value, adDate, moment);
        date = &moment;
    }
    out += '\'';
    AppendDashedDateTime(out, date->AsDateTime());
    out += '\'';
}

/// A field without a type of its own: the literal follows the value's kind.
void AppendByKind(std::string& out, const Value& value) {
    switch (value.Kind()) {
        case ValueKind::Boolean:
            out += value.AsBoolean() ? '1' : '0';
            return;
        case ValueKind::Guid:
            AppendQuoted(out, DefaultText(value));
            return;
        case ValueKind::DateTime:
            AppendDate(out, value);
            return;
        case ValueKind::Bytes:
            out += "X'";
            AppendDefaultText(out, value);
            out += '\'';
            return;
        case ValueKind::Text:
            AppendQuoted(out, value.AsText());
            return;
        default:
            AppendDefaultText(out, value);
    }
}

void AppendNumber(std::string& out, const Value& value) {
    switch (value.Kind()) {
        case ValueKind::Boolean:
        case ValueKind::Guid:
            return AppendByKind(out, value);
        case ValueKind::Text:
            out += TrimBlanks(NumericText(value));
            return;
        case ValueKind::DateTime:
        case ValueKind::Bytes:
            throw Error(ErrorKind::Conversion, "", "Type mismatch: a value in a number column is no number");
        default:
            AppendDefaultText(out, value);  // the numeric text without its leading blank
    }
}

}  // namespace

void AppendLiteral(std::string& out, DataTypeEnum sourceType, const Value& value) {
    if (value.IsNull()) {
        out += "NULL";
    } else if (IsDateType(sourceType)) {
        AppendDate(out, value);
    } else if (IsShortText(sourceType)) {
        value.Kind() == ValueKind::Text ? AppendQuoted(out, value.AsText()) : AppendQuoted(out, DefaultText(value));
    } else if (sourceType == adVariant) {
        AppendByKind(out, value);
    } else {
        AppendNumber(out, value);
    }
}

void BatchInsert::AddValue(DataTypeEnum sourceType, const Value& value) {
    const std::size_t before = text_.size();
    try {
        AppendLiteral(text_, sourceType, value);
    } catch (const Error&) {
        text_.resize(before);
        throw;
    }
    text_ += ',';
}

void BatchInsert::EndRow() {
    text_.pop_back();
    text_ += "),";
}

const std::string& BatchInsert::Finish(std::string_view ending) {
    text_.pop_back();
    text_ += ending;
    return text_;
}

}  // namespace varnel
