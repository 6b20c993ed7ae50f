#include "base/privatedirectory.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tooltesting.h"

namespace TQTool {
namespace {

namespace fs = std::filesystem;
using testing::StartsWith;
using testing::UnorderedElementsAre;

void WriteFile(const fs::path& path, std::size_t size) {
  std::ofstream(path) << std::string(size, 'x');
}

TEST(PrivateDirectory, IsForTheOwnerAloneAndGoesWithItsFiles) {
  std::string path;
  {
    const PrivateDirectory directory(testing::TempDir());
    path = directory.GetPath();
    EXPECT_TRUE(fs::path(path).is_absolute());
    struct stat status = {};
    ASSERT_EQ(0, stat(path.c_str(), &status));
    EXPECT_EQ(S_IFDIR | S_IRWXU, status.st_mode);
    WriteFile(path + "/a", 3);
    WriteFile(path + "/.b", 0);
  }
  EXPECT_FALSE(fs::exists(path));
}

TEST(PrivateDirectory, GoesWithManyFiles) {
  std::string path;
  {
    const PrivateDirectory directory(testing::TempDir());
    path = directory.GetPath();
    for (int i = 0; i < 500; ++i) WriteFile(path + "/file" + std::to_string(i), 1);
  }
  EXPECT_FALSE(fs::exists(path));
}

TEST(PrivateDirectory, TellsTheSizesOfItsFiles) {
  const PrivateDirectory directory(testing::TempDir());
  EXPECT_THAT(FileSizesIn(directory.GetPath()), UnorderedElementsAre());
  WriteFile(directory.GetPath() + "/a", 16);
  WriteFile(directory.GetPath() + "/b", 0);
  EXPECT_THAT(FileSizesIn(directory.GetPath()), UnorderedElementsAre(16, 0));
}

TEST(PrivateDirectory, GoesWithTheDirectoriesInItAndTheirFiles) {
  std::string path;
  {
    const PrivateDirectory directory(testing::TempDir());
    path = directory.GetPath();
    for (const std::string name : {"1", "2"}) {
      const std::string part = directory.MakeSubdirectory(name);
      EXPECT_EQ(path + "/" + name, part);
      WriteFile(part + "/a", 24);
      WriteFile(part + "/b", 8);
      EXPECT_THAT(FileSizesIn(part), UnorderedElementsAre(24, 8));
    }
    EXPECT_THAT(ErrorOf([&directory] { directory.MakeSubdirectory("2"); }),
                StartsWith("4: '" + path + "/2' cannot be made"));
  }
  EXPECT_FALSE(fs::exists(path));
}

TEST(PrivateDirectory, TwoHaveDifferentNames) {
  const auto one = std::make_unique<PrivateDirectory>(testing::TempDir());
  const PrivateDirectory other(testing::TempDir());
  EXPECT_NE(one->GetPath(), other.GetPath());
}

TEST(PrivateDirectory, RelativeBaseIsMadeAbsolute) {
  const fs::path before = fs::current_path();
  fs::current_path(testing::TempDir());
  std::string path;
  {
    const PrivateDirectory directory(".");
    path = directory.GetPath();
    fs::current_path("/");  // must not matter any more
  }
  fs::current_path(before);
  EXPECT_FALSE(fs::exists(path));
}

TEST(PrivateDirectory, BaseThatDoesNotExistIsAnError) {
  EXPECT_THAT(ErrorOf([] { PrivateDirectory directory("/no/such/place"); }),
              StartsWith("4: no private directory can be made below '/no/such/place': No such "));
}

TEST(PrivateDirectory, SignalHandlerRemovesTheLiveOne) {
  const PrivateDirectory directory(testing::TempDir());
  WriteFile(directory.GetPath() + "/a", 3);
  PrivateDirectory::RemoveFromSignalHandler();
  EXPECT_FALSE(fs::exists(directory.GetPath()));
}

TEST(PrivateDirectory, DefaultBaseIsTmpdir) {
  const char* const before = std::getenv("TMPDIR");
  const std::string saved = before == nullptr ? "" : before;
  setenv("TMPDIR", "/somewhere", 1);
  EXPECT_EQ("/somewhere", PrivateDirectory::DefaultBase());
  setenv("TMPDIR", "", 1);
  EXPECT_EQ("/tmp", PrivateDirectory::DefaultBase());
  unsetenv("TMPDIR");
  EXPECT_EQ("/tmp", PrivateDirectory::DefaultBase());
  if (before != nullptr) setenv("TMPDIR", saved.c_str(), 1);
}

}  // namespace
}  // namespace TQTool
