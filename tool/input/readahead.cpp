#include "input/readahead.h"

#include <system_error>
#include <utility>

#include "base/signals.h"

namespace TQTool {

bool ReadAhead::IsWorthwhile() { return std::thread::hardware_concurrency() > 1; }

ReadAhead::ReadAhead(Fill fill, int recordSize, bool hasThread)
    : fFill(std::move(fill)), fTaken(0), fFilled(0), fIsStopped(false) {
  for (RecordBlock& block : fBlocks) {
    block.records.assign(kBlockRecords, TQCommon::Record(recordSize));
  }
  if (!hasThread) return;
  try {
    fThread = std::thread([this] { Run(); });
  } catch (const std::system_error&) {
    // No thread is to be had: the blocks are filled as they are asked for.
  }
}

ReadAhead::~ReadAhead() {
  if (!fThread.joinable()) return;
  {
    const std::lock_guard lock(fMutex);
    fIsStopped = true;
  }
  fChange.notify_all();
  EndWaits(true);
  fThread.join();
  EndWaits(false);
}

const RecordBlock& ReadAhead::Next() {
  if (!fThread.joinable()) {
    FillAt(fTaken);
    return BlockAt(fTaken++);
  }
  std::unique_lock lock(fMutex);
  ++fTaken;
  fChange.notify_all();
  fChange.wait(lock, [this] { return fFilled >= fTaken; });
  return BlockAt(fTaken - 1);
}

void ReadAhead::Run() {
  for (std::size_t number = 0;; ++number) {
    {
      // The block in use, number fTaken - 1, must not be filled again.
      std::unique_lock lock(fMutex);
      fChange.wait(lock, [&] { return fIsStopped || number + 1 < fTaken + kBlocks; });
      if (fIsStopped) return;
    }
    FillAt(number);
    const bool isLast = BlockAt(number).isLast;
    {
      const std::lock_guard lock(fMutex);
      ++fFilled;
    }
    fChange.notify_all();
    if (isLast) return;
  }
}

void ReadAhead::FillAt(std::size_t number) {
  RecordBlock& block = BlockAt(number);
  block.count = 0;
  block.isLast = false;
  try {
    fFill(block);
  } catch (...) {
    block.isLast = true;
    block.error = std::current_exception();
  }
}

}  // namespace TQTool
