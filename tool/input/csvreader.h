#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace TQTool {

// Cuts a stream of CSV text (RFC 4180) into rows and fields, block by block, in
// one buffer that holds no more than a block and a row.  A row ends with LF or
// CRLF or with the input; a field may be enclosed in double quotes, and then hold
// delimiters, line ends and doubled quotes.  A quote inside a field that does not
// begin with one is an ordinary character.  A UTF-8 byte-order mark is skipped.
// Throws ToolError (kInput), naming line and column, for an unterminated quote,
// text after a closing quote, a NUL byte, UTF-16 and a row beyond all measure.
class CsvReader {
 public:
  // Fills (a part of) the buffer and returns the number of bytes, 0 at the end.
  using ReadBlock = std::function<std::size_t(char* buffer, std::size_t size)>;

  // `name` is how messages call the input.
  CsvReader(ReadBlock read, std::string name, char delimiter);

  // Goes on to the next row; false, and no row, when there is none.
  bool Next();

  std::size_t GetNumFields() const { return fFields.size(); }

  // The text of a field, without the quotes.  Valid until the next call of
  // GetField or Next.
  std::string_view GetField(std::size_t field) const {
    const Field& f = fFields[field];
    if (f.hasDoubledQuotes) return Unescape(f);
    return std::string_view(fBuffer.data() + f.begin, f.end - f.begin);
  }

  // Whether the row is an empty line.
  bool IsBlankLine() const;

  // The line (from 1) on which the row begins.
  std::uint64_t GetLine() const { return fLine; }

  // Throws ToolError (kInput) about a field of this row: "FILE:LINE:COLUMN: ..."
  // with lines and characters counted from 1.  A field that the row does not have
  // stands for the row's end.
  [[noreturn]] void FailAtField(std::size_t field, const std::string& message) const;

  // The same about a whole line: "FILE:LINE: ...".
  [[noreturn]] void FailAtLine(std::uint64_t line, const std::string& message) const;

  // Mark remembers the rows from the next one on (keeping their bytes in memory)
  // and Rewind goes back to them, once: the next row is then that one again.
  void Mark();
  void Rewind();
  // The number of bytes kept since Mark.
  std::size_t GetMarkedSize() const { return fNext - fMark; }

 private:
  struct Field {
    std::size_t begin;  // offsets into the buffer, quotes excluded
    std::size_t end;
    bool isQuoted;
    bool hasDoubledQuotes;
  };

  // Cuts the row that begins at fRow; false when the buffer ends first.
  bool CutRow();
  // Either cuts one field that begins at `*position`, moves it past the field's
  // end mark and tells whether that ended the row; or finds the buffer too short.
  enum class Cut { kField, kLastField, kTooShort };
  Cut CutPlainField(std::size_t* position);
  Cut CutQuotedField(std::size_t* position);

  bool Refill();
  void SkipByteOrderMark();
  std::string_view Unescape(const Field& field) const;
  [[noreturn]] void FailAt(std::size_t offset, const std::string& message) const;
  [[noreturn]] void FailAtNul(std::size_t offset) const;

  ReadBlock fRead;
  std::string fName;
  char fDelimiter;
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
  std::vector<Field> fFields;
  mutable std::string fUnescaped;
};

}  // namespace TQTool
