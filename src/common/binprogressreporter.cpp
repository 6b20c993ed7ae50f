#include "tqbinning/binprogressreporter.h"

#include "tqcommon/missingvalue.h"

ProgressReport::~ProgressReport() = default;

BINProgressReporter::BINProgressReporter() : fIndex(0), fElapsedTime(TQMV::gMissingValue) {}
BINProgressReporter::~BINProgressReporter() = default;

void BINProgressReporter::SetValues(unsigned int index, double elapsedSeconds) {
  fIndex = index;
  fElapsedTime = elapsedSeconds;
}

int BINProgressReporter::DiscreteMeasure(const std::string& name) {
  return name == "IndexVar" ? static_cast<int>(fIndex) : -1;
}

double BINProgressReporter::ScaleMeasure(const std::string& name) {
  return name == "elapsedTime" ? fElapsedTime : TQMV::gMissingValue;
}
