#include "tqbinning/display.h"

#include <cstddef>
#include <limits>
#include <ostream>
#include <sstream>
#include <string>
#include <valarray>
#include <vector>

#include <gtest/gtest.h>

#include "tqcommon/missingvalue.h"

namespace TQBinning {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kPi = 3.14159265358979;

// Counts the flushes and remembers how much text the last one found.
class FlushCountingBuffer : public std::stringbuf {
 public:
  int Flushes() const { return fFlushes; }
  std::string FlushedText() const { return fFlushedText; }

 protected:
  int sync() override {
    ++fFlushes;
    fFlushedText = str();
    return 0;
  }

 private:
  int fFlushes = 0;
  std::string fFlushedText;
};

template <class... Arguments>
std::string Shown(const Arguments&... arguments) {
  std::ostringstream os;
  Display(os, arguments...);
  return os.str();
}

std::string ShownRounding(int option) {
  return Shown(static_cast<IBINVariable::BINWRoundingOption>(option));
}
std::string ShownRole(int role) { return Shown(static_cast<IBINVariable::VariableRole>(role)); }
std::string ShownLevel(int level) { return Shown(static_cast<IBINVariable::MeasureLevel>(level)); }

template <class List>
std::string ShownD(const List& values) {
  std::ostringstream os;
  DisplayD(os, values, "x");
  return os.str();
}

// The pointer form.
std::string ShownP(const std::vector<double>& values) {
  std::ostringstream os;
  DisplayD(os, values.data(), static_cast<int>(values.size()), "x");
  return os.str();
}

template <class List>
std::string ShownI(const List& values) {
  std::ostringstream os;
  DisplayI(os, values, "x");
  return os.str();
}

std::string ShownB(const std::valarray<bool>& values) {
  std::ostringstream os;
  DisplayB(os, values, "x");
  return os.str();
}

std::string ShownMI(const std::vector<int>& matrix, unsigned int n) {
  std::ostringstream os;
  DisplayMI(os, matrix.data(), n, "m");
  return os.str();
}

std::string ShownMD(const std::vector<double>& matrix, unsigned int n) {
  std::ostringstream os;
  DisplayMD(os, matrix.data(), n, "m");
  return os.str();
}

// The text right-aligned in a field, with the blank that follows every element.
std::string Field(std::size_t width, const std::string& text) {
  return std::string(width - text.size(), ' ') + text + " ";
}

// `count` fields that all hold the same text.
std::string Fields(std::size_t count, std::size_t width, const std::string& text) {
  std::string fields;
  for (std::size_t i = 0; i < count; ++i) fields += Field(width, text);
  return fields;
}

TEST(DisplayScalar, ANamedValueIsWrittenAfterAnEqualsSign) {
  EXPECT_EQ("gain = 1.5\n", Shown(std::string("gain"), 1.5));
  EXPECT_EQ(" = -2\n", Shown(std::string(), -2.0));
}

TEST(DisplayScalar, AMissingValueIsMarked) {
  EXPECT_EQ("gain = <missing>\n", Shown(std::string("gain"), TQMV::gMissingValue));
}

TEST(DisplayScalar, AValueKeepsThePrecisionOfTheStream) {
  EXPECT_EQ("pi = 3.14159\n", Shown(std::string("pi"), kPi));
  std::ostringstream os;
  os.precision(3);
  Display(os, "pi", kPi);
  EXPECT_EQ("pi = 3.14\n", os.str());
  EXPECT_EQ(3, os.precision());
}

TEST(DisplayScalar, ABoolIsYesOrNoWithoutLineEnd) {
  EXPECT_EQ("Yes", Shown(true));
  EXPECT_EQ("No", Shown(false));
}

TEST(DisplayScalar, RoundingOptions) {
  EXPECT_EQ("Truncate to smaller int\n", ShownRounding(0));
  EXPECT_EQ("Round to closest int\n", ShownRounding(1));
}

TEST(DisplayScalar, AnyOtherRoundingOptionIsALineEndOnly) {
  EXPECT_EQ("\n", ShownRounding(2));
  EXPECT_EQ("\n", ShownRounding(-1));
}

TEST(DisplayScalar, VariableRoles) {
  EXPECT_EQ("Undefined variable role\n", ShownRole(0));
  EXPECT_EQ("Attribute\n", ShownRole(1));
  EXPECT_EQ("Target\n", ShownRole(2));
  EXPECT_EQ("Frequency weight\n", ShownRole(3));
}

TEST(DisplayScalar, AnyOtherVariableRoleIsANumber) {
  EXPECT_EQ("Variable role 4\n", ShownRole(4));
  EXPECT_EQ("Variable role -1\n", ShownRole(-1));
}

TEST(DisplayScalar, MeasureLevels) {
  EXPECT_EQ("Unknown measure level\n", ShownLevel(0));
  EXPECT_EQ("Continuous\n", ShownLevel(1));
  EXPECT_EQ("Numeric Categorical\n", ShownLevel(2));
  EXPECT_EQ("String Categorical\n", ShownLevel(3));
  EXPECT_EQ("Frequency weight\n", ShownLevel(4));
}

TEST(DisplayScalar, AnyOtherMeasureLevelIsANumber) {
  EXPECT_EQ("Measure level 5\n", ShownLevel(5));
  EXPECT_EQ("Measure level -7\n", ShownLevel(-7));
}

TEST(DisplayScalar, ALineEndFlushesOnce) {
  FlushCountingBuffer buffer;
  std::ostream os(&buffer);
  Display(os, "x", 1.0);
  EXPECT_EQ(1, buffer.Flushes());
  EXPECT_EQ("x = 1\n", buffer.FlushedText());
  Display(os, IBINVariable::kTruncate);
  EXPECT_EQ(2, buffer.Flushes());
  Display(os, IBINVariable::kTarget);
  EXPECT_EQ(3, buffer.Flushes());
  Display(os, IBINVariable::kContinuous);
  EXPECT_EQ(4, buffer.Flushes());
  EXPECT_EQ("x = 1\nTruncate to smaller int\nTarget\nContinuous\n", buffer.FlushedText());
}

TEST(DisplayScalar, ABoolDoesNotFlush) {
  FlushCountingBuffer buffer;
  std::ostream os(&buffer);
  Display(os, true);
  EXPECT_EQ(0, buffer.Flushes());
}

TEST(DisplayScalar, EveryRoutineReturnsTheStreamThatItWasGiven) {
  std::ostringstream os;
  EXPECT_EQ(&os, &Display(os, "x", 1.0));
  EXPECT_EQ(&os, &Display(os, false));
  EXPECT_EQ(&os, &Display(os, IBINVariable::kTruncate));
  EXPECT_EQ(&os, &Display(os, IBINVariable::kTarget));
  EXPECT_EQ(&os, &Display(os, IBINVariable::kContinuous));
  EXPECT_EQ(&os, &DisplayD(os, std::vector<double>(), "x"));
  EXPECT_EQ(&os, &DisplayD(os, std::valarray<double>(), "x"));
  EXPECT_EQ(&os, &DisplayD(os, nullptr, 0, "x"));
  EXPECT_EQ(&os, &DisplayI(os, std::vector<int>(), "x"));
  EXPECT_EQ(&os, &DisplayI(os, std::valarray<int>(), "x"));
  EXPECT_EQ(&os, &DisplayB(os, std::valarray<bool>(), "x"));
  EXPECT_EQ(&os, &DisplayMI(os, nullptr, 0, "x"));
  EXPECT_EQ(&os, &DisplayMD(os, nullptr, 0, "x"));
}

TEST(DisplayList, AnEmptyListIsMarked) {
  EXPECT_EQ("x: <empty>\n", ShownP({}));
  EXPECT_EQ("x: <empty>\n", ShownD(std::valarray<double>()));
  EXPECT_EQ("x: <empty>\n", ShownD(std::vector<double>()));
  EXPECT_EQ("x: <empty>\n", ShownI(std::valarray<int>()));
  EXPECT_EQ("x: <empty>\n", ShownI(std::vector<int>()));
  EXPECT_EQ("x: <empty>\n", ShownB(std::valarray<bool>()));
}

TEST(DisplayList, ANegativeCountIsAnEmptyList) {
  const double value = 1.0;
  std::ostringstream os;
  DisplayD(os, &value, -1, "x");
  EXPECT_EQ("x: <empty>\n", os.str());
}

TEST(DisplayList, TheHeaderOfOneElementHasNoPluralS) {
  EXPECT_EQ("x (1 element): \n        1.5 \n", ShownP({1.5}));
  EXPECT_EQ("x (1 element): \n        1.5 \n", ShownD(std::valarray<double>{1.5}));
  EXPECT_EQ("x (1 element): \n     1.5 \n", ShownD(std::vector<double>{1.5}));
  EXPECT_EQ("x (1 element): \n         -7 \n", ShownI(std::valarray<int>{-7}));
  EXPECT_EQ("x (1 element): \n    -7 \n", ShownI(std::vector<int>{-7}));
  EXPECT_EQ("x (1 element): \n       true \n", ShownB(std::valarray<bool>{true}));
}

TEST(DisplayList, TheHeaderOfTwoElementsHasAPluralS) {
  EXPECT_EQ("x (2 elements): \n        1.5         -20 \n", ShownP({1.5, -20.0}));
  EXPECT_EQ("x (2 elements): \n        1.5         -20 \n",
            ShownD(std::valarray<double>{1.5, -20.0}));
  EXPECT_EQ("x (2 elements): \n     1.5      -20 \n", ShownD(std::vector<double>{1.5, -20.0}));
  EXPECT_EQ("x (2 elements): \n          3           4 \n", ShownI(std::valarray<int>{3, 4}));
  EXPECT_EQ("x (2 elements): \n     3      4 \n", ShownI(std::vector<int>{3, 4}));
  EXPECT_EQ("x (2 elements): \n       true       false \n",
            ShownB(std::valarray<bool>{true, false}));
}

TEST(DisplayList, AnEmptyNameIsWrittenAsItIs) {
  std::ostringstream os;
  DisplayI(os, std::vector<int>{1}, "");
  DisplayI(os, std::vector<int>(), "");
  EXPECT_EQ(" (1 element): \n     1 \n: <empty>\n", os.str());
}

TEST(DisplayList, TenDoublesStandOnOneLineWithASingleLineEnd) {
  const std::string expected = "x (10 elements): \n" + Fields(10, 11, "2") + "\n";
  EXPECT_EQ(expected, ShownP(std::vector<double>(10, 2.0)));
  EXPECT_EQ(expected, ShownD(std::valarray<double>(2.0, 10)));
}

TEST(DisplayList, ElevenDoublesWrapAfterTheTenth) {
  const std::string expected =
      "x (11 elements): \n" + Fields(10, 11, "2") + "\n" + Field(11, "2") + "\n";
  EXPECT_EQ(expected, ShownP(std::vector<double>(11, 2.0)));
  EXPECT_EQ(expected, ShownD(std::valarray<double>(2.0, 11)));
}

TEST(DisplayList, TwentyDoublesAreTwoFullLines) {
  const std::string line = Fields(10, 11, "2") + "\n";
  EXPECT_EQ("x (20 elements): \n" + line + line, ShownP(std::vector<double>(20, 2.0)));
  EXPECT_EQ("x (20 elements): \n" + line + line, ShownD(std::valarray<double>(2.0, 20)));
}

TEST(DisplayList, AVectorOfDoublesHoldsEightToALine) {
  const std::string line = Fields(8, 8, "2") + "\n";
  EXPECT_EQ("x (8 elements): \n" + line, ShownD(std::vector<double>(8, 2.0)));
  EXPECT_EQ("x (9 elements): \n" + line + Field(8, "2") + "\n",
            ShownD(std::vector<double>(9, 2.0)));
  EXPECT_EQ("x (16 elements): \n" + line + line, ShownD(std::vector<double>(16, 2.0)));
}

TEST(DisplayList, IntsStandTenToALineInWidthsOfTheirContainer) {
  const std::string wide = Fields(10, 11, "7") + "\n";
  EXPECT_EQ("x (10 elements): \n" + wide, ShownI(std::valarray<int>(7, 10)));
  EXPECT_EQ("x (11 elements): \n" + wide + Field(11, "7") + "\n",
            ShownI(std::valarray<int>(7, 11)));
  const std::string narrow = Fields(10, 6, "7") + "\n";
  EXPECT_EQ("x (10 elements): \n" + narrow, ShownI(std::vector<int>(10, 7)));
  EXPECT_EQ("x (11 elements): \n" + narrow + Field(6, "7") + "\n", ShownI(std::vector<int>(11, 7)));
}

TEST(DisplayList, BoolsStandTenToALine) {
  const std::string line = Fields(10, 11, "false") + "\n";
  EXPECT_EQ("x (10 elements): \n" + line, ShownB(std::valarray<bool>(false, 10)));
  EXPECT_EQ("x (11 elements): \n" + line + Field(11, "false") + "\n",
            ShownB(std::valarray<bool>(false, 11)));
}

TEST(DisplayList, ValuesHaveThePrecisionOfTheirForm) {
  EXPECT_EQ("x (1 element): \n   3.141593 \n", ShownP({kPi}));
  EXPECT_EQ("x (1 element): \n   3.141593 \n", ShownD(std::valarray<double>{kPi}));
  EXPECT_EQ("x (1 element): \n  3.1416 \n", ShownD(std::vector<double>{kPi}));
}

TEST(DisplayList, AValueWiderThanItsFieldIsWrittenWhole) {
  EXPECT_EQ("x (1 element): \n-1.234568e-100 \n", ShownP({-1.23456789e-100}));
  EXPECT_EQ("x (1 element): \n-1.2346e-100 \n", ShownD(std::vector<double>{-1.23456789e-100}));
  EXPECT_EQ("x (1 element): \n-2147483648 \n", ShownI(std::valarray<int>{-2147483647 - 1}));
  EXPECT_EQ("x (1 element): \n-2147483648 \n", ShownI(std::vector<int>{-2147483647 - 1}));
}

TEST(DisplayList, AMissingDoubleIsMarkedWithoutWidth) {
  const double missing = TQMV::gMissingValue;
  EXPECT_EQ("x (3 elements): \n<missing>           1 <missing> \n",
            ShownP({missing, 1.0, missing}));
  EXPECT_EQ("x (3 elements): \n<missing>           1 <missing> \n",
            ShownD(std::valarray<double>{missing, 1.0, missing}));
  EXPECT_EQ("x (3 elements): \n<missing>        1 <missing> \n",
            ShownD(std::vector<double>{missing, 1.0, missing}));
}

TEST(DisplayList, AMissingDoubleCountsAsAnElementOfItsLine) {
  const std::vector<double> values(9, TQMV::gMissingValue);
  std::string line;
  for (int i = 0; i < 8; ++i) line += "<missing> ";
  EXPECT_EQ("x (9 elements): \n" + line + "\n<missing> \n", ShownD(values));
}

TEST(DisplayList, NaNAndInfinityAreNotMissing) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ("x (2 elements): \n        nan        -inf \n", ShownP({kNaN, -infinity}));
}

TEST(DisplayList, TheEarlierPrecisionComesBack) {
  std::ostringstream os;
  os.precision(3);
  DisplayD(os, std::vector<double>{kPi}, "x");
  EXPECT_EQ(3, os.precision());
  DisplayD(os, std::valarray<double>{kPi}, "x");
  EXPECT_EQ(3, os.precision());
  DisplayD(os, &kPi, 1, "x");
  EXPECT_EQ(3, os.precision());
  DisplayD(os, std::vector<double>(), "x");
  EXPECT_EQ(3, os.precision());
}

// The words of one list must not spill over to whatever is written next.
TEST(DisplayList, TheStreamWritesAsBeforeAfterAListOfBools) {
  std::ostringstream os;
  DisplayB(os, std::valarray<bool>{true}, "x");
  os.str("");
  os << true << ' ' << 5;
  EXPECT_EQ("1 5", os.str());
}

TEST(DisplayMatrix, AnEmptyMatrixIsMarked) {
  EXPECT_EQ("m: <empty>\n", ShownMI({}, 0));
  EXPECT_EQ("m: <empty>\n", ShownMD({}, 0));
}

TEST(DisplayMatrix, AMatrixIsWrittenRowByRow) {
  EXPECT_EQ("m(2,2)\n          1          -2 \n          3           4 \n",
            ShownMI({1, -2, 3, 4}, 2));
  EXPECT_EQ("m(2,2)\n        1.5          -2 \n          3           4 \n",
            ShownMD({1.5, -2.0, 3.0, 4.0}, 2));
}

TEST(DisplayMatrix, AMatrixOfOneElementHasTheSameHeader) {
  EXPECT_EQ("m(1,1)\n          5 \n", ShownMI({5}, 1));
  EXPECT_EQ("m(1,1)\n        0.5 \n", ShownMD({0.5}, 1));
}

TEST(DisplayMatrix, ARowOfTenStandsOnOneLine) {
  std::string expected = "m(10,10)\n";
  for (int row = 0; row < 10; ++row) expected += Fields(10, 11, "6") + "\n";
  EXPECT_EQ(expected, ShownMI(std::vector<int>(100, 6), 10));
  EXPECT_EQ(expected, ShownMD(std::vector<double>(100, 6.0), 10));
}

TEST(DisplayMatrix, ARowBreaksBeforeItsEleventhElement) {
  std::string expected = "m(11,11)\n";
  for (int row = 0; row < 11; ++row) expected += Fields(10, 11, "6") + "\n" + Field(11, "6") + "\n";
  EXPECT_EQ(expected, ShownMI(std::vector<int>(121, 6), 11));
  EXPECT_EQ(expected, ShownMD(std::vector<double>(121, 6.0), 11));
}

TEST(DisplayMatrix, ARowBreaksAgainBeforeItsTwentyFirstElement) {
  std::string expected = "m(21,21)\n";
  const std::string line = Fields(10, 11, "6") + "\n";
  for (int row = 0; row < 21; ++row) expected += line + line + Field(11, "6") + "\n";
  EXPECT_EQ(expected, ShownMI(std::vector<int>(441, 6), 21));
  EXPECT_EQ(expected, ShownMD(std::vector<double>(441, 6.0), 21));
}

TEST(DisplayMatrix, AMatrixOfDoublesHasPrecisionSevenAndRestoresTheEarlierOne) {
  std::ostringstream os;
  os.precision(3);
  DisplayMD(os, &kPi, 1, "m");
  EXPECT_EQ("m(1,1)\n   3.141593 \n", os.str());
  EXPECT_EQ(3, os.precision());
}

TEST(DisplayMatrix, AMissingValueIsWrittenAsANumber) {
  EXPECT_EQ("m(1,1)\n-1.797693e+308 \n", ShownMD({TQMV::gMissingValue}, 1));
}

}  // namespace
}  // namespace TQBinning
