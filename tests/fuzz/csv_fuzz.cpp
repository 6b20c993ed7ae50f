// CSV: the reader, which sees the text in blocks, against cutting it byte by byte; then
// the table that is made of it.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fuzz/bytes.h"
#include "fuzz/target.h"
#include "fuzz/toolmessage.h"
#include "input/csvreader.h"
#include "input/csvsource.h"
#include "input/delimiter.h"

namespace {

using fuzz::Require;
using TQTool::CsvReader;

struct Row {
  std::uint64_t line;
  std::vector<std::string> fields;

  bool operator==(const Row&) const = default;
};

using Table = std::vector<Row>;

// How a text is to be read.
struct Wishes {
  char delimiter;
  bool hasDecimalComma;
  std::size_t blockSize;
  CsvReader::Limits limits;
  bool hasLimits;
  std::size_t markedRow;  // where to set a mark, and how many rows later to go back to it
  std::size_t rowsAhead;
};

Wishes ReadWishes(fuzz::Bytes& bytes) {
  Wishes wishes = {};
  const char delimiter = static_cast<char>(bytes.Byte());
  const bool isDelimiter =
      std::string_view("\0\"\r\n", 4).find(delimiter) == std::string_view::npos;
  wishes.delimiter = isDelimiter ? delimiter : ',';
  wishes.blockSize = bytes.Below(256) + 1;
  const std::uint8_t flags = bytes.Byte();
  wishes.hasDecimalComma = flags % 2 == 1;
  wishes.hasLimits = flags / 2 % 4 == 0;
  if (wishes.hasLimits) wishes.limits = {bytes.Below(64) + 1, bytes.Below(8) + 1};
  wishes.markedRow = bytes.Below(8);
  wishes.rowsAhead = bytes.Below(8);
  return wishes;
}

TQTool::ReadBlock InBlocks(const std::string& text, std::size_t blockSize) {
  return [rest = std::string_view(text), blockSize](char* buffer, std::size_t size) mutable {
    const std::size_t count = rest.copy(buffer, std::min(size, blockSize));
    rest.remove_prefix(count);
    return count;
  };
}

// Cuts one field from `*position` on, up to what ends it; false for what must be refused.
bool CutFieldPlainly(const std::string& text, char delimiter, std::size_t* position, Row& row,
                     std::uint64_t* line) {
  std::string& field = row.fields.emplace_back();
  std::size_t i = *position;
  const auto isRowEnd = [&text](std::size_t at) { return at >= text.size() || text[at] == '\n'; };
  if (i < text.size() && text[i] == '"') {
    for (++i;; ++i) {
      if (i >= text.size()) return false;
      if (text[i] == '"' && (++i >= text.size() || text[i] != '"')) break;
      if (text[i] == '\n') ++*line;
      field += text[i];
    }
    if (i < text.size() && text[i] == '\r' && isRowEnd(i + 1)) ++i;
    if (!isRowEnd(i) && text[i] != delimiter) return false;
  } else {
    for (; !isRowEnd(i) && text[i] != delimiter; ++i) field += text[i];
    if (isRowEnd(i) && field.ends_with('\r')) field.pop_back();
  }
  *position = i;
  return true;
}

// All rows, without limits; nothing for a text that must be refused.
std::optional<Table> CutPlainly(const std::string& text, char delimiter) {
  if (text.find('\0') != std::string::npos) return std::nullopt;
  Table table;
  std::uint64_t line = 1;
  for (std::size_t i = text.starts_with("\xEF\xBB\xBF") ? 3 : 0; i < text.size();) {
    Row& row = table.emplace_back(Row{line, {}});
    for (bool isRowEnd = false; !isRowEnd; ++i) {
      if (!CutFieldPlainly(text, delimiter, &i, row, &line)) return std::nullopt;
      isRowEnd = i >= text.size() || text[i] == '\n';
    }
    ++line;
  }
  return table;
}

Row CurrentRow(const CsvReader& reader) {
  Row row = {reader.GetLine(), {}};
  for (const std::string_view field : reader.GetFields()) row.fields.emplace_back(field);
  // Some fields, as each is counted up to from the row's beginning.
  for (std::size_t i = 0; i <= row.fields.size(); i += 1 + row.fields.size() / 4) {
    Require(reader.LocateField(i).starts_with("f.csv:"), "a field without a place");
  }
  return row;
}

// Reads to the end, going back to the mark once on the way; what was refused is nothing.
std::optional<Table> ReadAll(const std::string& text, const Wishes& wishes) {
  Table table;
  try {
    CsvReader reader(InBlocks(text, wishes.blockSize), "f.csv", wishes.delimiter, wishes.limits);
    bool isMarked = false;
    for (bool isRewound = false;;) {
      if (!isMarked && table.size() == wishes.markedRow) {
        reader.Mark();
        isMarked = true;
      }
      const bool hasRow = reader.Next();
      if (hasRow) table.push_back(CurrentRow(reader));
      const bool isTurn = !hasRow || table.size() == wishes.markedRow + wishes.rowsAhead + 1;
      if (isMarked && !isRewound && isTurn) {
        reader.Rewind();
        table.resize(wishes.markedRow);
        isRewound = true;
      } else if (!hasRow) {
        return table;
      }
    }
  } catch (const TQTool::ToolError& error) {
    fuzz::RequireGoodMessage(error);
    return std::nullopt;
  }
}

void ReadTable(const std::string& text, const Wishes& wishes) {
  try {
    TQTool::CsvSource source(
        CsvReader(InBlocks(text, wishes.blockSize), "f.csv", wishes.delimiter, wishes.limits),
        wishes.hasDecimalComma ? ',' : '.', text.size());
    while (source.NextRow()) {
      Require(source.GetFields().size() == source.GetNames().size(), "a row of another length");
    }
  } catch (const TQTool::ToolError& error) {
    fuzz::RequireGoodMessage(error);
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Bytes bytes(data, size);
  Wishes wishes = ReadWishes(bytes);
  const std::string text = bytes.Rest();
  wishes.blockSize += text.size() / 64;  // a row is looked at again with every block

  const std::optional<Table> table = ReadAll(text, wishes);
  if (table.has_value() || !wishes.hasLimits) {
    Require(table == CutPlainly(text, wishes.delimiter), "rows cut otherwise than byte by byte");
  }
  Wishes inOneBlock = wishes;
  inOneBlock.blockSize = text.size() + 1;
  Require(table == ReadAll(text, inOneBlock), "rows that depend on the size of blocks");

  ReadTable(text, wishes);
  const char delimiter =
      TQTool::FindDelimiter(text, wishes.blockSize > 128, wishes.hasDecimalComma);
  Require(std::string_view(",;\t|").find(delimiter) != std::string_view::npos,
          "a delimiter that is no candidate");
  return 0;
}
