#include "base/notes.h"

#include <cstdio>

#include <fmt/format.h>

namespace TQTool {
namespace {

bool gAreNotesSilent = false;

}  // namespace

void SilenceNotes() { gAreNotesSilent = true; }

bool AreNotesSilent() { return gAreNotesSilent; }

void PrintNote(const std::string& note) {
  if (gAreNotesSilent) return;
  // Put together first, so that it reaches the (unbuffered) stream in one piece.
  const std::string line = fmt::format("tqbin: note: {}\n", note);
  std::fputs(line.c_str(), stderr);
}

}  // namespace TQTool
