#pragma once

// Marks a class or function as part of the library's binary interface;
// everything else is hidden.
#if defined(__GNUC__)
#define TQBINNING_EXPORT [[gnu::visibility("default")]]
// What a class that hosts see keeps to itself.
#define TQBINNING_HIDDEN [[gnu::visibility("hidden")]]
#else
#define TQBINNING_EXPORT
#define TQBINNING_HIDDEN
#endif
