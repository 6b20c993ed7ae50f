#include "tqbinning/binaryrecorditerator.h"

namespace TQBinning {

namespace {

enum FailReason : int { kNone = 0, kEndOfFile = 1, kFailed = 3, kFinal = 4 };

}  // namespace

BinaryRecordIterator::BinaryRecordIterator(const std::string& path)
    : fCurrent(0.0),
      fLookahead(0.0),
      fFile(std::fopen(path.c_str(), "rb")),
      fCount(1),
      fFailReason(kNone),
      fPath(path) {
  if (fFile == nullptr) {
    std::fputs("Error: file handle is NULL in BinaryRecordIterator constructor", stdout);
    fFailReason = kFailed;
    return;
  }
  fFailReason = NextRecord();
}

BinaryRecordIterator::~BinaryRecordIterator() = default;

bool BinaryRecordIterator::HasMore() const { return fFailReason == kNone; }

double BinaryRecordIterator::Next() {
  if (fFailReason != kNone) return 0.0;
  fFailReason = NextRecord();
  return fCurrent;
}

int BinaryRecordIterator::GetFailReason() const { return fFailReason; }

int BinaryRecordIterator::NewPass() {
  if (fFailReason == kFinal) return kFinal;
  if (fFile == nullptr) return fFailReason;  // nothing to rewind
  std::rewind(fFile.get());
  fFailReason = kNone;
  fFailReason = NextRecord();
  return fFailReason;
}

int BinaryRecordIterator::NextRecord() {
  fCurrent = fLookahead;
  if (fFailReason != kNone) return fFailReason;
  // Bytes rather than values are counted, to tell a partial last value from none.
  const std::size_t wanted = sizeof(double) * static_cast<std::size_t>(fCount);
  const std::size_t got = std::fread(&fLookahead, 1, wanted, fFile.get());
  if (got == wanted) return kNone;
  fFailReason = got == 0 && std::feof(fFile.get()) != 0 ? kEndOfFile : kFailed;
  return fFailReason;
}

}  // namespace TQBinning
