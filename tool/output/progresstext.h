#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace TQTool {

// How far a run is, `seconds` after it began reading or binning: reading rows, of which nobody
// knows how many there are, or binning columns, a column counting once for each target.

// For people, in one line without its end; with the rate, and the time left where it can be
// told.
std::string ReadingText(std::uint64_t rows, double seconds);
std::string BinningText(std::size_t columns, std::size_t of, double seconds);

// For programs: one line of JSON.
std::string ReadingJson(std::uint64_t rows, double seconds);
std::string BinningJson(std::size_t columns, std::size_t of, double seconds);

}  // namespace TQTool
