#include "input/bytestream.h"

#include <algorithm>

namespace TQTool {

std::string_view ByteStream::Peek(std::size_t size) {
  fAhead.erase(0, std::exchange(fTaken, 0));
  while (fAhead.size() < size) {
    const std::size_t known = fAhead.size();
    fAhead.resize(size);
    const std::size_t count = fRead(fAhead.data() + known, size - known);
    fAhead.resize(known + count);
    if (count == 0) break;
  }
  return std::string_view(fAhead).substr(0, size);
}

std::size_t ByteStream::Read(char* buffer, std::size_t size) {
  if (fTaken == fAhead.size()) return fRead(buffer, size);
  const std::size_t count = fAhead.copy(buffer, size, fTaken);
  fTaken += count;
  return count;
}

}  // namespace TQTool
