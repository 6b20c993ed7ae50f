#include "algorithm/componentversion.h"

namespace TQBinning {

std::string ComponentVersion() {
  return "Supervised Binning Component Ver. 1.0\n"
         "Copyright 2026 the tqbinning authors. Licensed under the Apache License, Version 2.0.";
}

}  // namespace TQBinning
