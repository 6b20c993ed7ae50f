#include "input/decompression.h"

#include <utility>
#include <vector>

#include <fmt/format.h>

#include "base/toolerror.h"

namespace TQTool {
namespace {

constexpr std::size_t kBlockSize = std::size_t{1} << 17;
constexpr std::string_view kGzipMark = "\x1F\x8B";
constexpr std::string_view kZstdMark = "\x28\xB5\x2F\xFD";

// Reads compressed bytes and hands out plain ones.
class PlainBytes {
 public:
  PlainBytes(std::unique_ptr<Decompressor> decompressor, std::shared_ptr<ByteStream> compressed,
             std::string name, std::uint64_t maxBytes)
      : fDecompressor(std::move(decompressor)),
        fCompressed(std::move(compressed)),
        fName(std::move(name)),
        fMaxBytes(maxBytes),
        fBytes(0),
        fIsAtEnd(false),
        fBlock(kBlockSize) {}

  std::size_t Read(char* buffer, std::size_t size) {
    for (;;) {
      if (fRest.empty() && !fIsAtEnd) Refill();
      if (fRest.empty() && fDecompressor->IsComplete()) return 0;
      std::span<char> out(buffer, size);
      try {
        fDecompressor->Step(&fRest, &out);
      } catch (const DamagedData& damage) {
        Fail(
            fmt::format("damaged {} data ({}); expected what the compressing program wrote; "
                        "fetch or compress the file again",
                        fDecompressor->GetName(), damage.what()));
      }
      const std::size_t count = size - out.size();
      if (count > 0) return Count(count);
      if (fIsAtEnd && fRest.empty() && !fDecompressor->IsComplete()) {
        Fail(
            fmt::format("the {} data are cut short; expected their end mark; fetch or compress "
                        "the file again",
                        fDecompressor->GetName()));
      }
    }
  }

 private:
  void Refill() {
    const std::size_t count = fCompressed->Read(fBlock.data(), fBlock.size());
    fIsAtEnd = count == 0;
    fRest = std::span<const char>(fBlock.data(), count);
  }

  // Adds to what came out so far.
  std::size_t Count(std::size_t count) {
    fBytes += count;
    if (fBytes > fMaxBytes) {
      Fail(
          fmt::format("more than {} bytes come out of the {} data; expected less; allow more "
                      "with --max-decompressed if the file is to be trusted",
                      fMaxBytes, fDecompressor->GetName()));
    }
    return count;
  }

  [[noreturn]] void Fail(const std::string& message) const {
    throw ToolError(kInput, fmt::format("{}: {}", fName, message));
  }

  std::unique_ptr<Decompressor> fDecompressor;
  std::shared_ptr<ByteStream> fCompressed;
  std::string fName;
  std::uint64_t fMaxBytes;
  std::uint64_t fBytes;  // that came out
  bool fIsAtEnd;         // of the compressed bytes
  std::vector<char> fBlock;
  std::span<const char> fRest;  // of the block
};

}  // namespace

std::unique_ptr<Decompressor> FindDecompressor(std::string_view firstBytes) {
  if (firstBytes.starts_with(kGzipMark)) return MakeGzipDecompressor();
  if (firstBytes.starts_with(kZstdMark)) return MakeZstdDecompressor();
  return nullptr;
}

ReadBlock Decompress(std::unique_ptr<Decompressor> decompressor,
                     std::shared_ptr<ByteStream> compressed, const std::string& name,
                     std::uint64_t maxBytes) {
  const auto plain =
      std::make_shared<PlainBytes>(std::move(decompressor), std::move(compressed), name, maxBytes);
  return [plain](char* buffer, std::size_t size) { return plain->Read(buffer, size); };
}

}  // namespace TQTool
