#include "input/numbertext.h"

#include <cmath>

#include <gtest/gtest.h>

namespace TQTool {
namespace {

double NumberIn(std::string_view text) {
  double number = NAN;
  EXPECT_EQ(NumberText::kNumber, ReadNumber(text, &number)) << text;
  return number;
}

NumberText KindOf(std::string_view text) {
  double number = 7.0;
  const NumberText kind = ReadNumber(text, &number);
  EXPECT_TRUE(kind == NumberText::kNumber || number == 7.0) << "set for " << text;
  return kind;
}

TEST(ReadNumber, ReadsDecimalNumbers) {
  EXPECT_EQ(0.0, NumberIn("0"));
  EXPECT_EQ(42.0, NumberIn("42"));
  EXPECT_EQ(-1.5, NumberIn("-1.5"));
  EXPECT_EQ(0.5, NumberIn(".5"));
  EXPECT_EQ(5.0, NumberIn("5."));
  EXPECT_EQ(1e-3, NumberIn("1e-3"));
  EXPECT_EQ(2e10, NumberIn("2E+10"));
  EXPECT_EQ(7.0, NumberIn("007"));
}

TEST(ReadNumber, RoundsCorrectly) {
  EXPECT_EQ(0.1, NumberIn("0.1"));
  EXPECT_EQ(9007199254740992.0, NumberIn("9007199254740993"));
  EXPECT_EQ(9007199254740996.0, NumberIn("9007199254740995"));
  EXPECT_EQ(5e-324, NumberIn("4.9406564584124654e-324"));
  EXPECT_EQ(0.0, NumberIn("1e-999"));
}

TEST(ReadNumber, AcceptsALeadingPlus) {
  EXPECT_EQ(3.0, NumberIn("+3"));
  for (const char* const text : {"+", "++3", "+-3", "-+3", "+ 3"}) {
    EXPECT_EQ(NumberText::kNotNumber, KindOf(text)) << text;
  }
}

TEST(ReadNumber, NeverGivesNegativeZero) {
  EXPECT_FALSE(std::signbit(NumberIn("-0")));
  EXPECT_FALSE(std::signbit(NumberIn("-0.0e5")));
  EXPECT_FALSE(std::signbit(NumberIn("-1e-999")));
}

TEST(ReadNumber, TakesTheWholeTextOrNothing) {
  for (const char* const text : {"", "-", ".", "e5", "1e", "1,5", "1 2", "1x", "0x1A", "1_000",
                                 "12%", "nan", "NaN", "-nan", "abc", "\xD9\xA3"}) {
    EXPECT_EQ(NumberText::kNotNumber, KindOf(text)) << text;
  }
}

TEST(ReadNumber, TellsInfinityAndOverflowFromText) {
  for (const char* const text : {"inf", "-inf", "+inf", "Infinity", "INF", "1e999", "-1e999",
                                 "1.7976931348623157e308", "-1.7976931348623157e308"}) {
    EXPECT_EQ(NumberText::kInfinite, KindOf(text)) << text;
  }
  EXPECT_EQ(1.7976931348623155e308, NumberIn("1.7976931348623155e308"));
}

TEST(ReadNumber, TakesAnotherDecimalPoint) {
  double number = NAN;
  EXPECT_EQ(NumberText::kNumber, ReadNumber("-1234,5e1", &number, ','));
  EXPECT_EQ(-12345.0, number);
  EXPECT_EQ(NumberText::kNumber, ReadNumber("7", &number, ','));
  for (const char* const text : {"1.5", "1.234,5", "1,2,3", ","}) {
    EXPECT_EQ(NumberText::kNotNumber, ReadNumber(text, &number, ',')) << text;
  }
}

}  // namespace
}  // namespace TQTool
