#pragma once

#include <memory>
#include <string>

#include "input/bytestream.h"

namespace TQTool {

// Whether the system knows an encoding of this name: "latin1", "windows-1252", "UTF-16".
bool IsEncoding(const std::string& encoding);

// The text of `encoded`, which is in an encoding that the system knows and is called
// `name` in messages, in UTF-8.  Reading throws ToolError (kInput) for bytes that are no
// text in that encoding: no character is lost or replaced.
ReadBlock ConvertToUtf8(const std::string& encoding, std::shared_ptr<ByteStream> encoded,
                        const std::string& name);

}  // namespace TQTool
