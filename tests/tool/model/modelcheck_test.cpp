#include "model/modelcheck.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "modeltesting.h"

namespace TQTool {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(FindDoubts, NothingIsWrongWithAFreshModel) {
  EXPECT_THAT(FindDoubts(SmallModel()), IsEmpty());
}

TEST(FindDoubts, EditedBinsAreNamed) {
  Model model = SmallModel();
  model.attributes[0].isEdited = true;
  model.attributes[0].bins[1].count = {};
  EXPECT_THAT(FindDoubts(model), ElementsAre(HasSubstr("the counts of 1 of 2 bins are not known")));
}

TEST(FindDoubts, CutPointsThatPartNothingAreNamed) {
  Model model = SmallModel();
  for (const double cut : {1e6, -0.2, 2e6}) {
    model.attributes[0].cuts = {cut};
    EXPECT_THAT(FindDoubts(model), ElementsAre(HasSubstr("parts nothing"))) << cut;
  }
  model.attributes[0].isRightClosed = false;
  model.attributes[0].cuts = {1e6};
  EXPECT_THAT(FindDoubts(model), IsEmpty());
  model.attributes[0].cuts = {-0.1};
  EXPECT_THAT(FindDoubts(model), ElementsAre(HasSubstr("parts nothing")));
}

TEST(FindDoubts, LabelsThatBinsShareAreNamed) {
  Model model = SmallModel();
  model.attributes[0].labels = {"a", "a"};
  EXPECT_THAT(FindDoubts(model), ElementsAre(HasSubstr("two bins are labelled 'a'")));
}

}  // namespace
}  // namespace TQTool
