#pragma once

#include "algorithm/nlogn.h"
#include "algorithm/wholeweightrows.h"

namespace TQBinning {

// What the fast cut search keeps from one attribute to the next.
struct CutSearchMemory {
  WholeWeightRows rows;
  NLogN nLogN;
};

}  // namespace TQBinning
