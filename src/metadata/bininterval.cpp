#include "tqbinning/bininterval.h"

#include <limits>
#include <ostream>

#include "common/lineend.h"

namespace {

constexpr double kLeftInfinity = std::numeric_limits<double>::lowest();
constexpr double kRightInfinity = std::numeric_limits<double>::max();

}  // namespace

BINNumericInterval::BINNumericInterval() : BINNumericInterval(0.0, 0.0) {}

BINNumericInterval::BINNumericInterval(double left, double right)
    : fLeftEnd(left), fRightEnd(right) {}

BINNumericInterval::BINNumericInterval(double end, bool isUpperEnd)
    : fLeftEnd(isUpperEnd ? kLeftInfinity : end), fRightEnd(isUpperEnd ? end : kRightInfinity) {}

bool BINNumericInterval::SetLeftEnd(double end) {
  fLeftEnd = end;
  return fLeftEnd <= fRightEnd;
}

bool BINNumericInterval::SetRightEnd(double end) {
  fRightEnd = end;
  return fLeftEnd <= fRightEnd;
}

double BINNumericInterval::GetLeftEnd() const { return fLeftEnd; }
double BINNumericInterval::GetRightEnd() const { return fRightEnd; }

bool BINNumericInterval::IsLeftEndInfinite() const { return fLeftEnd == kLeftInfinity; }
bool BINNumericInterval::IsRightEndInfinite() const { return fRightEnd == kRightInfinity; }

bool BINNumericInterval::IsEmpty() const { return fLeftEnd > fRightEnd; }

bool BINNumericInterval::Contains(double value) const {
  return fLeftEnd <= value && value <= fRightEnd;
}

bool BINNumericInterval::operator==(const BINNumericInterval& other) const {
  return fLeftEnd == other.fLeftEnd && fRightEnd == other.fRightEnd;
}

std::ostream& BINNumericInterval::Display(std::ostream& os) const {
  os << "BINNumericInterval: ";
  if (IsLeftEndInfinite()) {
    os << "( -infinity, ";
  } else {
    os << "[ " << fLeftEnd << ", ";
  }
  if (IsRightEndInfinite()) {
    os << "infinity )";
  } else {
    os << fRightEnd << " ]";
  }
  return os << TQBinning::LineEnd;
}

BINStringInterval::BINStringInterval() : BINStringInterval(".", true, ".", true) {}

BINStringInterval::BINStringInterval(const std::string& left, bool leftIncluded,
                                     const std::string& right, bool rightIncluded)
    : fLeftEnd(left),
      fLeftEndIncluded(leftIncluded),
      fRightEnd(right),
      fRightEndIncluded(rightIncluded) {}

bool BINStringInterval::SetLeftEnd(const std::string& end, bool included) {
  fLeftEnd = end;
  fLeftEndIncluded = included;
  return !IsEmpty();
}

bool BINStringInterval::SetRightEnd(const std::string& end, bool included) {
  fRightEnd = end;
  fRightEndIncluded = included;
  return !IsEmpty();
}

std::string BINStringInterval::GetLeftEnd() const { return fLeftEnd; }
std::string BINStringInterval::GetRightEnd() const { return fRightEnd; }
bool BINStringInterval::IsLeftEndIncluded() const { return fLeftEndIncluded; }
bool BINStringInterval::IsRightEndIncluded() const { return fRightEndIncluded; }

bool BINStringInterval::IsEmpty() const {
  if (fLeftEnd == fRightEnd) return !(fLeftEndIncluded && fRightEndIncluded);
  return fLeftEnd > fRightEnd;
}

bool BINStringInterval::Contains(const std::string& s) const {
  if (s < fLeftEnd || (s == fLeftEnd && !fLeftEndIncluded)) return false;
  if (s < fRightEnd) return true;
  return s == fRightEnd && fRightEndIncluded;
}

bool BINStringInterval::operator==(const BINStringInterval& other) const {
  return fLeftEnd == other.fLeftEnd && fLeftEndIncluded == other.fLeftEndIncluded &&
         fRightEnd == other.fRightEnd && fRightEndIncluded == other.fRightEndIncluded;
}

std::ostream& BINStringInterval::Display(std::ostream& os) const {
  return os << "BINStringInterval: " << (fLeftEndIncluded ? "[ " : "( ") << fLeftEnd << ", "
            << fRightEnd << (fRightEndIncluded ? " ]" : " )") << TQBinning::LineEnd;
}
