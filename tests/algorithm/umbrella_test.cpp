// A host that includes the two umbrella headers and nothing else of ours.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include <tqbinning/tqbinning.h>
#include <tqcommon/tqcommon.h>

namespace {

// The numbers 0 to 9, of category 0 up to 4 and of category 1 above; `repeats` times.
class Numbers : public TQCommon::RecordIterator {
 public:
  explicit Numbers(int repeats) : fCases(10 * repeats), fRecord(2) {}
  bool HasMore() override { return fNext < fCases; }
  const TQCommon::Record* Next() override {
    const int number = fNext++ % 10;
    fRecord[0] = number;
    fRecord[1] = number > 4 ? 1.0 : 0.0;
    return &fRecord;
  }

 private:
  int fCases;
  int fNext = 0;
  TQCommon::Record fRecord;
};

TEST(UmbrellaHeaders, AreAllThatASupervisedHostNeeds) {
  BINVarList variables;
  variables.AddContVar("number", "", IBINVariable::kAttribute);
  variables.AddCatVar("big", "", 2, IBINVariable::kNumericCategorical, IBINVariable::kTarget);
  BINSettings settings;
  ASSERT_TRUE(settings.SetNumberOfBins(10));
  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, variables));
  ASSERT_NE(nullptr, algorithm);
  Numbers numbers(10);
  ASSERT_TRUE(algorithm->CreateBins(numbers, nullptr, nullptr).IsOK());
  BINAttributeTargetResults results;
  ASSERT_TRUE(algorithm->GetBinningResults().GetAttributeTargetCutPoints(0, 1, results).IsOK());
  EXPECT_EQ(std::vector<double>{4.0}, results.GetCutPoints());
}

TEST(UmbrellaHeaders, AreAllThatAnEqualFrequencyHostNeeds) {
  BINVarList variables;
  variables.AddContVar("number", "", IBINVariable::kAttribute);
  variables.AddContVar("big", "", IBINVariable::kAttribute);
  EFBINSettings settings;
  ASSERT_TRUE(settings.SetNumberOfBins(2));
  EFBINFactory factory;
  const std::unique_ptr<IEFBINAlgorithm> algorithm(
      factory.CreateEFBINAlgorithm(settings, variables));
  ASSERT_NE(nullptr, algorithm);
  Numbers numbers(10);
  const std::vector<int> attributes{0};
  ASSERT_TRUE(algorithm->CreateBins(numbers, &attributes).IsOK());
  BINAttributeResults results;
  ASSERT_TRUE(algorithm->GetBinningResults().GetAttributeCutPoints(0, results).IsOK());
  // Half of the weight is met exactly at 4: the cut is half-way to the next value.
  EXPECT_EQ(std::vector<double>{4.5}, results.GetCutPoints());
}

}  // namespace
