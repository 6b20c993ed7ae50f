#include "input/opensource.h"

#include <fstream>

#include <gtest/gtest.h>

#include "support/scratchdirectory.h"
#include "tooltesting.h"

namespace TQTool {
namespace {

class OpenSourceTest : public testing::Test {
 protected:
  // A file with this text, as an input.
  std::string FileOf(const std::string& name, const std::string& text) const {
    std::ofstream(fScratch.File(name)) << text;
    return fScratch.File(name);
  }

  static std::vector<std::string> NamesIn(const InputOptions& options) {
    return OpenSource(options)->GetNames();
  }

 private:
  support::ScratchDirectory fScratch;
};

using Names = std::vector<std::string>;

TEST_F(OpenSourceTest, FindsTheDelimiterUnlessItIsNamed) {
  InputOptions options;
  options.inputs = {FileOf("f", "a;b,c;d\n1;2,3;4\n")};
  EXPECT_EQ((Names{"a", "b,c", "d"}), NamesIn(options));
  options.delimiter = ',';
  EXPECT_EQ((Names{"a;b", "c;d"}), NamesIn(options));
}

TEST_F(OpenSourceTest, SaysWhatItFoundWhenAskedTo) {
  InputOptions options;
  options.inputs = {FileOf("f", "a\tb\n1\t2\n")};
  testing::internal::CaptureStderr();
  NamesIn(options);
  EXPECT_EQ("", testing::internal::GetCapturedStderr());
  options.isVerbose = true;
  testing::internal::CaptureStderr();
  NamesIn(options);
  EXPECT_EQ("tqbin: note: " + options.inputs[0] +
                ": the delimiter is tab, as the first rows show; another one can be named with "
                "--delimiter\n",
            testing::internal::GetCapturedStderr());
}

TEST_F(OpenSourceTest, SeveralInputsAreOneSource) {
  InputOptions options;
  options.inputs = {FileOf("f", "a,b\n1,2\n"), FileOf("g", "a;b\n3;4\n")};
  const std::unique_ptr<Source> source = OpenSource(options);
  ASSERT_TRUE(source->NextRow());
  ASSERT_TRUE(source->NextRow());
  EXPECT_EQ("4", source->GetField(1));
  EXPECT_FALSE(source->NextRow());
}

TEST_F(OpenSourceTest, EveryFileIsLookedForAtOnce) {
  InputOptions options;
  options.inputs = {FileOf("f", "a,b\n1,2\n"), "/no/such/file"};
  EXPECT_EQ(0U, ErrorOf([&] {
                  OpenSource(options);
                }).find("3: /no/such/file: cannot be opened: No such file"));
}

TEST_F(OpenSourceTest, AQueryNeedsADataBase) {
  InputOptions options;
  options.inputs = {FileOf("f", "a,b\n1,2\n")};
  options.query = "SELECT 1";
  EXPECT_EQ(0U, ErrorOf([&] { OpenSource(options); }).find("2: --query: "));
}

}  // namespace
}  // namespace TQTool
