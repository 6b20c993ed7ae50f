#pragma once

#include <stdlib.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

// A directory of this run's own, for the library's temporary files: nobody else may read
// it (mode 0700) or foresee its name, and it is removed with its files at the end.
struct PrivateDirectory {
  // Absolute.
  std::string path = std::filesystem::temp_directory_path() / "binning-XXXXXX";

  // Makes it; throws when that fails.
  PrivateDirectory() {
    if (mkdtemp(path.data()) == nullptr) throw std::runtime_error("cannot make " + path);
  }
  PrivateDirectory(const PrivateDirectory&) = delete;
  PrivateDirectory& operator=(const PrivateDirectory&) = delete;
  ~PrivateDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
};
