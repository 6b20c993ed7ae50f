#pragma once

#include <memory>

#include "input/inputoptions.h"
#include "input/source.h"

namespace TQTool {

// Opens what is to be read: the kind of each input is told from its name and its
// first bytes.  Says on standard error what it found out, when asked to.  Throws
// ToolError for an input that cannot be opened or begins in no usable way.
std::unique_ptr<Source> OpenSource(const InputOptions& options);

// Whether another OpenSource gives the same rows again: of files and data bases it
// does, of standard input and pipes not.
bool CanBeReadTwice(const InputOptions& options);

}  // namespace TQTool
