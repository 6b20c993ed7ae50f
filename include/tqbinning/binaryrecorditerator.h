#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>

#include "tqbinning/export.h"

namespace TQBinning {

// Reads one temporary column file: doubles in the machine's byte order, without
// header.  One value is always read ahead, so that HasMore needs no read.  Closes
// its file and never removes it.  Not copyable; created and destroyed by its
// concrete type only (no virtual destructor).
class TQBINNING_EXPORT BinaryRecordIterator {
 public:
  // Opens the file and reads its first value ahead.  A file that cannot be opened
  // is told on standard output and leaves the iterator failed.
  explicit BinaryRecordIterator(const std::string& path);
  BinaryRecordIterator(const BinaryRecordIterator&) = delete;
  BinaryRecordIterator& operator=(const BinaryRecordIterator&) = delete;
  ~BinaryRecordIterator();

  virtual bool HasMore() const;  // GetFailReason() == 0
  // The next value; 0.0 when there is none.
  virtual double Next();
  // 0 while values remain, 1 at the end of the file, 3 after a failure to open or
  // read (a partial last value included), 4 final.
  virtual int GetFailReason() const;
  // Starts again from the first value and returns the fail reason; final stays.
  virtual int NewPass();

  // Hands out the next values, at most `count` of them, exactly those that as many
  // calls of Next would, and leaves the same state behind; how many there were.
  // Reads a block at a time, so it is the way to read a whole file.
  std::size_t NextBlock(double* values, std::size_t count);

  // Whether the system failed to hand out what the file holds, as a broken disk does; a
  // file that ends too early is none of that.
  bool HasReadError() const { return fFile != nullptr && std::ferror(fFile.get()) != 0; }

  // Moves the value read ahead into place and reads another; the fail reason.
  int NextRecord();

 protected:
  struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  int ReasonForShortRead(std::size_t oddBytes) const;

  double fCurrent;                               // handed out last
  double fLookahead;                             // read ahead
  std::unique_ptr<std::FILE, FileCloser> fFile;  // null when it could not be opened
  int fCount;                                    // values per read, always 1
  int fFailReason;
  std::string fPath;
};

}  // namespace TQBinning
