#include "run/casespool.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/scratchdirectory.h"
#include "tooltesting.h"

namespace TQTool {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(CaseSpool, HandsOutWhatWasAddedAsOftenAsAskedFor) {
  const support::ScratchDirectory directory;
  CaseSpool spool(directory.Path(), 2);
  EXPECT_TRUE(directory.IsEmpty()) << "the file has no name";
  TQCommon::Record record(2);
  for (const double number : {1.5, TQMV::gMissingValue, -0.0}) {
    record[0] = number;
    record[1] = 2.0 * number;
    spool.Add(record);
    record[0] = record[1] = 7.0;
  }
  for (int pass = 0; pass < 2; ++pass) {
    std::vector<double> numbers;
    spool.ForEach([&numbers](const double* one) { numbers.insert(numbers.end(), one, one + 2); });
    EXPECT_THAT(numbers,
                ElementsAre(1.5, 3.0, TQMV::gMissingValue, 2.0 * TQMV::gMissingValue, -0.0, -0.0));
  }
}

TEST(CaseSpool, WithoutCasesHandsOutNothing) {
  const support::ScratchDirectory directory;
  CaseSpool spool(directory.Path(), 3);
  spool.ForEach([](const double*) { FAIL() << "no case was added"; });
}

TEST(CaseSpool, DirectoryThatIsNotThereIsAnError) {
  EXPECT_THAT(ErrorOf([] { CaseSpool("/no/such/directory", 1); }),
              HasSubstr("4: a temporary file cannot be made: No such file"));
}

TEST(CaseSpool, FileThatIsThereAlreadyIsAnError) {
  const support::ScratchDirectory directory;
  std::filesystem::create_symlink("/dev/null", directory.File("cases"));
  EXPECT_THAT(ErrorOf([&directory] { CaseSpool(directory.Path(), 1); }),
              HasSubstr("4: a temporary file cannot be made"))
      << "a link is not followed";
}

}  // namespace
}  // namespace TQTool
