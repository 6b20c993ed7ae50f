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

std::size_t BinaryRecordIterator::NextBlock(double* values, std::size_t count) {
  if (fFailReason != kNone || count == 0) return 0;
  // The value read ahead comes first, and the one after the last is read ahead.
  values[0] = fLookahead;
  const std::size_t wanted = (count - 1) * sizeof(double);
  const std::size_t got = std::fread(values + 1, 1, wanted, fFile.get());
  if (got == wanted) {
    fLookahead = values[count - 1];
    fFailReason = NextRecord();
    return count;
  }
  fFailReason = ReasonForShortRead(got % sizeof(double));
  fCurrent = values[got / sizeof(double)];
  return got / sizeof(double) + 1;
}

int BinaryRecordIterator::ReasonForShortRead(std::size_t oddBytes) const {
  return oddBytes == 0 && std::feof(fFile.get()) != 0 ? kEndOfFile : kFailed;
}

int BinaryRecordIterator::NextRecord() {
  fCurrent = fLookahead;
  if (fFailReason != kNone) return fFailReason;
  // Bytes rather than values are counted, to tell a partial last value from none.
  const std::size_t wanted = sizeof(double) * static_cast<std::size_t>(fCount);
  const std::size_t got = std::fread(&fLookahead, 1, wanted, fFile.get());
  if (got == wanted) return kNone;
  fFailReason = ReasonForShortRead(got);
  return fFailReason;
}

}  // namespace TQBinning
