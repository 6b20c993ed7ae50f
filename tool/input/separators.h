#pragma once

#include <cstddef>
#include <cstdint>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace TQTool {

constexpr std::size_t kSeparatorBlock = 64;  // bytes looked at together

// Bit i tells whether text[i] is one of two bytes; kSeparatorBlock bytes of `text`
// must be readable.  This is the plain one.
inline std::uint64_t FindSeparatorsPlainly(const char* text, char a, char b) {
  std::uint64_t hits = 0;
  for (std::size_t i = 0; i < kSeparatorBlock; ++i) {
    hits |= static_cast<std::uint64_t>(text[i] == a || text[i] == b) << i;
  }
  return hits;
}

// The same, with vector instructions where there are some.
inline std::uint64_t FindSeparators(const char* text, char a, char b) {
#ifdef __SSE2__
  const __m128i wantedA = _mm_set1_epi8(a);
  const __m128i wantedB = _mm_set1_epi8(b);
  std::uint64_t hits = 0;
  for (std::size_t i = 0; i < kSeparatorBlock; i += sizeof(__m128i)) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + i));
    const __m128i found =
        _mm_or_si128(_mm_cmpeq_epi8(bytes, wantedA), _mm_cmpeq_epi8(bytes, wantedB));
    hits |= static_cast<std::uint64_t>(static_cast<unsigned int>(_mm_movemask_epi8(found))) << i;
  }
  return hits;
#else
  return FindSeparatorsPlainly(text, a, b);
#endif
}

}  // namespace TQTool
