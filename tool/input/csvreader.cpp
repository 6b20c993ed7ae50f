#include "input/csvreader.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/toolerror.h"
#include "input/separators.h"

namespace TQTool {
namespace {

constexpr std::size_t kBlockSize = std::size_t{1} << 18;

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16LittleMark = "\xFF\xFE";
constexpr std::string_view kUtf16BigMark = "\xFE\xFF";

}  // namespace

CsvReader::CsvReader(ReadBlock read, std::string name, char delimiter, Limits limits)
    : fRead(std::move(read)),
      fName(std::move(name)),
      fDelimiter(delimiter),
      fLimits(limits),
      fBuffer(kBlockSize + kSeparatorBlock),
      fEnd(0),
      fAtEnd(false),
      fRow(0),
      fNext(0),
      fMark(0),
      fIsMarked(false),
      fLine(0),
      fNextLine(1),
      fMarkLine(0),
      fFields(1),
      fNumFields(0) {}

bool CsvReader::Next() {
  fRow = fNext;
  fLine = fNextLine;
  if (fLine == 1) SkipByteOrderMark();
  while (!CutRow()) {
    if (fEnd - fRow > fLimits.recordBytes) FailAtLongRow();
    if (!Refill() && fRow == fEnd) return false;
  }
  if (fNext - fRow > fLimits.recordBytes) FailAtLongRow();
  return true;
}

bool CsvReader::IsBlankLine() const {
  return fNumFields == 1 && fFields[0].empty() && fFields[0].data() == fBuffer.data() + fRow;
}

// Where a field's text begins in the buffer.
std::size_t CsvReader::OffsetOf(std::size_t field) const {
  for (const Unescaped& unescaped : fUnescaped) {
    if (unescaped.field == field) return unescaped.begin;
  }
  return static_cast<std::size_t>(fFields[field].data() - fBuffer.data());
}

std::string CsvReader::LocateField(std::size_t field) const {
  if (field < fNumFields) {
    const std::size_t begin = OffsetOf(field);
    const bool isQuoted = begin > fRow && fBuffer[begin - 1] == '"';
    return Locate(begin - (isQuoted ? 1 : 0));
  }
  // The row's end, before what ends its line.
  std::size_t end = fNext;
  if (end > fRow && fBuffer[end - 1] == '\n') --end;
  if (end > fRow && fBuffer[end - 1] == '\r') --end;
  return Locate(end);
}

std::string CsvReader::LocateLine(std::uint64_t line) const {
  return fmt::format("{}:{}", fName, line);
}

void CsvReader::Mark() {
  fIsMarked = true;
  fMark = fNext;
  fMarkLine = fNextLine;
}

void CsvReader::Rewind() {
  fIsMarked = false;
  fNext = fMark;
  fNextLine = fMarkLine;
}

bool CsvReader::CutRow() {
  fNumFields = 0;
  fUnescaped.clear();
  fNextLine = fLine + 1;
  if (fRow == fEnd) return false;  // nothing, or nothing yet
  std::size_t position = fRow;
  for (;;) {
    const bool isQuoted = position < fEnd && fBuffer[position] == '"';
    const Cut cut = isQuoted ? CutQuotedField(&position) : CutPlainFields(&position);
    if (cut == Cut::kTooShort) return false;
    if (cut == Cut::kLastField) break;
  }
  fNext = position;
  return true;
}

void CsvReader::MakeRoomForFields() {
  if (fNumFields >= fLimits.columns) {
    FailAtLine(
        fmt::format("a row of more than {} fields; expected fewer; is another --delimiter "
                    "needed?  If not, allow more with --max-columns",
                    fLimits.columns));
  }
  fFields.resize(std::min(2 * fNumFields, fLimits.columns));
}

void CsvReader::AddField(const char* begin, const char* end) {
  if (fNumFields == fFields.size()) MakeRoomForFields();
  fFields[fNumFields++] = std::string_view(begin, static_cast<std::size_t>(end - begin));
}

void CsvReader::AddUnescaped(std::size_t begin, std::size_t end) {
  fUnescaped.push_back({fNumFields, begin, {}});
  std::string& text = fUnescaped.back().text;
  for (std::size_t i = begin; i < end; ++i) {
    text += fBuffer[i];
    if (fBuffer[i] == '"') ++i;  // the second one of two
  }
  AddField(text.data(), text.data() + text.size());
}

CsvReader::Cut CsvReader::CutPlainFields(std::size_t* position) {
  const char* const text = fBuffer.data();
  const char* const end = text + fEnd;
  const char* field = text + *position;
  const auto addLast = [this, &field](const char* fieldEnd) {
    if (fieldEnd > field && fieldEnd[-1] == '\r') --fieldEnd;
    AddField(field, fieldEnd);
    return Cut::kLastField;
  };
  for (const char* block = field; block < end; block += kSeparatorBlock) {
    for (std::uint64_t hits = FindSeparators(block, fDelimiter, '\n'); hits != 0;
         hits &= hits - 1) {
      const char* const hit = block + std::countr_zero(hits);
      if (hit >= end) break;
      if (*hit == '\n') {
        *position = static_cast<std::size_t>(hit + 1 - text);
        return addLast(hit);
      }
      AddField(field, hit);
      field = hit + 1;
      if (*field == '"') {
        *position = static_cast<std::size_t>(field - text);
        return Cut::kField;
      }
    }
  }
  if (!fAtEnd) return Cut::kTooShort;
  *position = fEnd;
  return addLast(end);
}

CsvReader::Cut CsvReader::CutQuotedField(std::size_t* position) {
  const char* const text = fBuffer.data();
  const std::size_t begin = *position + 1;
  std::size_t end = begin;  // of the field: its closing quote
  bool hasDoubledQuotes = false;
  for (;; end += 2) {
    const void* const quote = std::memchr(text + end, '"', fEnd - end);
    if (quote == nullptr) {
      if (!fAtEnd) return Cut::kTooShort;
      FailAt(*position,
             "a quote is opened and never closed; expected a closing quote before the "
             "end of the input; close it, or double every quote inside the field");
    }
    end = static_cast<std::size_t>(static_cast<const char*>(quote) - text);
    if (end + 1 >= fEnd && !fAtEnd) return Cut::kTooShort;
    if (end + 1 >= fEnd || text[end + 1] != '"') break;
    hasDoubledQuotes = true;
  }
  const std::size_t next = end + 1;
  // A carriage return belongs to the line end, whose line feed has to be seen.
  if (next + 1 >= fEnd && !fAtEnd) return Cut::kTooShort;
  fNextLine += static_cast<std::uint64_t>(std::count(text + begin, text + end, '\n'));
  if (hasDoubledQuotes) {
    AddUnescaped(begin, end);
  } else {
    AddField(text + begin, text + end);
  }

  const std::string_view rest(text + next, std::min<std::size_t>(2, fEnd - next));
  if (rest.empty() || rest == "\r") {
    *position = fEnd;
    return Cut::kLastField;
  }
  if (rest.front() == fDelimiter) {
    *position = next + 1;
    return Cut::kField;
  }
  if (rest.front() != '\n' && rest != "\r\n") {
    FailAt(next, fmt::format("text follows a closing quote; expected {} or the end of the line; "
                             "double every quote inside the field",
                             Quoted({&fDelimiter, 1})));
  }
  *position = next + (rest.front() == '\n' ? 1 : 2);
  return Cut::kLastField;
}

// Reads more bytes behind the current row, which moves to the buffer's front;
// false at the end of the input, which counts as more to know as well.
bool CsvReader::Refill() {
  if (fAtEnd) return false;
  const std::size_t kept = fIsMarked ? fMark : fRow;
  if (kept > 0) {
    std::memmove(fBuffer.data(), fBuffer.data() + kept, fEnd - kept);
    fEnd -= kept;
    fRow -= kept;
    fNext -= std::min(fNext, kept);
    fMark -= std::min(fMark, kept);
  }
  if (fBuffer.size() - kSeparatorBlock - fEnd < kBlockSize) {
    fBuffer.resize(std::max(2 * (fBuffer.size() - kSeparatorBlock), fEnd + kBlockSize) +
                   kSeparatorBlock);
  }
  char* const block = fBuffer.data() + fEnd;
  const std::size_t size = fRead(block, kBlockSize);
  fEnd += size;
  fAtEnd = size == 0;
  if (const void* const nul = std::memchr(block, '\0', size); nul != nullptr) {
    FailAtNul(static_cast<std::size_t>(static_cast<const char*>(nul) - fBuffer.data()));
  }
  return !fAtEnd;
}

void CsvReader::FailAtLongRow() const {
  FailAtLine(
      fmt::format("a row is longer than {} bytes; expected a line end before that; look "
                  "for a quote that is not closed, or allow more with --max-record",
                  fLimits.recordBytes));
}

void CsvReader::FailAtNul(std::size_t offset) const {
  const std::string_view row(fBuffer.data() + fRow, offset - fRow);
  if (row.starts_with(kUtf16LittleMark) || row.starts_with(kUtf16BigMark)) {
    FailAtLine("text in UTF-16; expected UTF-8; say so with --encoding UTF-16");
  }
  FailAt(offset, "a NUL byte; expected text; convert the file to UTF-8, or take the byte out");
}

void CsvReader::SkipByteOrderMark() {
  while (fEnd < kUtf8Mark.size() && Refill()) {
  }
  if (std::string_view(fBuffer.data(), fEnd).starts_with(kUtf8Mark)) fRow += kUtf8Mark.size();
}

std::string CsvReader::Locate(std::size_t offset) const {
  const std::string_view before(fBuffer.data() + fRow, offset - fRow);
  const std::size_t lineEnd = before.rfind('\n');
  const std::string_view inLine =
      lineEnd == std::string_view::npos ? before : before.substr(lineEnd + 1);
  const auto lineEnds = std::count(before.begin(), before.end(), '\n');
  const std::uint64_t line = fLine + static_cast<std::uint64_t>(lineEnds);
  return fmt::format("{}:{}:{}", fName, line, CountCharacters(inLine) + 1);
}

void CsvReader::FailAt(std::size_t offset, const std::string& message) const {
  throw ToolError(kInput, fmt::format("{}: {}", Locate(offset), message));
}

void CsvReader::FailAtLine(const std::string& message) const {
  throw ToolError(kInput, fmt::format("{}: {}", LocateLine(fLine), message));
}

}  // namespace TQTool
