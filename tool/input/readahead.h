#pragma once

#include <array>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include <tqcommon/tqcommon.h>

namespace TQTool {

// Some cases in a row, and what came after them.
struct RecordBlock {
  std::vector<TQCommon::Record> records;
  std::size_t count = 0;     // of the records, those that are filled
  bool isLast = false;       // no case follows
  std::exception_ptr error;  // why, when it is not the end of the input
};

// Has blocks of cases filled one after another, by a thread of its own where that
// can run beside the caller's: a few blocks ahead, so that memory stays bounded.
// Without such a thread each block is filled when it is asked for.
class ReadAhead {
 public:
  static constexpr std::size_t kBlockRecords = 512;

  // Fills a block's records, count and isLast; may throw.
  using Fill = std::function<void(RecordBlock& block)>;

  // Whether there is a second processor to read on.
  static bool IsWorthwhile();

  ReadAhead(Fill fill, int recordSize, bool hasThread);
  ReadAhead(const ReadAhead&) = delete;
  ReadAhead& operator=(const ReadAhead&) = delete;
  // Ends the reading, even one that waits for input.
  ~ReadAhead();

  // The next block, which stays until the next call.  Not to be called after the
  // last block.
  const RecordBlock& Next();

 private:
  static constexpr std::size_t kBlocks = 4;

  void Run();
  void FillAt(std::size_t number);
  RecordBlock& BlockAt(std::size_t number) { return fBlocks[number % kBlocks]; }

  Fill fFill;
  std::array<RecordBlock, kBlocks> fBlocks;
  std::size_t fTaken;   // blocks handed out; the last of them is still in use
  std::size_t fFilled;  // blocks filled
  bool fIsStopped;
  std::mutex fMutex;  // guards the three above
  std::condition_variable fChange;
  std::thread fThread;  // after everything that it uses
};

}  // namespace TQTool
