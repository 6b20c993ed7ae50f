// Checks generated problems against the reference for as long as it is told:
// soak MINUTES [SEED].  Exit status 1 after a disagreement, 2 for bad arguments.

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <random>
#include <string>

#include "property/agreement.h"
#include "support/scratchdirectory.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kReportEvery = 60;        // seconds
constexpr int kDisagreementsShown = 5;  // one bug shows in many problems

std::uint64_t AnySeed() {
  std::random_device device;
  return (static_cast<std::uint64_t>(device()) << 16) % 1'000'000'000'000;
}

int Soak(double minutes, std::uint64_t firstSeed) {
  const support::ScratchDirectory directory;
  property::AgreementCheck check(directory.Path());
  const auto start = Clock::now();
  const auto seconds = [start] {
    return std::chrono::duration<double>(Clock::now() - start).count();
  };
  double nextReport = kReportEvery;
  int disagreements = 0;
  std::uint64_t seed = firstSeed;
  std::printf("first seed %llu\n", static_cast<unsigned long long>(firstSeed));
  for (; seconds() < minutes * 60.0; ++seed) {
    const std::string report = check.Check(seed);
    if (!report.empty()) {
      std::printf("%s\n", report.c_str());
      if (++disagreements == kDisagreementsShown) break;
    }
    if (seconds() >= nextReport) {
      nextReport += kReportEvery;
      std::printf("%.0f s: seeds up to %llu, %d disagreements\n", seconds(),
                  static_cast<unsigned long long>(seed), disagreements);
    }
    std::fflush(stdout);
  }
  std::printf("%s", check.CountsText().c_str());
  std::printf("%llu problems, seeds %llu to %llu, %.0f s, %d disagreements, %zu files left\n",
              static_cast<unsigned long long>(seed - firstSeed),
              static_cast<unsigned long long>(firstSeed), static_cast<unsigned long long>(seed - 1),
              seconds(), disagreements, directory.CountFiles());
  return disagreements == 0 && directory.IsEmpty() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc == 2 || argc == 3) {
      return Soak(std::stod(argv[1]), argc == 3 ? std::stoull(argv[2]) : AnySeed());
    }
    std::fputs("usage: soak MINUTES [SEED]\n", stderr);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "soak: %s\n", error.what());
  }
  return 2;
}
