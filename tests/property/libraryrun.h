#pragma once

#include <string>

#include "reference/reference.h"
#include "tqbinning/binvarlist.h"

namespace property {

// A problem's variables as a list of the library's.  Adds to `complaint` when the
// list refuses one.
BINVarList MakeVarList(const reference::Problem& problem, std::string& complaint);

// What the library made of a problem, in the reference's terms.  `complaint` is
// empty unless something that no outcome can show went wrong: a setting or variable
// was refused, or a result does not have one row of cell counts per bin.
struct LibraryOutcome {
  reference::Outcome outcome;
  std::string complaint;
};

// Runs the problem through factory, algorithm and results, as a host does.  Column
// files go to `directory`.  The library's message about a column file that was never
// made (documented) is kept off the standard output.
LibraryOutcome RunLibrary(const reference::Problem& problem, const std::string& directory);

}  // namespace property
