#include "ado/types/Value.h"

#include <gtest/gtest.h>

#include "platform/Error.h"
#include "tests/support/ErrorOf.h"

namespace varnel {
namespace {

TEST(ValueTest, ReadsOnlyAsItsOwnKind) {
    const Value text = Value::OfText("abc");
    EXPECT_EQ(text.AsText(), "abc");
    EXPECT_EQ(ErrorOf([&] { text.AsInteger(); }), "A value of kind Text was read as Integer");
    EXPECT_THROW(text.AsBytes(), Error);
    EXPECT_THROW(Value().AsText(), Error);
    EXPECT_THROW(Value::OfCurrency(5).AsInteger(), Error);
}

TEST(ValueTest, EqualsByKindAndContent) {
    Value failure, textAfterNumber = Value::OfInteger(7);
    failure.SetFailure("abc");
    textAfterNumber.SetText("abc");
    EXPECT_EQ(textAfterNumber, Value::OfText("abc"));
    EXPECT_EQ(Value::OfDecimal("1.50"), Value::OfDecimal("1.5"));
    EXPECT_EQ(Value(), Value());
    EXPECT_FALSE(Value::OfText("abc") == Value::OfBytes("abc"));
    EXPECT_FALSE(Value::OfText("abc") == failure);
    EXPECT_FALSE(Value::OfInteger(1) == Value::OfCurrency(1));
    EXPECT_FALSE(Value::OfDateTime({1, 0}) == Value::OfDateTime({1, 1}));
    EXPECT_THROW(Value::OfDecimal("x"), Error);
    EXPECT_THROW(Value::OfGuid("x"), Error);
}

TEST(ValueTest, KeepsItsBufferWhenSetAnew) {
    Value value = Value::OfText(std::string(500, 'x'));
    const char* const buffer = value.AsText().data();
    value.SetNull();
    value.SetInteger(1);
    value.StartText().append(400, 'y');
    EXPECT_EQ(value.AsText().data(), buffer);
    EXPECT_EQ(value.AsText().size(), 400u);
}

}  // namespace
}  // namespace varnel
