#include <gmock/gmock.h>

#include "platform/Error.h"
#include "providers/foxpro/KeyExpression.h"
#include "tests/support/ErrorOf.h"

namespace varnel::foxpro {
namespace {

/// A record of five fields: NAME C(6), N N(6,2), D D, I I, L L.
class KeyExpressions : public testing::Test {
protected:
    KeyExpressions() {
        std::uint32_t offset = 1;
        const auto add = [&](const char* name, char type, std::uint32_t length) {
            DbfField field;
            field.name = name, field.type = type, field.offset = offset, field.length = length;
            header_.fields.push_back(field);
            offset += length;
        };
        add("NAME", 'C', 6), add("N", 'N', 6), add("D", 'D', 8), add("I", 'I', 4), add("L", 'L', 1);
        header_.recordBytes = offset;
        header_.dialect = DbfDialect::VisualFoxPro;
        const std::string bytes = std::string(" \xE9t\xDFz   -3.5020260228") + std::string("\xFE\xFF\xFF\xFF", 4) + "T";
        record_.assign(bytes.begin(), bytes.end());
    }

    KeyTermPtr Parse(const std::string& text) {
        return ParseKeyExpression(
            text, header_, [&](std::string_view name) { return header_.FindField(name); }, "");
    }

    /// The key as hexadecimal digits; text keys as they are, padded to 8 bytes.
    std::string Key(const std::string& text) {
        const KeyTermPtr term = Parse(text);
        KeyValue value;
        term->Evaluate({record_, 1}, value);
        std::vector<std::uint8_t> key;
        AppendKeyBytes(value, term->Sort(), false, {8, ' '}, key);
        if (term->IsText() || term->Sort() == KeySort::Logical) return {key.begin(), key.end()};
        std::string digits;
        for (const std::uint8_t byte : key) {
            digits += "0123456789ABCDEF"[byte >> 4];
            digits += "0123456789ABCDEF"[byte & 15];
        }
        return digits;
    }

    DbfHeader header_;
    std::vector<std::uint8_t> record_;
};

TEST_F(KeyExpressions, GiveTheBytesOfKeys) {
    struct Case {
        const char *text, *key;
    };
    const Case cases[] = {{"name", "\xE9t\xDFz    "},
                          {"UPPER(name)", "\xC9T\xDFZ    "},  // the sharp s has no capital
                          {"LOWER(UPPE(NAME))", "\xE9t\xDFz    "},
                          {"LEFT(name,2)+'x'", "\xE9tx     "},
                          {"RIGHT(name,3)+\"x\"", "z  x    "},
                          {"SUBSTR(name,2,2)+[x]", "t\xDFx     "},
                          {"ALLTRIM(name)+'x'", "\xE9t\xDFzx   "},
                          {"PADL(TRIM(name),7,'0')", "000\xE9t\xDFz "},
                          {"STR(n,6,1)", "  -3.5  "},
                          {"STR(n,3,2)", " -4     "},  // halves go away from zero
                          {"STR(i)", "        "},      // ten characters, cut to the key
                          {"STR(123456,3)", "***     "},
                          {"DTOS(d)", "20260228"},
                          {"DTOC(d+1,1)", "20260301"},
                          {"d", "C142C6D600000000"},
                          {"n", "3FF3FFFFFFFFFFFF"},
                          {"-n", "C00C000000000000"},
                          {"i", "7FFFFFFE"},
                          {"i+0", "3FFFFFFFFFFFFFFF"},
                          {"MONTH(d)", "C000000000000000"},
                          {"l", "T"},
                          {".NOT.l.OR.DELETED()", "F"},
                          {"name='\xE9t'.AND.n<0", "T"},
                          {"name=='\xE9t'", "F"},
                          {"(n>=-3.5).AND.i#0.AND..T.", "T"}};
    for (const Case& each : cases) {
        EXPECT_EQ(Key(each.text), each.key) << each.text;
    }
}

TEST_F(KeyExpressions, AreRefusedInWordsBeyondTheGrammar) {
    struct Case {
        const char *text, *words;
    };
    const Case cases[] = {{"", "ends too early"},         {"name+", "ends too early"},
                          {"other", "no field 'other'"},  {"goods.name", "another table ('goods')"},
                          {"SOUNDEX(name)", "'SOUNDEX'"}, {"LEFT(name)", "'LEFT'"},
                          {"name+n", "wrong type"},       {"name.AND.l", "wrong type"},
                          {"UPPER(name", "not closed"},   {"n*2", "'*2' is not understood"},
                          {"'x", "not closed"},           {"name name", "'name' is not understood"}};
    for (const Case& each : cases) {
        EXPECT_THAT(ErrorOf([&] { Parse(each.text); }), testing::HasSubstr(each.words)) << each.text;
    }
    EXPECT_THAT(ErrorOf([&] { Parse(std::string(1000, '(') + "n"); }), testing::HasSubstr("nested too deeply"));
    header_.codePage = 932;
    EXPECT_THAT(ErrorOf([&] { Parse("UPPER(name)"); }), testing::HasSubstr("'UPPER'"));
}

}  // namespace
}  // namespace varnel::foxpro
