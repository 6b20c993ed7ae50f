#pragma once

#include <string>

namespace TQBinning {

// The banner of both algorithms: name, version and ownership notice.
std::string ComponentVersion();

}  // namespace TQBinning
