#pragma once

namespace TQTool {

extern const char* const kStylesheet;

// The stylesheet's SHA-256 in base64, by which the page's security policy knows it:
// any other style is refused.  After a change a browser's console names the new one.
extern const char* const kStylesheetHash;

}  // namespace TQTool
