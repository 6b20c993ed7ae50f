// Column files of any length: values one by one, in blocks and from the beginning again,
// against the same bytes kept in memory.

#include <bit>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

#include "fuzz/bytes.h"
#include "fuzz/target.h"
#include "tqbinning/binaryrecorditerator.h"

namespace {

using fuzz::Require;
using TQBinning::BinaryRecordIterator;

// A file in memory, as long as it lives.
class MemoryFile {
 public:
  explicit MemoryFile(const std::string& content) : fFile(memfd_create("column", MFD_CLOEXEC)) {
    const auto size = static_cast<ssize_t>(content.size());
    if (fFile < 0 || write(fFile, content.data(), content.size()) != size) {
      throw std::runtime_error("no file in memory");
    }
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { close(fFile); }

  std::string Path() const { return "/proc/self/fd/" + std::to_string(fFile); }

 private:
  int fFile;
};

// What the reader should do, plainly.
class PlainColumn {
 public:
  explicit PlainColumn(const std::string& bytes)
      : fValues(bytes.size() / sizeof(double)),
        fReasonAtEnd(bytes.size() % sizeof(double) == 0 ? kEndOfFile : kFailed) {
    // An empty vector has no place to copy to.
    if (!fValues.empty())
      std::memcpy(fValues.data(), bytes.data(), fValues.size() * sizeof(double));
  }

  bool HasMore() const { return fPosition < fValues.size(); }
  int FailReason() const { return HasMore() ? 0 : fReasonAtEnd; }
  double Next() { return HasMore() ? fValues[fPosition++] : 0.0; }
  void NewPass() { fPosition = 0; }

 private:
  static constexpr int kEndOfFile = 1;
  static constexpr int kFailed = 3;

  std::vector<double> fValues;
  int fReasonAtEnd;
  std::size_t fPosition = 0;
};

void RequireSame(double expected, double found) {
  Require(std::bit_cast<std::uint64_t>(expected) == std::bit_cast<std::uint64_t>(found),
          "another value than the file holds");
}

void ReadBlock(BinaryRecordIterator& reader, PlainColumn& plain, std::size_t count) {
  std::vector<double> block(count + 1);  // room at least, to have a place
  const std::size_t got = reader.NextBlock(block.data(), count);
  Require(got <= count, "more values than were asked for");
  for (std::size_t i = 0; i < got; ++i) {
    Require(plain.HasMore(), "values behind the end");
    RequireSame(plain.Next(), block[i]);
  }
  Require(got == count || !plain.HasMore(), "a block that ends too early");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Bytes bytes(data, size);
  const std::string steps = bytes.Text(32);
  const std::string content = bytes.Rest();
  const MemoryFile file(content);
  PlainColumn plain(content);
  BinaryRecordIterator reader(file.Path());
  for (const char step : steps) {
    const auto number = static_cast<unsigned char>(step);
    if (number < 96) {
      RequireSame(plain.Next(), reader.Next());
    } else if (number < 224) {
      ReadBlock(reader, plain, number - 96);
    } else {
      plain.NewPass();
      Require(reader.NewPass() == plain.FailReason(), "another state after a new pass");
    }
    Require(reader.HasMore() == plain.HasMore(), "values where there are none, or none where");
    Require(reader.GetFailReason() == plain.FailReason(), "another reason to stop");
  }
  Require(!reader.HasReadError(), "a read error of a file that can be read");
  return 0;
}
