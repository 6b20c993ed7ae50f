#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "algorithm/binningrun.h"

// When a run asks whether it is cancelled, whom it tells what, and what it keeps: told
// once more in the plainest way, for comparison.  Nothing is computed.
namespace support {

enum class Outcome { kOK, kWarning, kError, kRejected };

// An attribute to be binned, by a target (supervised), and how that has to end.
struct Wish {
  int attribute;
  int target;
  Outcome outcome = Outcome::kOK;
};

struct Plan {
  std::string columns;  // one letter for each, see RowsOf
  std::string steps;    // of the iterator: k a case that is kept, d one that is dropped, n none
  std::vector<Wish> wishes;  // in the order of binning
  bool isNamed = false;      // the wishes are given as lists of indices
  bool isPreBinned = false;
};

// How often the listener is called.
struct Pace {
  int cases;
  int skippedAttributes;
};

// The variables of a plan, as VarList knows them.
inline std::string LettersOf(const Plan& plan) {
  std::string letters;
  for (const char column : plan.columns) {
    letters += column == 't'                    ? 'y'
               : column == 'g' || column == 'u' ? 'c'
               : column == 'w'                  ? 'w'
                                                : 'x';
  }
  return letters;
}

// r all values differ, h with holes, c constant, m all missing, t target, g another
// category, u one with a code that the list does not declare, w weight.
inline double ValueOf(char column, int row, bool isKept) {
  switch (column) {
    case 'h': return row % 3 == 0 ? kMissing : row % 3 == 1 ? kNaN : row;
    case 'c': return 5.0;
    case 'm': return kMissing;
    case 't': return row < 4 ? 0.0 : 1.0;
    case 'g': return row < 3 ? 1.0 : 0.0;
    case 'u': return row % 3;
    case 'w': return isKept ? 1 + row % 3 : row % 2 == 0 ? 0.25 : kMissing;
    default: return row;
  }
}

inline Rows RowsOf(const Plan& plan) {
  Rows rows;
  for (const char step : plan.steps) {
    if (step == 'n') continue;
    const int row = static_cast<int>(rows.size());
    rows.emplace_back();
    for (const char column : plan.columns) {
      rows.back().push_back(ValueOf(column, row, step == 'k'));
    }
  }
  return rows;
}

// One algorithm object whose host's query says yes at the nth poll (from 1; 0: never).
class PlainCourse {
 public:
  PlainCourse(const Plan& plan, Pace pace, int yesAt) : fPlan(plan), fPace(pace), fYesAt(yesAt) {}

  TQStatus CreateBins() {
    if (!IsCancelled()) {
      const TQStatus status = fHasRead ? OK() : Read();
      fHasRead = true;
      if (status.IsError()) return status;
      Bin();
    }
    if (IsCancelled()) return Error(1);
    return fIsAllOK ? OK() : Warning(120018);
  }

  bool IsCancelled() {
    fIsCancelled = fIsCancelled || ++fPolls == fYesAt;
    return fIsCancelled;
  }
  int Polls() const { return fPolls; }
  const Indices& Reports() const { return fReports; }
  // The wishes whose results are stored, in that order.
  const std::vector<std::size_t>& Stored() const { return fStored; }

 private:
  TQStatus Read() {
    int processed = 0;
    int kept = 0;
    int countdown = fPace.cases;
    for (const char step : fPlan.steps) {
      if (IsCancelled()) break;
      if (step != 'n') ++processed;
      if (step == 'k') ++kept;
      if (--countdown == 0) {
        fReports.push_back(processed);
        countdown = fPace.cases;
      }
    }
    if (kept == 0) return Error(120004);
    return IsCancelled() ? Error(1) : OK();
  }

  void Bin() {
    int countdown = fPace.skippedAttributes;
    for (std::size_t i = 0; i < fPlan.wishes.size(); ++i) {
      if (fPlan.wishes[i].outcome == Outcome::kRejected) {
        fStored.push_back(i);
        continue;
      }
      const Outcome outcome = BinOne(i);
      if (countdown-- < 1 && outcome != Outcome::kError) {
        fReports.push_back(fPlan.wishes[i].attribute);
        countdown = fPace.skippedAttributes;
      }
    }
  }

  Outcome BinOne(std::size_t i) {
    const Outcome outcome = fPlan.wishes[i].outcome;
    if (!IsCancelled()) {
      fStored.push_back(i);
      fIsAllOK = fIsAllOK && outcome == Outcome::kOK;
    }
    return IsCancelled() ? Outcome::kError : outcome;
  }

  const Plan& fPlan;
  Pace fPace;
  int fYesAt;
  int fPolls = 0;
  bool fIsCancelled = false;
  bool fHasRead = false;
  bool fIsAllOK = true;
  Indices fReports;
  std::vector<std::size_t> fStored;
};

}  // namespace support
