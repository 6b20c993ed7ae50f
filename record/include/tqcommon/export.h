#pragma once

// Marks a class or object of the record library as part of its binary
// interface; everything else is hidden.
#if defined(__GNUC__)
#define TQCOMMON_EXPORT [[gnu::visibility("default")]]
#else
#define TQCOMMON_EXPORT
#endif
