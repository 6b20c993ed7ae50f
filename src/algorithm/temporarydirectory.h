#pragma once

#include <string>

namespace TQBinning {

// Where temporary files go by default: the directory part of a name from tmpnam.
std::string DefaultTemporaryDirectory();

// Everything before the last '/', or "./" when that is missing or comes first.
std::string DirectoryPart(const std::string& name);

}  // namespace TQBinning
