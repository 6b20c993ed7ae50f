#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace fuzz {

// Makes values of the bytes of an input, one after another; zeros when they are used up.
class Bytes {
 public:
  Bytes(const std::uint8_t* data, std::size_t size) : fNext(data), fEnd(data + size) {}

  bool IsUsedUp() const { return fNext == fEnd; }

  std::uint8_t Byte() { return IsUsedUp() ? std::uint8_t{0} : *fNext++; }
  bool Flag() { return Byte() % 2 == 1; }

  // A whole number below `n`, which is 1 to 256.
  std::size_t Below(std::size_t n) { return Byte() % n; }

  // One of the elements; there must be one.
  template <class List>
  auto Pick(const List& list) {
    return list[Below(list.size())];
  }

  // Any double: mostly a small one, so that values meet, else an odd one or any bits.
  double Number() {
    const std::uint8_t kind = Byte();
    if (kind < 128) return kind % 16;
    if (kind < 160) return (kind - 144) / 4.0;
    if (kind < 224) return Pick(kOddNumbers);
    std::uint64_t bits = 0;
    for (int i = 0; i < 8; ++i) bits = bits << 8 | Byte();
    return std::bit_cast<double>(bits);
  }

  // Up to `most` numbers; most is below 256.
  std::vector<double> Numbers(std::size_t most) {
    std::vector<double> numbers(Below(most + 1));
    for (double& number : numbers) number = Number();
    return numbers;
  }

  // A text of up to `longest` bytes, below 256.
  std::string Text(std::size_t longest) {
    std::string text(Below(longest + 1), '\0');
    for (char& byte : text) byte = static_cast<char>(Byte());
    return text;
  }

  // All that is left.
  std::string Rest() {
    std::string rest(fNext, fEnd);
    fNext = fEnd;
    return rest;
  }

 private:
  using Limits = std::numeric_limits<double>;
  static constexpr std::array<double, 18> kOddNumbers = {0.0,
                                                         -0.0,
                                                         Limits::quiet_NaN(),
                                                         Limits::infinity(),
                                                         -Limits::infinity(),
                                                         Limits::max(),
                                                         Limits::lowest(),
                                                         Limits::denorm_min(),
                                                         -Limits::denorm_min(),
                                                         Limits::min(),
                                                         0.1,
                                                         1.0 / 3.0,
                                                         1e300,
                                                         -1e300,
                                                         0x1p53,
                                                         0x1p53 + 2,
                                                         0x1.fffffffffffffp-1,
                                                         0x1.0000000000001p0};

  const std::uint8_t* fNext;
  const std::uint8_t* fEnd;
};

}  // namespace fuzz
