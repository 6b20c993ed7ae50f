#include "run/weightscale.h"

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/scratchdirectory.h"
#include "tooltesting.h"

namespace TQTool {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// A run on a file with the weights 2, 4, none, 9, 6 and -3.
class WeightScale : public testing::Test {
 protected:
  WeightScale() {
    std::ofstream(fPath) << "x,w\n1,2\n1,4\n1,NA\n1,9\n1,6\n1,-3\n";
    fOptions.input.inputs = {fPath};
    fOptions.settings.weight = "w";
  }

  WeightRule Find() const {
    return FindWeightRule(fOptions, MissingTokens(MissingTokens::Default()));
  }

  support::ScratchDirectory fDirectory;
  std::string fPath = fDirectory.File("weights.csv");
  BinningOptions fOptions;
};

TEST_F(WeightScale, WithoutScaleWeightsStay) {
  EXPECT_EQ(1.0, Find().factor);
  EXPECT_EQ(1.0, Find().divisor);
}

TEST_F(WeightScale, NumberMultiplies) {
  fOptions.settings.weightScale = "0.25";
  EXPECT_EQ(0.25, Find().factor);
  EXPECT_EQ(1.0, Find().divisor);
}

TEST_F(WeightScale, MeanIsOfTheWeightsThatCount) {
  fOptions.settings.weightScale = kMeanScale;
  EXPECT_EQ(5.25, Find().divisor);
  EXPECT_EQ(1.0, Find().factor);
}

TEST_F(WeightScale, UserMissingWeightsAreNoPartOfTheMean) {
  fOptions.settings.weightScale = kMeanScale;
  fOptions.userMissing = {{"w", {{9.0}, std::nullopt, {}}}};
  EXPECT_EQ(4.0, Find().divisor);
  EXPECT_THAT(Find().missing.numbers, ElementsAre(9.0));
}

TEST_F(WeightScale, NothingThatCountsHasNoMean) {
  std::ofstream(fPath) << "x,w\n1,NA\n1,0\n";
  fOptions.settings.weightScale = kMeanScale;
  EXPECT_EQ(1.0, Find().divisor);
}

TEST_F(WeightScale, MeanOfWhatIsReadOnceIsRefused) {
  fOptions.settings.weightScale = kMeanScale;
  fOptions.input.inputs = {fPath, "-"};
  EXPECT_THAT(ErrorOf([this] { Find(); }), HasSubstr("2: --weight-scale mean has to read"));
  fOptions.settings.weightScale = "2";
  EXPECT_EQ(2.0, Find().factor);
}

TEST_F(WeightScale, MeanBeyondAllNumbersIsRefused) {
  std::ofstream(fPath) << "x,w\n1,1e308\n1,1e308\n";
  fOptions.settings.weightScale = kMeanScale;
  EXPECT_THAT(ErrorOf([this] { Find(); }), HasSubstr("3: ")) << "see the words in golden/";
}

}  // namespace
}  // namespace TQTool
