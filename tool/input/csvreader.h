#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "input/bytestream.h"

namespace TQTool {

// Cuts a stream of CSV text (RFC 4180) into rows and fields, block by block, in
// one buffer that holds no more than a block and a row.  A row ends with LF or
// CRLF or with the input; a field may be enclosed in double quotes, and then hold
// delimiters, line ends and doubled quotes.  A quote inside a field that does not
// begin with one is an ordinary character.  A UTF-8 byte-order mark is skipped.
// Throws ToolError (kInput), naming line and column, for an unterminated quote,
// text after a closing quote, a NUL byte, UTF-16 and a row beyond the limits.
class CsvReader {
 public:
  // Beyond these a text is taken for a lost quote or for no CSV at all.
  struct Limits {
    std::size_t recordBytes = std::size_t{1} << 24;
    std::size_t columns = 100000;
  };

  // `name` is how messages call the input.
  CsvReader(ReadBlock read, std::string name, char delimiter, Limits limits);
  CsvReader(ReadBlock read, std::string name, char delimiter)
      : CsvReader(std::move(read), std::move(name), delimiter, Limits()) {}

  const std::string& GetName() const { return fName; }

  // Goes on to the next row; false, and no row, when there is none.
  bool Next();

  // The texts of the row's fields, without the quotes.  Valid until the next call
  // of Next.
  std::span<const std::string_view> GetFields() const { return {fFields.data(), fNumFields}; }

  // Whether the row is an empty line.
  bool IsBlankLine() const;

  // The line (from 1) on which the row begins.
  std::uint64_t GetLine() const { return fLine; }

  // Where a field of this row is: "FILE:LINE:COLUMN", with lines and characters
  // counted from 1.  A field that the row does not have stands for the row's end.
  std::string LocateField(std::size_t field) const;

  // The same for a whole line: "FILE:LINE".
  std::string LocateLine(std::uint64_t line) const;

  // Mark remembers the rows from the next one on (keeping their bytes in memory)
  // and Rewind goes back to them, once: the next row is then that one again.
  void Mark();
  void Rewind();

  // How many bytes the rows read since the mark take, which must be set.
  std::size_t GetBytesSinceMark() const { return fNext - fMark; }

 private:
  // A field whose text is not in the buffer as it is.
  struct Unescaped {
    std::size_t field;
    std::size_t begin;  // offset into the buffer, behind the opening quote
    std::string text;
  };

  // Cuts the row that begins at fRow; false when the buffer ends first.
  bool CutRow();
  // Both cut fields from `*position` on, move it past the last one's end mark and
  // tell whether that ended the row; or find the buffer too short.  The first goes
  // on until a field begins with a quote, the second cuts one.
  enum class Cut { kField, kLastField, kTooShort };
  Cut CutPlainFields(std::size_t* position);
  Cut CutQuotedField(std::size_t* position);
  void MakeRoomForFields();
  void AddField(const char* begin, const char* end);
  void AddUnescaped(std::size_t begin, std::size_t end);

  bool Refill();
  void SkipByteOrderMark();
  std::size_t OffsetOf(std::size_t field) const;
  std::string Locate(std::size_t offset) const;
  [[noreturn]] void FailAt(std::size_t offset, const std::string& message) const;
  [[noreturn]] void FailAtLine(const std::string& message) const;
  [[noreturn]] void FailAtLongRow() const;
  [[noreturn]] void FailAtNul(std::size_t offset) const;

  ReadBlock fRead;
  std::string fName;
  char fDelimiter;
  Limits fLimits;
  std::vector<char> fBuffer;  // followed by room for one whole vector load
  std::size_t fEnd;           // end of the bytes read
  bool fAtEnd;                // no more bytes follow
  std::size_t fRow;           // the current row
  std::size_t fNext;          // the row after it
  std::size_t fMark;          // the first byte to keep, when fIsMarked
  bool fIsMarked;
  std::uint64_t fLine;  // of fRow, fNext and fMark
  std::uint64_t fNextLine;
  std::uint64_t fMarkLine;
  std::vector<std::string_view> fFields;  // the first fNumFields are the row's
  std::size_t fNumFields;
  std::deque<Unescaped> fUnescaped;  // of the row; fFields points into it
};

}  // namespace TQTool
