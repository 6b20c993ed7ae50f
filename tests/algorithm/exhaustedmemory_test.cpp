#include <cstdlib>
#include <memory>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include "algorithm/binningrun.h"
#include "algorithm/failingnew.h"
#include "tqbinning/binfactory.h"
#include "tqbinning/efbinfactory.h"

namespace {

std::size_t gAllocations = 0;
std::size_t gFirstToFail = 0;  // 0: none

void* Allocate(std::size_t size) {
  if (gFirstToFail != 0 && ++gAllocations >= gFirstToFail) return nullptr;
  return std::malloc(size == 0 ? 1 : size);
}

void* AllocateOrThrow(std::size_t size) {
  void* memory = Allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

void* operator new(std::size_t size) { return AllocateOrThrow(size); }
void* operator new[](std::size_t size) { return AllocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { std::free(memory); }

namespace support {

MemoryThatEnds::MemoryThatEnds(std::size_t n) {
  gAllocations = 0;
  gFirstToFail = n;
}

MemoryThatEnds::~MemoryThatEnds() { gFirstToFail = 0; }

bool MemoryThatEnds::HasEnded() const { return gAllocations >= gFirstToFail; }

}  // namespace support

namespace {

using support::Columns;
using support::EqualFrequencyRun;
using support::Error;
using support::MemoryThatEnds;
using support::Numbers;
using support::OK;
using support::SupervisedRun;
using support::TQStatus;

constexpr std::size_t kManyAllocations = 100000;  // more than any test here makes
const Numbers k1To4{1, 2, 3, 4};
const Numbers kHalves{0, 0, 1, 1};

TEST(ExhaustedMemory, WhileMakingASupervisedAlgorithmIsAResourceFailure) {
  BINSettings settings;
  settings.SetTempDirName(std::string(100, 'd'));
  BINVarList list = support::VarList("xyw");
  bool ended = true;
  for (std::size_t n = 1; ended && n < kManyAllocations; ++n) {
    BINFactory factory;
    std::unique_ptr<IBINAlgorithm> algorithm;
    {
      const MemoryThatEnds memory(n);
      ASSERT_NO_THROW(algorithm.reset(factory.CreateBINAlgorithm(settings, list)));
      ended = memory.HasEnded();
    }
    EXPECT_EQ(ended ? Error(3) : OK(), factory.GetStatus()) << n;
    EXPECT_EQ(ended, algorithm == nullptr) << n;
    EXPECT_TRUE(ended || n > 1);  // there was something to fail
  }
  EXPECT_FALSE(ended);
}

TEST(ExhaustedMemory, WhileMakingAnEqualFrequencyAlgorithmIsAResourceFailure) {
  EFBINSettings settings;
  settings.SetTempDirName(std::string(100, 'd'));
  BINVarList list = support::VarList("xxw");
  bool ended = true;
  for (std::size_t n = 1; ended && n < kManyAllocations; ++n) {
    EFBINFactory factory;
    std::unique_ptr<IEFBINAlgorithm> algorithm;
    {
      const MemoryThatEnds memory(n);
      ASSERT_NO_THROW(algorithm.reset(factory.CreateEFBINAlgorithm(settings, list)));
      ended = memory.HasEnded();
    }
    EXPECT_EQ(ended ? Error(3) : OK(), factory.GetStatus()) << n;
    EXPECT_EQ(ended, algorithm == nullptr) << n;
    EXPECT_TRUE(ended || n > 1);  // there was something to fail
  }
  EXPECT_FALSE(ended);
}

// Runs with less and less of the memory missing, until it is enough.
template <typename MakeRun>
void ExpectResourceFailuresUntilThereIsEnough(MakeRun makeRun) {
  bool ended = true;
  std::size_t failures = 0;
  for (std::size_t n = 1; ended && n < kManyAllocations; ++n) {
    SCOPED_TRACE(testing::Message() << "allocation " << n);
    const auto run = makeRun();
    auto& algorithm = run->Algorithm();
    TQStatus status;
    {
      const MemoryThatEnds memory(n);
      ASSERT_NO_THROW(status = run->CreateBins());
      ended = memory.HasEnded();
    }
    EXPECT_EQ(ended ? Error(3) : OK(), status);
    EXPECT_FALSE(algorithm.GetStatus().IsWarning());
    run->DeleteAlgorithm();
    EXPECT_TRUE(run->directory.IsEmpty());
    if (testing::Test::HasFailure()) return;
    failures += ended;
  }
  EXPECT_FALSE(ended);
  EXPECT_GT(failures, 10u);
}

TEST(ExhaustedMemory, DuringASupervisedRunIsAResourceFailure) {
  ExpectResourceFailuresUntilThereIsEnough([] {
    return std::make_unique<SupervisedRun>("xy", Columns({k1To4, kHalves}));
  });
}

TEST(ExhaustedMemory, DuringASupervisedRunWithPreBinningIsAResourceFailure) {
  ExpectResourceFailuresUntilThereIsEnough([] {
    auto run = std::make_unique<SupervisedRun>("xyw", Columns({k1To4, kHalves, {1, 1, 1, 1}}));
    EXPECT_TRUE(run->settings.SetNumDistinctValueThreshold(2));
    return run;
  });
}

TEST(ExhaustedMemory, DuringAnEqualFrequencyRunIsAResourceFailure) {
  ExpectResourceFailuresUntilThereIsEnough([] {
    return std::make_unique<EqualFrequencyRun>("xx", Columns({k1To4, k1To4}));
  });
}

}  // namespace
