#pragma once

#include <stdlib.h>

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

// Directories and column files for tests.
namespace support {

// A private directory for one test, removed with all that is in it.
class ScratchDirectory {
 public:
  ScratchDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "tqtest-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no scratch directory");
    fPath = name;
  }
  ScratchDirectory(const ScratchDirectory&) = delete;
  ScratchDirectory& operator=(const ScratchDirectory&) = delete;
  ~ScratchDirectory() {
    std::error_code ignored;  // nothing that a test could do about it
    std::filesystem::remove_all(fPath, ignored);
  }

  std::string Path() const { return fPath; }
  std::string File(const std::string& name) const { return fPath + "/" + name; }
  bool IsEmpty() const { return std::filesystem::is_empty(fPath); }
  std::size_t CountFiles() const {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(fPath)) count += entry.exists();
    return count;
  }

 private:
  std::string fPath;
};

// Writes raw doubles, the format of a column file; reads them back.
inline void WriteColumn(const std::string& path, const std::vector<double>& values) {
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(values.data()),
             static_cast<std::streamsize>(values.size() * sizeof(double)));
}

inline std::vector<double> ReadColumn(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::vector<double> values;
  double value = 0.0;
  while (file.read(reinterpret_cast<char*>(&value), sizeof value)) values.push_back(value);
  return values;
}

}  // namespace support
