#pragma once

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tqbinning/binoutput.h"
#include "tqbinning/efbinoutput.h"

// The words that the tests of both outputs share.
namespace outputs {

using Numbers = std::vector<double>;
using TQBinning::TQStatus;

inline TQStatus OK() { return TQStatus(); }
inline TQStatus Error(long code) { return TQStatus(code, false); }
inline TQStatus Warning(long code) { return TQStatus(code, true); }

inline std::vector<BINAttributeTargetResults> AllOf(const BINOutput& output) {
  std::vector<BINAttributeTargetResults> all;
  EXPECT_EQ(OK(), output.GetAllCutPoints(all));
  return all;
}
inline std::vector<BINAttributeResults> AllOf(const EFBINOutput& output) {
  std::vector<BINAttributeResults> all;
  EXPECT_EQ(OK(), output.GetAllCutPoints(all));
  return all;
}

template <typename Shown>
std::string TextOf(const Shown& shown) {
  std::ostringstream os;
  shown.Display(os);
  return os.str();
}

}  // namespace outputs
