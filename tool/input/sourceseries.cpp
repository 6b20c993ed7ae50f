#include "input/sourceseries.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "base/plaintext.h"

namespace TQTool {
namespace {

std::string CountOf(std::size_t count) {
  return fmt::format("{} column{}", count, count == 1 ? "" : "s");
}

}  // namespace

SourceSeries::SourceSeries(std::vector<std::string> inputs, Open open)
    : fInputs(std::move(inputs)),
      fOpen(std::move(open)),
      fSources(fInputs.size()),
      fCurrent(0),
      fMark(0),
      fIsMarked(false) {
  OpenCurrent();
  fNames = Current().GetNames();
  fDecimalPoint = Current().GetDecimalPoint();
  fHeaderPlace = Current().LocateHeader();
  fHint = Current().HintForOnlyColumn();
  fName = fmt::format("{} and {} more", fInputNames.front(), fInputs.size() - 1);
}

bool SourceSeries::NextRow() {
  while (!Current().NextRow()) {
    if (!Advance()) return false;
  }
  fFields = Current().GetFields();
  return true;
}

std::string SourceSeries::DescribeRow() const {
  return fmt::format("{} of {}", Current().DescribeRow(), Current().GetName());
}

std::string SourceSeries::LocateField(std::size_t column) const {
  return Current().LocateField(column);
}

void SourceSeries::Mark() {
  fIsMarked = true;
  fMark = fCurrent;
  Current().Mark();
}

void SourceSeries::Rewind() {
  for (std::size_t i = fMark; i <= fCurrent; ++i) fSources[i]->Rewind();
  fCurrent = fMark;
  fIsMarked = false;
}

void SourceSeries::OpenCurrent() {
  fSources[fCurrent] = fOpen(fInputs[fCurrent]);
  fInputNames.push_back(Current().GetName());
}

// Goes on to the next input; false when there is none.
bool SourceSeries::Advance() {
  if (fCurrent + 1 == fInputs.size()) return false;
  if (!fIsMarked) fSources[fCurrent].reset();
  ++fCurrent;
  if (fSources[fCurrent] == nullptr) {
    OpenCurrent();
    CheckNames();
  }
  if (fIsMarked) Current().Mark();
  return true;
}

void SourceSeries::CheckNames() const {
  const std::vector<std::string>& names = Current().GetNames();
  if (names.size() != fNames.size()) {
    Current().FailAtHeader(
        fmt::format("{}; expected {}, as in {}; read files with the same "
                    "columns together, others apart",
                    CountOf(names.size()), fNames.size(), fInputNames.front()));
  }
  const auto [here, there] = std::mismatch(names.begin(), names.end(), fNames.begin());
  if (here == names.end()) return;
  Current().FailAtHeader(
      fmt::format("column {} is named {}; expected {}, as in {}; the columns "
                  "of all files need the same names in the same order",
                  here - names.begin() + 1, Quoted(*here), Quoted(*there), fInputNames.front()));
}

}  // namespace TQTool
