// Tries a fuzz target with every file of the directories named: what fuzzers once kept
// is tested by every compiler.  Exit status 2 when there is no file.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/target.h"

namespace {

std::vector<std::filesystem::path> FilesOf(const std::filesystem::path& directory) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(directory)) {
    files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

void Try(const std::filesystem::path& path) {
  std::printf("%s\n", path.c_str());  // the last one printed is the one at fault
  std::fflush(stdout);
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
  int tried = 0;
  for (int i = 1; i < argc; ++i) {
    for (const std::filesystem::path& path : FilesOf(argv[i])) {
      Try(path);
      ++tried;
    }
  }
  std::printf("%d inputs\n", tried);
  return tried > 0 ? 0 : 2;
}
