#include "output/bincsv.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "modeltesting.h"

namespace TQTool {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kHeader =
    "attribute,target,status,status_code,bin,label,interval,lower,upper,closed,rows,weight,share,"
    "event_rate,weight_of_evidence,category_rows,category_weights\n";

TEST(BinCsv, HasARowPerBin) {
  const std::string text = WriteBinCsv(SmallModel(), false);
  EXPECT_THAT(text, StartsWith(std::string(kHeader) +
                               "income,paid,ok,0,0,\"(-inf, 2.5]\",\"(-inf, 2.5]\",,2.5,right,7,7,"
                               "0.5833333333333334,0.14285714285714285,"));
  EXPECT_THAT(text, HasSubstr(",\"{\"\"no\"\":6,\"\"yes\"\":1}\",\"{\"\"no\"\":6,\"\"yes\"\":1}\""
                              "\nincome,paid,ok,0,1,\"(2.5, inf)\",\"(2.5, inf)\",2.5,,right,3,3,"
                              "0.25,1,"));
}

TEST(BinCsv, WithoutATargetItsFieldsAreEmpty) {
  EXPECT_EQ(std::string(kHeader) +
                "income,,ok,0,0,\"(-inf, 2.5]\",\"(-inf, 2.5]\",,2.5,right,7,7,0.5833333333333334,"
                ",,,\n"
                "income,,ok,0,1,\"(2.5, inf)\",\"(2.5, inf)\",2.5,,right,3,3,0.25,,,,\n",
            WriteBinCsv(SmallEqualFrequencyModel(), false));
}

TEST(BinCsv, AColumnWithoutBinsHasARowOfItsStatus) {
  Model model = SmallModel();
  model.attributes[0].bins.clear();
  EXPECT_EQ(std::string(kHeader) + "income,paid,ok,0,,,,,,,,,,,,,\n", WriteBinCsv(model, false));
}

TEST(BinCsv, AnUnknownCountIsAnEmptyFieldAndNullInJson) {
  Model model = SmallModel();
  model.attributes[0].bins[1].count = {};
  model.attributes[0].bins[1].categories[0] = {};
  EXPECT_THAT(WriteBinCsv(model, false),
              HasSubstr("2.5,,right,,,,,,\"{\"\"no\"\":null,\"\"yes\"\":3}\","));
}

TEST(BinCsv, ANameThatLooksLikeAFormulaIsDefusedOnRequest) {
  Model model = SmallEqualFrequencyModel();
  model.attributes[0].name = "=1+2";
  EXPECT_THAT(WriteBinCsv(model, false), HasSubstr("\n=1+2,"));
  EXPECT_THAT(WriteBinCsv(model, true), HasSubstr("\n\"'=1+2\","));
}

}  // namespace
}  // namespace TQTool
