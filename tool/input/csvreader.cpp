#include "input/csvreader.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include <emmintrin.h>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/toolerror.h"

namespace TQTool {
namespace {

constexpr std::size_t kBlockSize = std::size_t{1} << 18;
// A row that is longer is taken for a lost quote or for no CSV at all.
constexpr std::size_t kMaxRowSize = std::size_t{1} << 24;
constexpr std::size_t kLoad = 16;  // bytes looked at together

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16LittleMark = "\xFF\xFE";
constexpr std::string_view kUtf16BigMark = "\xFE\xFF";

// The first of two bytes from `text` on, in a buffer readable for kLoad bytes
// beyond `end`; may lie beyond `end`.
const char* FindEither(const char* text, const char* end, char a, char b) {
  const __m128i wantedA = _mm_set1_epi8(a);
  const __m128i wantedB = _mm_set1_epi8(b);
  for (; text < end; text += kLoad) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
    const __m128i hits =
        _mm_or_si128(_mm_cmpeq_epi8(bytes, wantedA), _mm_cmpeq_epi8(bytes, wantedB));
    const auto mask = static_cast<unsigned int>(_mm_movemask_epi8(hits));
    if (mask != 0) return text + std::countr_zero(mask);
  }
  return text;
}

}  // namespace

CsvReader::CsvReader(ReadBlock read, std::string name, char delimiter)
    : fRead(std::move(read)),
      fName(std::move(name)),
      fDelimiter(delimiter),
      fBuffer(kBlockSize + kLoad),
      fEnd(0),
      fAtEnd(false),
      fRow(0),
      fNext(0),
      fMark(0),
      fIsMarked(false),
      fLine(0),
      fNextLine(1),
      fMarkLine(0) {}

bool CsvReader::Next() {
  fRow = fNext;
  fLine = fNextLine;
  if (fLine == 1) SkipByteOrderMark();
  while (!CutRow()) {
    if (!Refill() && fRow == fEnd) return false;
  }
  return true;
}

bool CsvReader::IsBlankLine() const {
  return fFields.size() == 1 && !fFields[0].isQuoted && fFields[0].begin == fFields[0].end;
}

void CsvReader::FailAtField(std::size_t field, const std::string& message) const {
  if (field >= fFields.size()) FailAt(fFields.back().end, message);
  FailAt(fFields[field].begin - (fFields[field].isQuoted ? 1 : 0), message);
}

void CsvReader::FailAtLine(std::uint64_t line, const std::string& message) const {
  throw ToolError(kInput, fmt::format("{}:{}: {}", fName, line, message));
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
  fFields.clear();
  fNextLine = fLine + 1;
  if (fRow == fEnd) return false;  // nothing, or nothing yet
  std::size_t position = fRow;
  for (;;) {
    const bool isQuoted = position < fEnd && fBuffer[position] == '"';
    const Cut cut = isQuoted ? CutQuotedField(&position) : CutPlainField(&position);
    if (cut == Cut::kTooShort) return false;
    if (cut == Cut::kLastField) break;
  }
  fNext = position;
  return true;
}

CsvReader::Cut CsvReader::CutPlainField(std::size_t* position) {
  const std::size_t begin = *position;
  const char* const text = fBuffer.data();
  std::size_t end =
      static_cast<std::size_t>(FindEither(text + begin, text + fEnd, fDelimiter, '\n') - text);
  const bool isCutOff = end >= fEnd;
  if (isCutOff) {
    if (!fAtEnd) return Cut::kTooShort;
    end = fEnd;
  }
  const bool isLast = isCutOff || text[end] == '\n';
  *position = isCutOff ? end : end + 1;
  if (isLast && end > begin && text[end - 1] == '\r') --end;
  fFields.push_back({begin, end, false, false});
  return isLast ? Cut::kLastField : Cut::kField;
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
  fFields.push_back({begin, end, true, hasDoubledQuotes});

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
  if (fEnd - fRow > kMaxRowSize) {
    FailAtLine(fLine, fmt::format("a row is longer than {} MiB; expected a line end before that; "
                                  "look for a quote that is not closed",
                                  kMaxRowSize >> 20));
  }
  if (fBuffer.size() - kLoad - fEnd < kBlockSize) {
    fBuffer.resize(std::max(2 * (fBuffer.size() - kLoad), fEnd + kBlockSize) + kLoad);
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

void CsvReader::FailAtNul(std::size_t offset) const {
  const std::string_view row(fBuffer.data() + fRow, offset - fRow);
  if (row.starts_with(kUtf16LittleMark) || row.starts_with(kUtf16BigMark)) {
    FailAtLine(fLine,
               "text in UTF-16; expected UTF-8; convert the file, for example with "
               "iconv -f UTF-16 -t UTF-8");
  }
  FailAt(offset, "a NUL byte; expected text; convert the file to UTF-8, or take the byte out");
}

void CsvReader::SkipByteOrderMark() {
  while (fEnd < kUtf8Mark.size() && Refill()) {
  }
  if (std::string_view(fBuffer.data(), fEnd).starts_with(kUtf8Mark)) fRow += kUtf8Mark.size();
}

std::string_view CsvReader::Unescape(const Field& field) const {
  fUnescaped.clear();
  for (std::size_t i = field.begin; i < field.end; ++i) {
    fUnescaped += fBuffer[i];
    if (fBuffer[i] == '"') ++i;  // the second one of two
  }
  return fUnescaped;
}

void CsvReader::FailAt(std::size_t offset, const std::string& message) const {
  const std::string_view before(fBuffer.data() + fRow, offset - fRow);
  const std::size_t lineEnd = before.rfind('\n');
  const std::string_view inLine =
      lineEnd == std::string_view::npos ? before : before.substr(lineEnd + 1);
  const auto lineEnds = std::count(before.begin(), before.end(), '\n');
  const std::uint64_t line = fLine + static_cast<std::uint64_t>(lineEnds);
  throw ToolError(kInput,
                  fmt::format("{}:{}:{}: {}", fName, line, CountCharacters(inLine) + 1, message));
}

}  // namespace TQTool
