#include "algorithm/temporarydirectory.h"

#include <cstdio>

namespace TQBinning {

std::string DirectoryPart(const std::string& name) {
  const std::size_t slash = name.rfind('/');
  return slash == std::string::npos || slash == 0 ? "./" : name.substr(0, slash);
}

std::string DefaultTemporaryDirectory() {
  // Only the directory is used, so another process that takes the same name first,
  // the danger that the linker warns of, does no harm.
  char buffer[L_tmpnam];  // a buffer of our own makes the call safe among threads
  const char* const name = std::tmpnam(buffer);
  return DirectoryPart(name == nullptr ? "" : name);
}

}  // namespace TQBinning
