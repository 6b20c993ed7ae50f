#include "tqbinning/bindatacache.h"

#include <algorithm>
#include <exception>

#include "tqcommon/missingvalue.h"

namespace {

std::size_t Count(int n) { return static_cast<std::size_t>(std::max(n, 0)); }

}  // namespace

BINDataCache::BINDataCache() : BINDataCache(0, 0) {}

BINDataCache::BINDataCache(int rows, int cols)
    : fStatus(kHasRoom),
      fRows(std::max(rows, 0)),
      fCols(std::max(cols, 0)),
      fData(Count(rows) * Count(cols), 0.0),
      fFillCounts(Count(rows), 0U) {}

BINDataCache::BINDataCache(const BINDataCache&) = default;
BINDataCache& BINDataCache::operator=(const BINDataCache&) = default;
BINDataCache::~BINDataCache() = default;

bool BINDataCache::Resize(int rows, int cols) {
  if (rows < 0 || cols < 0) return false;
  try {
    fData.reserve(Count(rows) * Count(cols));
    fFillCounts.reserve(Count(rows));
  } catch (const std::exception&) {
    return false;
  }
  fData.resize(Count(rows) * Count(cols), 0.0);
  fFillCounts.resize(Count(rows), 0U);
  fRows = rows;
  fCols = cols;
  fStatus = kHasRoom;
  return true;
}

void BINDataCache::Flush() {
  std::fill(fFillCounts.begin(), fFillCounts.end(), 0U);
  fStatus = kHasRoom;
}

bool BINDataCache::HasRow(int row) const { return 0 <= row && row < fRows; }
bool BINDataCache::HasCol(int col) const { return 0 <= col && col < fCols; }

std::size_t BINDataCache::PositionOf(int row, int col) const {
  return Count(row) * Count(fCols) + Count(col);
}

double BINDataCache::GetElem(int row, int col) const {
  return HasRow(row) && HasCol(col) ? fData[PositionOf(row, col)] : TQMV::gMissingValue;
}

bool BINDataCache::SetElem(int row, int col, double value) {
  if (!HasRow(row) || !HasCol(col)) return false;
  fData[PositionOf(row, col)] = value;
  return true;
}

bool BINDataCache::AddElem(int row, double value) {
  if (!HasRow(row)) return false;
  unsigned int& count = fFillCounts[Count(row)];
  fData[PositionOf(row, 0) + count] = value;
  ++count;
  if (count == static_cast<unsigned int>(fCols)) fStatus = kBlockReady;
  return true;
}

bool BINDataCache::SetRow(int row, const std::vector<double>& values) {
  if (!HasRow(row) || values.size() != Count(fCols)) return false;
  std::copy(values.begin(), values.end(), GetRowPtr(row));
  return true;
}

bool BINDataCache::SetCol(int col, const std::vector<double>& values) {
  if (!HasCol(col) || values.size() != Count(fRows)) return false;
  for (int row = 0; row < fRows; ++row) fData[PositionOf(row, col)] = values[Count(row)];
  return true;
}

bool BINDataCache::GetRow(int row, std::vector<double>& out) const {
  if (!HasRow(row)) return false;
  const double* const first = GetRowPtr(row);
  out.assign(first, first + fCols);
  return true;
}

bool BINDataCache::GetCol(int col, std::vector<double>& out) const {
  if (!HasCol(col)) return false;
  out.resize(Count(fRows));
  for (int row = 0; row < fRows; ++row) out[Count(row)] = fData[PositionOf(row, col)];
  return true;
}

double* BINDataCache::GetRowPtr(int row) {
  return HasRow(row) ? fData.data() + PositionOf(row, 0) : nullptr;
}

const double* BINDataCache::GetRowPtr(int row) const {
  return HasRow(row) ? fData.data() + PositionOf(row, 0) : nullptr;
}

double* BINDataCache::GetColPtr(int col) {
  return HasCol(col) ? fData.data() + PositionOf(0, col) : nullptr;
}

unsigned int BINDataCache::GetRowSize(int row) const {
  return HasRow(row) ? fFillCounts[Count(row)] : 0U;
}

bool BINDataCache::SetRowSize(int row, unsigned int count) {
  if (!HasRow(row) || count > static_cast<unsigned int>(fCols)) return false;
  fFillCounts[Count(row)] = count;
  if (count == static_cast<unsigned int>(fCols)) fStatus = kBlockReady;
  return true;
}

int BINDataCache::GetNRows() const { return fRows; }
int BINDataCache::GetNCols() const { return fCols; }
BINDataCache::CacheStatus BINDataCache::GetStatus() const { return fStatus; }
void BINDataCache::SetStatus(CacheStatus status) { fStatus = status; }
bool BINDataCache::IsAvailable() { return fStatus == kBlockReady; }
