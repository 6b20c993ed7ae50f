#include "base/staledirectories.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>

#include "base/ownerfile.h"
#include "base/privatedirectory.h"

namespace TQTool {
namespace {

namespace fs = std::filesystem;

// A base directory of the test's own.
class StaleDirectories : public testing::Test {
 protected:
  StaleDirectories() {
    std::string pattern = testing::TempDir() + "stale-XXXXXX";
    fBase = mkdtemp(pattern.data());
  }
  ~StaleDirectories() override { fs::remove_all(fBase); }

  // A directory that a run could have left, but for its content.
  fs::path MakeDirectory(const char* name = "tqbin-aB3xyz") const {
    const fs::path path = fBase / name;
    fs::create_directory(path);
    fs::permissions(path, fs::perms::owner_all);
    return path;
  }
  // The same with all that a killed run leaves.
  fs::path MakeStale(const char* name = "tqbin-aB3xyz") const {
    const fs::path path = MakeDirectory(name);
    std::ofstream(path / kOwnerFile).close();
    std::ofstream(path / "1f2e") << "values";
    return path;
  }
  void Sweep() const { RemoveStaleDirectories(fBase.string()); }

  fs::path fBase;
};

Descriptor Lock(const fs::path& path) {
  return LockOwnerFile(Descriptor(open(path.c_str(), O_RDONLY | O_DIRECTORY)).Get());
}

TEST_F(StaleDirectories, OfADeadRunGoesWithItsFiles) {
  const fs::path path = MakeStale();
  Sweep();
  EXPECT_FALSE(fs::exists(path));
}

TEST_F(StaleDirectories, OfALivingRunStays) {
  const fs::path path = MakeStale();
  const Descriptor lock = Lock(path);
  ASSERT_TRUE(lock.IsOpen());
  Sweep();
  EXPECT_TRUE(fs::exists(path / "1f2e"));
}

TEST_F(StaleDirectories, GoWhenAnotherRunMakesItsOwn) {
  const fs::path path = MakeStale();
  const PrivateDirectory directory(fBase.string());
  EXPECT_FALSE(fs::exists(path));
  Sweep();
  EXPECT_TRUE(fs::exists(directory.GetPath()));
}

TEST_F(StaleDirectories, WithoutAnOwnerGoesWhenItIsEmpty) {
  const fs::path path = MakeDirectory();
  Sweep();
  EXPECT_FALSE(fs::exists(path));
}

TEST_F(StaleDirectories, WithoutAnOwnerIsNoRunsWhenItHoldsFiles) {
  const fs::path path = MakeDirectory();
  std::ofstream(path / "thesis.txt") << "text";
  Sweep();
  EXPECT_TRUE(fs::exists(path / "thesis.txt"));
  EXPECT_FALSE(fs::exists(path / kOwnerFile));
}

TEST_F(StaleDirectories, OfOtherNamesAreNotLookedAt) {
  for (const char* const name : {"tqbin-aB3xy", "tqbin-aB3xyzz", "tqbin-aB.xyz", "tqbinxaB3xyz"}) {
    const fs::path path = MakeStale(name);
    Sweep();
    EXPECT_TRUE(fs::exists(path / "1f2e")) << name;
  }
}

TEST_F(StaleDirectories, OpenToOthersIsNoRuns) {
  const fs::path path = MakeStale();
  fs::permissions(path, fs::perms::group_read, fs::perm_options::add);
  Sweep();
  EXPECT_TRUE(fs::exists(path / "1f2e"));
}

TEST_F(StaleDirectories, AreNotFoundThroughASymbolicLink) {
  const fs::path path = MakeStale("elsewhere");
  fs::create_directory_symlink(path, fBase / "tqbin-aB3xyz");
  Sweep();
  EXPECT_TRUE(fs::exists(path / "1f2e"));
}

TEST_F(StaleDirectories, AnOwnerThatIsASymbolicLinkIsNotFollowed) {
  const fs::path path = MakeDirectory();
  std::ofstream(path / "1f2e") << "values";
  fs::create_symlink(fBase / "target", path / kOwnerFile);
  Sweep();
  EXPECT_TRUE(fs::exists(path / "1f2e"));
  EXPECT_FALSE(fs::exists(fBase / "target"));
}

TEST_F(StaleDirectories, ABaseThatIsMissingHasNone) {
  RemoveStaleDirectories((fBase / "none").string());
  EXPECT_TRUE(fs::is_empty(fBase));
}

TEST_F(StaleDirectories, ALockThatIsTakenIsToldApart) {
  const fs::path path = MakeDirectory();
  const Descriptor lock = Lock(path);
  EXPECT_FALSE(Lock(path).IsOpen());
  EXPECT_EQ(EWOULDBLOCK, errno);
}

}  // namespace
}  // namespace TQTool
