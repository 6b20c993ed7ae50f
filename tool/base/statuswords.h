#pragma once

#include <string>

#include <tqbinning/tqbinning.h>

namespace TQTool {

// A status code of the library in words.
struct StatusWords {
  const char* words;   // what it is, in few words
  const char* reason;  // why it comes about
  const char* remedy;  // what to do
};

// The words for a code; for an unknown one, words that say so.
const StatusWords& WordsOf(long code);

// "ok", "warning" or "error".
const char* SeverityOf(const TQBinning::TQStatus& status);

// One line for a message: words, reason, remedy and code.
std::string Describe(const TQBinning::TQStatus& status);

}  // namespace TQTool
