#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace TQTool {

// Fills (a part of) the buffer and returns the number of bytes, 0 at the end.
using ReadBlock = std::function<std::size_t(char* buffer, std::size_t size)>;

// Bytes one after another, with a look at those that come next.
class ByteStream {
 public:
  explicit ByteStream(ReadBlock read) : fRead(std::move(read)), fTaken(0) {}

  // The next bytes, which stay to be read: `size` of them, or fewer at the end.
  // Valid until the next call.
  std::string_view Peek(std::size_t size);

  // Reads up to `size` bytes, at least one unless the end is reached.
  std::size_t Read(char* buffer, std::size_t size);

 private:
  ReadBlock fRead;
  std::string fAhead;  // looked at and not yet read, from fTaken on
  std::size_t fTaken;
};

}  // namespace TQTool
