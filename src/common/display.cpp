#include "tqbinning/display.h"

#include <iomanip>
#include <ostream>

#include "common/lineend.h"
#include "common/missing.h"

namespace TQBinning {

namespace {

// How the elements of a list or matrix are laid out.
struct Layout {
  int width;
  int precision;  // 0: the stream's own
  int perLine;
};

constexpr Layout kDoubles{11, 7, 10};
constexpr Layout kDoublesInVector{8, 5, 8};
constexpr Layout kIntegers{11, 0, 10};
constexpr Layout kIntegersInVector{6, 0, 10};
constexpr Layout kBools{11, 0, 10};

// Sets a stream's precision for as long as it lives.
class PrecisionGuard {
 public:
  PrecisionGuard(std::ostream& os, int precision) : fStream(os), fEarlier(os.precision()) {
    if (precision > 0) os.precision(precision);
  }
  ~PrecisionGuard() { fStream.precision(fEarlier); }
  PrecisionGuard(const PrecisionGuard&) = delete;
  PrecisionGuard& operator=(const PrecisionGuard&) = delete;

 private:
  std::ostream& fStream;
  std::streamsize fEarlier;
};

void WriteElement(std::ostream& os, double value, int width) {
  if (IsMissing(value)) {
    os << "<missing> ";
  } else {
    os << std::setw(width) << value << ' ';
  }
}

void WriteElement(std::ostream& os, int value, int width) {
  os << std::setw(width) << value << ' ';
}

void WriteElement(std::ostream& os, bool value, int width) {
  os << std::setw(width) << (value ? "true" : "false") << ' ';
}

// `at(i)` is element i.
template <typename At>
std::ostream& DisplayList(std::ostream& os, std::size_t count, At at, const std::string& name,
                          const Layout& layout) {
  if (count == 0) return os << name << ": <empty>" << '\n';

  const PrecisionGuard guard(os, layout.precision);
  os << name << " (" << count << " element" << (count == 1 ? "): \n" : "s): \n");
  for (std::size_t i = 0; i < count; ++i) {
    WriteElement(os, at(i), layout.width);
    const bool lineIsFull = (i + 1) % static_cast<std::size_t>(layout.perLine) == 0;
    if (lineIsFull && i + 1 < count) os << '\n';
  }
  return os << '\n';
}

template <typename List>
std::ostream& DisplayList(std::ostream& os, const List& values, const std::string& name,
                          const Layout& layout) {
  return DisplayList(
      os, values.size(), [&values](std::size_t i) { return values[i]; }, name, layout);
}

template <typename T>
std::ostream& DisplayMatrix(std::ostream& os, const T* matrix, unsigned int n,
                            const std::string& name, const Layout& layout) {
  if (n == 0) return os << name << ": <empty>" << '\n';

  const PrecisionGuard guard(os, layout.precision);
  os << name << '(' << n << ',' << n << ')' << '\n';
  for (std::size_t row = 0; row < n; ++row) {
    for (std::size_t col = 0; col < n; ++col) {
      if (col > 0 && col % static_cast<std::size_t>(layout.perLine) == 0) os << '\n';
      os << std::setw(layout.width) << matrix[row * n + col] << ' ';
    }
    os << '\n';
  }
  return os;
}

}  // namespace

// By value, as hosts call it.  NOLINTNEXTLINE(performance-unnecessary-value-param)
std::ostream& Display(std::ostream& os, std::string name, double value) {
  os << name << " = ";
  if (IsMissing(value)) {
    os << "<missing>";
  } else {
    os << value;
  }
  return os << LineEnd;
}

std::ostream& Display(std::ostream& os, bool value) { return os << (value ? "Yes" : "No"); }

std::ostream& Display(std::ostream& os, IBINVariable::BINWRoundingOption option) {
  switch (option) {
    case IBINVariable::kTruncate: os << "Truncate to smaller int"; break;
    case IBINVariable::kRoundToClosest: os << "Round to closest int"; break;
  }
  return os << LineEnd;
}

std::ostream& Display(std::ostream& os, IBINVariable::VariableRole role) {
  switch (role) {
    case IBINVariable::kUndefinedRole: os << "Undefined variable role"; break;
    case IBINVariable::kAttribute: os << "Attribute"; break;
    case IBINVariable::kTarget: os << "Target"; break;
    case IBINVariable::kFrequencyWeight: os << "Frequency weight"; break;
    default: os << "Variable role " << static_cast<int>(role);
  }
  return os << LineEnd;
}

std::ostream& Display(std::ostream& os, IBINVariable::MeasureLevel level) {
  switch (level) {
    case IBINVariable::kUnknownLevel: os << "Unknown measure level"; break;
    case IBINVariable::kContinuous: os << "Continuous"; break;
    case IBINVariable::kNumericCategorical: os << "Numeric Categorical"; break;
    case IBINVariable::kStringCategorical: os << "String Categorical"; break;
    case IBINVariable::kWeightLevel: os << "Frequency weight"; break;
    default: os << "Measure level " << static_cast<int>(level);
  }
  return os << LineEnd;
}

std::ostream& DisplayD(std::ostream& os, const double* values, int n, const std::string& name) {
  const std::size_t count = n < 1 ? 0 : static_cast<std::size_t>(n);
  return DisplayList(
      os, count, [values](std::size_t i) { return values[i]; }, name, kDoubles);
}

std::ostream& DisplayD(std::ostream& os, const std::valarray<double>& values,
                       const std::string& name) {
  return DisplayList(os, values, name, kDoubles);
}

std::ostream& DisplayD(std::ostream& os, const std::vector<double>& values,
                       const std::string& name) {
  return DisplayList(os, values, name, kDoublesInVector);
}

std::ostream& DisplayI(std::ostream& os, const std::valarray<int>& values,
                       const std::string& name) {
  return DisplayList(os, values, name, kIntegers);
}

std::ostream& DisplayI(std::ostream& os, const std::vector<int>& values, const std::string& name) {
  return DisplayList(os, values, name, kIntegersInVector);
}

std::ostream& DisplayB(std::ostream& os, const std::valarray<bool>& values,
                       const std::string& name) {
  return DisplayList(os, values, name, kBools);
}

std::ostream& DisplayMI(std::ostream& os, const int* matrix, unsigned int n,
                        const std::string& name) {
  return DisplayMatrix(os, matrix, n, name, kIntegers);
}

std::ostream& DisplayMD(std::ostream& os, const double* matrix, unsigned int n,
                        const std::string& name) {
  return DisplayMatrix(os, matrix, n, name, kDoubles);
}

}  // namespace TQBinning
