#pragma once

#include <string>

namespace TQTool {

// Tells the user on standard error what is worth knowing but no error.
void PrintNote(const std::string& note);

// From now on only errors are worth telling.
void SilenceNotes();
bool AreNotesSilent();

}  // namespace TQTool
