#include <new>

#include <zlib.h>

#include "input/decompression.h"

namespace TQTool {
namespace {

constexpr int kGzipOnly = 16;  // added to the window size: expect a gzip header

// One gzip member after another.
class GzipDecompressor : public Decompressor {
 public:
  GzipDecompressor() : fStream{}, fIsComplete(false) {
    if (inflateInit2(&fStream, MAX_WBITS + kGzipOnly) != Z_OK) throw std::bad_alloc();
  }
  GzipDecompressor(const GzipDecompressor&) = delete;
  GzipDecompressor& operator=(const GzipDecompressor&) = delete;
  ~GzipDecompressor() override { inflateEnd(&fStream); }

  const char* GetName() const override { return "gzip"; }
  bool IsComplete() const override { return fIsComplete; }

  void Step(std::span<const char>* in, std::span<char>* out) override {
    if (fIsComplete) inflateReset(&fStream);
    fIsComplete = false;
    // The library reads from `next_in` but takes no pointer to const.
    fStream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(in->data()));
    fStream.avail_in = static_cast<uInt>(in->size());
    fStream.next_out = reinterpret_cast<Bytef*>(out->data());
    fStream.avail_out = static_cast<uInt>(out->size());
    const int result = inflate(&fStream, Z_NO_FLUSH);
    *in = in->last(fStream.avail_in);
    *out = out->last(fStream.avail_out);
    if (result == Z_MEM_ERROR) throw std::bad_alloc();
    fIsComplete = result == Z_STREAM_END;
    // Z_BUF_ERROR: nothing more to do without more bytes.
    if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR) {
      throw DamagedData(fStream.msg != nullptr ? fStream.msg : "unreadable");
    }
  }

 private:
  z_stream fStream;
  bool fIsComplete;
};

}  // namespace

std::unique_ptr<Decompressor> MakeGzipDecompressor() {
  return std::make_unique<GzipDecompressor>();
}

}  // namespace TQTool
