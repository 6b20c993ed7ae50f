#pragma once

#include <cstdio>
#include <cstdlib>

// An assertion that stays on in release builds: for preconditions whose breach
// would make the following code touch memory that is not ours.
#define TQ_REQUIRE(condition)                                                                \
  do {                                                                                       \
    if (!(condition)) {                                                                      \
      std::fprintf(stderr, "%s:%d: Assertion failed: %s\n", __FILE__, __LINE__, #condition); \
      std::abort();                                                                          \
    }                                                                                        \
  } while (false)
