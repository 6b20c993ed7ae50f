#include <dlfcn.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "algorithm/steeredtmpnam.h"
#include "tqbinning/binsettings.h"
#include "tqbinning/efbinsettings.h"

namespace {

bool gSteered = false;
const char* gName = nullptr;
int gCalls = 0;

}  // namespace

// Stands before the C library's function of this name in the whole test program.
extern "C" char* tmpnam(char* buffer) noexcept {
  static char answer[256];
  if (!gSteered) {
    using Function = char* (*)(char*);
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, "tmpnam"))(buffer);
  }
  ++gCalls;
  if (gName == nullptr) return nullptr;
  char* target = buffer == nullptr ? answer : buffer;
  std::strcpy(target, gName);
  return target;
}

namespace support {

SteeredTmpnam::SteeredTmpnam(const char* name) {
  gSteered = true;
  gName = name;
  gCalls = 0;
}

SteeredTmpnam::~SteeredTmpnam() { gSteered = false; }

int SteeredTmpnam::Calls() const { return gCalls; }

}  // namespace support

namespace {

template <typename Settings>
class DefaultTempDirName : public testing::Test {
 protected:
  static std::string For(const char* proposed) {
    const support::SteeredTmpnam tmpnam(proposed);
    return Settings().GetTempDirName();
  }
};

using BothSettings = testing::Types<BINSettings, EFBINSettings>;
TYPED_TEST_SUITE(DefaultTempDirName, BothSettings);

TYPED_TEST(DefaultTempDirName, IsTheDirectoryOfTheProposedName) {
  EXPECT_EQ("/tmp", this->For("/tmp/abc123"));
  EXPECT_EQ("/var/tmp", this->For("/var/tmp/abc123"));
  EXPECT_EQ("scratch", this->For("scratch/abc123"));
}

TYPED_TEST(DefaultTempDirName, IsTheWorkingDirectoryForANameWithoutSlash) {
  EXPECT_EQ("./", this->For("abc123"));
  EXPECT_EQ("./", this->For(""));
}

TYPED_TEST(DefaultTempDirName, IsTheWorkingDirectoryWhenTheOnlySlashComesFirst) {
  EXPECT_EQ("./", this->For("/abc123"));
  EXPECT_EQ("./", this->For("/"));
}

TYPED_TEST(DefaultTempDirName, EndsAtTheLastSlashWhateverFollows) {
  EXPECT_EQ("/tmp/abc", this->For("/tmp/abc/"));
  EXPECT_EQ("/tmp/", this->For("/tmp//abc"));
  EXPECT_EQ("/", this->For("//abc"));
}

TYPED_TEST(DefaultTempDirName, IsSomeDirectoryWhenTheSystemProposesNoName) {
  EXPECT_TRUE(std::filesystem::is_directory(this->For(nullptr)));
}

TYPED_TEST(DefaultTempDirName, AsksForOneNamePerSettingsObject) {
  const support::SteeredTmpnam tmpnam("/tmp/abc123");
  const TypeParam first;
  EXPECT_EQ(1, tmpnam.Calls());
  const TypeParam second;
  EXPECT_EQ(2, tmpnam.Calls());
}

TYPED_TEST(DefaultTempDirName, IsNotAskedForAgainByACopy) {
  const support::SteeredTmpnam tmpnam("/first/abc123");
  const TypeParam settings;
  const TypeParam copy(settings);
  EXPECT_EQ("/first", copy.GetTempDirName());
  EXPECT_EQ(1, tmpnam.Calls());
}

TYPED_TEST(DefaultTempDirName, IsTmpOnThisSystem) {
  EXPECT_EQ("/tmp", TypeParam().GetTempDirName());
}

}  // namespace
