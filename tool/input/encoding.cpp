#include "input/encoding.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <iconv.h>

#include "base/plaintext.h"
#include "base/toolerror.h"

namespace TQTool {
namespace {

constexpr std::size_t kBlockSize = std::size_t{1} << 16;

// The system's converter from an encoding to UTF-8.
class Iconv {
 public:
  explicit Iconv(const std::string& encoding) : fHandle(iconv_open("UTF-8", encoding.c_str())) {}
  Iconv(const Iconv&) = delete;
  Iconv& operator=(const Iconv&) = delete;
  ~Iconv() {
    if (IsOpen()) iconv_close(fHandle);
  }

  bool IsOpen() const { return reinterpret_cast<std::intptr_t>(fHandle) != -1; }

  // Appends what it makes of `*encoded`, of which the rest is left.  Returns 0 when that
  // is nothing, EINVAL when it is a part of a character, else EILSEQ.  Null: the end, at
  // which some encodings still owe a character.
  int Convert(std::string_view* encoded, std::string* plain) {
    char* in = encoded == nullptr ? nullptr : const_cast<char*>(encoded->data());
    std::size_t size = encoded == nullptr ? 0 : encoded->size();
    std::size_t room = 4 * size + 16;  // enough for nearly all
    int problem = E2BIG;
    while (problem == E2BIG) {
      const std::size_t before = plain->size();
      plain->resize(before + room);
      char* out = plain->data() + before;
      const bool isDone = iconv(fHandle, encoded == nullptr ? nullptr : &in, &size, &out, &room) !=
                          static_cast<std::size_t>(-1);
      problem = isDone ? 0 : errno;
      plain->resize(plain->size() - room);
      room = kBlockSize;
    }
    if (encoded != nullptr) encoded->remove_prefix(encoded->size() - size);
    return problem;
  }

 private:
  iconv_t fHandle;
};

// Reads encoded bytes and hands out plain ones.
class Converter {
 public:
  Converter(const std::string& encoding, std::shared_ptr<ByteStream> encoded, std::string name)
      : fIconv(encoding),
        fEncoding(encoding),
        fEncoded(std::move(encoded)),
        fName(std::move(name)),
        fBlock(kBlockSize),
        fLeft(0),
        fBytes(0),
        fTaken(0) {}

  std::size_t Read(char* buffer, std::size_t size) {
    while (fTaken == fPlain.size()) {
      fPlain.clear();
      fTaken = 0;
      if (!ConvertBlock()) break;
    }
    const std::size_t count = fPlain.copy(buffer, size, fTaken);
    fTaken += count;
    return count;
  }

 private:
  // Makes plain text of the bytes that come next; false when there are none.
  bool ConvertBlock() {
    const std::size_t count = fEncoded->Read(fBlock.data() + fLeft, fBlock.size() - fLeft);
    if (count == 0) {
      if (fLeft > 0) Fail();
      fIconv.Convert(nullptr, &fPlain);
      return false;
    }
    std::string_view rest(fBlock.data(), fLeft + count);
    const std::size_t size = rest.size();
    const int problem = fIconv.Convert(&rest, &fPlain);
    fBytes += size - rest.size();
    if (problem != 0 && problem != EINVAL) Fail();
    std::copy(rest.begin(), rest.end(), fBlock.begin());
    fLeft = rest.size();
    return true;
  }

  [[noreturn]] void Fail() const {
    throw ToolError(kInput,
                    fmt::format("{}: byte {} begins no character of the encoding {}; expected text "
                                "in it; name the encoding that the text is in with --encoding",
                                fName, fBytes + 1, Quoted(fEncoding)));
  }

  Iconv fIconv;
  std::string fEncoding;
  std::shared_ptr<ByteStream> fEncoded;
  std::string fName;
  std::vector<char> fBlock;  // begins with a part of a character: so many bytes
  std::size_t fLeft;
  std::uint64_t fBytes;  // of the characters before
  std::string fPlain;    // handed out up to here
  std::size_t fTaken;
};

}  // namespace

bool IsEncoding(const std::string& encoding) {
  // An empty name is the locale's encoding; behind a slash stands leave to lose characters.
  const bool isName = !encoding.empty() && encoding.find('/') == std::string::npos;
  return isName && Iconv(encoding).IsOpen();
}

ReadBlock ConvertToUtf8(const std::string& encoding, std::shared_ptr<ByteStream> encoded,
                        const std::string& name) {
  const auto converter = std::make_shared<Converter>(encoding, std::move(encoded), name);
  return [converter](char* buffer, std::size_t size) { return converter->Read(buffer, size); };
}

}  // namespace TQTool
