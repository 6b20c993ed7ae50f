#include <new>

#include <zstd.h>

#include "input/decompression.h"

namespace TQTool {
namespace {

// One zstd frame after another.
class ZstdDecompressor : public Decompressor {
 public:
  ZstdDecompressor() : fStream(ZSTD_createDStream()), fIsComplete(false) {
    if (fStream == nullptr) throw std::bad_alloc();
  }

  const char* GetName() const override { return "zstd"; }
  bool IsComplete() const override { return fIsComplete; }

  void Step(std::span<const char>* in, std::span<char>* out) override {
    ZSTD_inBuffer from = {in->data(), in->size(), 0};
    ZSTD_outBuffer to = {out->data(), out->size(), 0};
    const std::size_t left = ZSTD_decompressStream(fStream.get(), &to, &from);
    *in = in->subspan(from.pos);
    *out = out->subspan(to.pos);
    if (ZSTD_isError(left) != 0) throw DamagedData(ZSTD_getErrorName(left));
    fIsComplete = left == 0;
  }

 private:
  struct Free {
    void operator()(ZSTD_DStream* stream) const { ZSTD_freeDStream(stream); }
  };
  std::unique_ptr<ZSTD_DStream, Free> fStream;
  bool fIsComplete;
};

}  // namespace

std::unique_ptr<Decompressor> MakeZstdDecompressor() {
  return std::make_unique<ZstdDecompressor>();
}

}  // namespace TQTool
