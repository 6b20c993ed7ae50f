#include "output/outputfile.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/scratchdirectory.h"
#include "tooltesting.h"

namespace TQTool {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class OutputFileTest : public testing::Test {
 protected:
  std::string Path(const char* name) const { return fDirectory.File(name); }
  std::string Content(const char* name) const {
    std::ostringstream text;
    text << std::ifstream(Path(name)).rdbuf();
    return text.str();
  }
  std::ptrdiff_t CountFiles() const {
    return std::distance(fs::directory_iterator(fDirectory.Path()), fs::directory_iterator());
  }

 private:
  support::ScratchDirectory fDirectory;
};

TEST_F(OutputFileTest, StandardOutputGetsAll) {
  const std::string text(300000, 'x');
  testing::internal::CaptureStdout();
  OutputFile output("-");
  EXPECT_TRUE(output.Write(text));
  output.Finish();
  EXPECT_EQ(text, testing::internal::GetCapturedStdout());
}

TEST_F(OutputFileTest, FileIsThereOnlyWhenItIsFinished) {
  std::ofstream(Path("out")) << "old";
  {
    OutputFile output(Path("out"));
    output.Write("new");
    EXPECT_EQ("old", Content("out"));
    output.Finish();
    EXPECT_EQ("new", Content("out"));
  }
  EXPECT_EQ("new", Content("out"));
  EXPECT_EQ(1, CountFiles());
}

TEST_F(OutputFileTest, WhatIsNotFinishedLeavesNothing) {
  { OutputFile(Path("out")).Write("half"); }
  EXPECT_EQ(0, CountFiles());
}

TEST_F(OutputFileTest, FileThatCannotBeMadeIsNamed) {
  EXPECT_THAT(ErrorOf([this] { OutputFile output(Path("none/out")); }),
              HasSubstr("none/out: cannot be made: No such file or directory; "));
}

TEST_F(OutputFileTest, ASymbolicLinkIsNeitherFollowedNorReplaced) {
  std::ofstream(Path("target")) << "old";
  for (const char* const target : {"target", "missing", "/dev/null"}) {
    fs::create_symlink(target, Path("link"));
    EXPECT_THAT(ErrorOf([this] { OutputFile output(Path("link")); }),
                HasSubstr("link: a symbolic link; "));
    EXPECT_TRUE(fs::is_symlink(Path("link")));
    fs::remove(Path("link"));
  }
  EXPECT_EQ("old", Content("target"));
  EXPECT_EQ(1, CountFiles());
}

TEST_F(OutputFileTest, FullDeviceIsReported) {
  EXPECT_THAT(ErrorOf([] { OutputFile("/dev/full").Write("text"); }),
              HasSubstr("4: /dev/full: cannot be written: No space left on device; "));
}

}  // namespace
}  // namespace TQTool
