#pragma once

#include <iosfwd>
#include <string>

#include "tqbinning/export.h"

// A range of numbers, both ends always included.  An end without a bound is
// stored as the largest finite double of its sign.  A plain value.
class TQBINNING_EXPORT BINNumericInterval {
 public:
  // [0, 0].
  BINNumericInterval();
  // [left, right], stored without any test.
  BINNumericInterval(double left, double right);
  // Unbounded on one side: up to `end`, or from `end` on.
  BINNumericInterval(double end, bool isUpperEnd);

  // Each stores the end and returns whether left <= right now holds; the end is
  // stored even when it does not.
  bool SetLeftEnd(double end);
  bool SetRightEnd(double end);
  double GetLeftEnd() const;
  double GetRightEnd() const;

  // Whether the end is exactly the largest finite double of its sign.
  bool IsLeftEndInfinite() const;
  bool IsRightEndInfinite() const;

  bool IsEmpty() const;                                    // left > right
  bool Contains(double value) const;                       // never true for NaN
  bool operator==(const BINNumericInterval& other) const;  // both ends equal

  // One line, for example "BINNumericInterval: [ -5, -1 ]".
  std::ostream& Display(std::ostream& os) const;

 private:
  double fLeftEnd;
  double fRightEnd;
};

// A range of strings in byte order, each end included or not.  A plain value,
// offered to hosts; no user-missing definition holds one.
class TQBINNING_EXPORT BINStringInterval {
 public:
  // From "." to ".", both included.
  BINStringInterval();
  BINStringInterval(const std::string& left, bool leftIncluded, const std::string& right,
                    bool rightIncluded);

  // Each stores the end with its flag and returns whether the interval now holds
  // any string at all.
  bool SetLeftEnd(const std::string& end, bool included);
  bool SetRightEnd(const std::string& end, bool included);
  std::string GetLeftEnd() const;
  std::string GetRightEnd() const;
  bool IsLeftEndIncluded() const;
  bool IsRightEndIncluded() const;

  bool IsEmpty() const;  // left > right, or equal ends that are not both included
  bool Contains(const std::string& s) const;              // in byte order
  bool operator==(const BINStringInterval& other) const;  // ends and flags equal

  // One line, for example "BINStringInterval: ( b, d ]".
  std::ostream& Display(std::ostream& os) const;

 private:
  std::string fLeftEnd;
  bool fLeftEndIncluded;
  std::string fRightEnd;
  bool fRightEndIncluded;
};
