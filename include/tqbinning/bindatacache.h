#pragma once

#include <vector>

#include "tqbinning/export.h"

// A matrix of doubles, stored row by row in one block, with a fill count per
// row: the data pass appends to its rows, takes a full block out and empties it.
// Copies are deep.
class TQBINNING_EXPORT BINDataCache {
 public:
  enum CacheStatus : int {  // what the last operation left
    kHasRoom = 0,
    kBlockReady = 2  // AddElem has filled a row
  };

  // No rows, no columns.
  BINDataCache();
  // Zeros, nothing filled.  A negative number counts as 0.
  BINDataCache(int rows, int cols);
  BINDataCache(const BINDataCache&);
  BINDataCache& operator=(const BINDataCache&);
  ~BINDataCache();

  // Changes the dimensions and sets the status to kHasRoom; new elements are 0.
  // False, with nothing changed: a negative argument, or no memory.
  bool Resize(int rows, int cols);
  // Empties all rows (the data stay) and sets the status to kHasRoom.
  void Flush();

  // An element; TQMV::gMissingValue out of range.
  double GetElem(int row, int col) const;
  // Sets an element; false out of range.
  bool SetElem(int row, int col, double value);
  // Appends to a row; false for a row out of range.  Whether the row has room is
  // not checked: once the status is kBlockReady, Flush before appending again.
  bool AddElem(int row, double value);

  // Copy a whole row or column in or out, whatever its fill count.  False out of
  // range, or (inwards) for a vector of another length; nothing changes then.
  bool SetRow(int row, const std::vector<double>& values);
  bool SetCol(int col, const std::vector<double>& values);
  bool GetRow(int row, std::vector<double>& out) const;
  bool GetCol(int col, std::vector<double>& out) const;

  // The first element of a row, or of a column (its elements are GetNCols()
  // apart), owned by the cache; null out of range.
  double* GetRowPtr(int row);
  const double* GetRowPtr(int row) const;
  double* GetColPtr(int col);

  // How many values AddElem has appended to the row; 0 out of range.
  unsigned int GetRowSize(int row) const;
  // Declares the first `count` values of a row filled, after they were written
  // through GetRowPtr.  False for a row out of range or more values than columns.
  bool SetRowSize(int row, unsigned int count);
  int GetNRows() const;
  int GetNCols() const;
  CacheStatus GetStatus() const;
  void SetStatus(CacheStatus status);  // stores whatever it is given
  bool IsAvailable();                  // status is kBlockReady

 private:
  bool HasRow(int row) const;
  bool HasCol(int col) const;
  std::size_t PositionOf(int row, int col) const;

  CacheStatus fStatus;
  int fRows;
  int fCols;
  std::vector<double> fData;              // element (r, c) at r * fCols + c
  std::vector<unsigned int> fFillCounts;  // one per row
};
