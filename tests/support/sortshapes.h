#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

#include "support/random.h"

// Kinds of values that a sort has to cope with.
namespace TQBinning {

using support::Random;

// A value for position i of n.
using Shape = std::function<double(Random&, std::size_t i, std::size_t n)>;

struct NamedShape {
  const char* name;
  Shape shape;
};

inline const std::vector<NamedShape>& Shapes() {
  static const std::vector<NamedShape> shapes{
      {"any bits", [](Random& r, auto, auto) { return std::bit_cast<double>(r.Next()); }},
      {"many NaN and zeros",
       [](Random& r, auto, auto) {
         const double special[] = {std::numeric_limits<double>::quiet_NaN(),
                                   0.0,
                                   -0.0,
                                   std::numeric_limits<double>::infinity(),
                                   -std::numeric_limits<double>::infinity(),
                                   5e-324,
                                   1.0};
         return special[r.Below(7)];
       }},
      {"distinct fractions",
       [](Random& r, auto, auto) { return std::ldexp(double(r.Below(1ULL << 52)), -52); }},
      {"small integers", [](Random& r, auto, auto) { return double(r.Below(100)) - 50.0; }},
      {"leading bits all alike",
       [](Random& r, auto, auto) { return 1.0 + std::ldexp(double(r.Below(1ULL << 20)), -52); }},
      {"leading bits alike in two heaps",
       [](Random& r, auto, auto) {
         return double(r.Below(2)) * 1e9 + std::ldexp(double(r.Below(1ULL << 8)), -20);
       }},
      {"presorted", [](Random&, std::size_t i, auto) { return double(i); }},
      {"reversed", [](Random&, std::size_t i, std::size_t n) { return double(n - i); }},
      {"organ pipe",
       [](Random&, std::size_t i, std::size_t n) { return double(std::min(i, n - i)); }},
      {"all equal", [](Random&, auto, auto) { return 3.5; }},
  };
  return shapes;
}

}  // namespace TQBinning
