#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>

#include "input/bytestream.h"

namespace TQTool {

// Compressed bytes that make no sense; says what is wrong with them.
class DamagedData : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// One way of compressing.
class Decompressor {
 public:
  virtual ~Decompressor() = default;

  // Its name, for messages.
  virtual const char* GetName() const = 0;

  // Turns compressed bytes from the front of `in` into plain ones at the front of
  // `out`, as many as fit, and takes both away.  Throws DamagedData.
  virtual void Step(std::span<const char>* in, std::span<char>* out) = 0;

  // Whether the compressed data may end here.
  virtual bool IsComplete() const = 0;
};

std::unique_ptr<Decompressor> MakeGzipDecompressor();
std::unique_ptr<Decompressor> MakeZstdDecompressor();

// The way in which data that begin like this are compressed; null when they are not.
std::unique_ptr<Decompressor> FindDecompressor(std::string_view firstBytes);
constexpr std::size_t kCompressionMark = 4;  // how many bytes tell

// The plain bytes of `compressed`, which is called `name` in messages.  Reading
// throws ToolError (kInput) for data that are damaged or cut short, and when more
// than `maxBytes` come out.
ReadBlock Decompress(std::unique_ptr<Decompressor> decompressor,
                     std::shared_ptr<ByteStream> compressed, const std::string& name,
                     std::uint64_t maxBytes);

}  // namespace TQTool
