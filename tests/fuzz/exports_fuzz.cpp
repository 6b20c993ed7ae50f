// Exported bins: the query for data bases, run in memory by SQLite, against `apply`; all
// other languages must be written or refused with a message.

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <sqlite3.h>

#include "apply/apply.h"
#include "base/plaintext.h"
#include "export/export.h"
#include "fuzz/bytes.h"
#include "fuzz/target.h"
#include "fuzz/toolmessage.h"
#include "input/csvreader.h"
#include "input/missingtokens.h"
#include "input/numbertext.h"

namespace {

using fuzz::Bytes;
using fuzz::Require;
using TQTool::BinnedAttribute;
using TQTool::Model;

constexpr const char* kMissing = "<none>";

std::string TextOf(double number) {
  std::array<char, 32> text;
  const auto end = std::to_chars(text.data(), text.data() + text.size(), number);
  return std::string(text.data(), end.ptr);
}

// A text as model files hold it, in UTF-8.
std::string Utf8Text(Bytes& bytes, std::size_t longest) {
  std::string text;
  for (const char byte : bytes.Text(longest)) {
    const auto code = static_cast<unsigned char>(byte);
    if (code >= 0x80) text += code < 0xC0 ? '\xC2' : '\xC3';
    text += static_cast<char>(code < 0xC0 ? code : code - 0x40);
  }
  return text;
}

// A data base in memory.
class Database {
 public:
  struct Closer {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Closer>;

  Database() {
    sqlite3* database = nullptr;
    const bool isOpen = sqlite3_open(":memory:", &database) == SQLITE_OK;
    fDatabase.reset(database);
    if (!isOpen) throw std::runtime_error("no data base");
  }

  Statement Prepare(const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    const int result = sqlite3_prepare_v2(fDatabase.get(), sql.data(), static_cast<int>(sql.size()),
                                          &statement, nullptr);
    if (result != SQLITE_OK) Require(false, sqlite3_errmsg(fDatabase.get()));
    return Statement(statement);
  }

  void Run(const std::string& sql) { sqlite3_step(Prepare(sql).get()); }

  // Whether SQLite takes the text for the number: with extreme exponents it need not
  // round correctly, which no query can help.
  bool ReadsExactly(const std::string& text, double number) {
    const Statement literal = Prepare("SELECT " + text + ", CAST('" + text + "' AS REAL)");
    sqlite3_step(literal.get());
    return sqlite3_column_double(literal.get(), 0) == number &&
           sqlite3_column_double(literal.get(), 1) == number;
  }

 private:
  std::unique_ptr<sqlite3, Closer> fDatabase;
};

void Bind(sqlite3_stmt* statement, int place, const std::string& text) {
  sqlite3_bind_text(statement, place, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

// What a column holds, as `apply` reads it and as the data base does.
struct Value {
  std::optional<std::string> text;  // none for NULL
  double number;                    // in a column of numbers
};

// A model of a few columns, and rows for it.
class Maker {
 public:
  Maker(Bytes& bytes, Database& database) : fBytes(bytes), fDatabase(database) {
    const std::uint8_t flags = bytes.Byte();
    fAreTexts = flags % 2 == 1;
    fOptions.binText = flags / 2 % 2 == 1 ? TQTool::BinText::kIndex : TQTool::BinText::kLabel;
    fOptions.table = "t" + bytes.Text(4);
    fOptions.suffix = "_" + bytes.Text(4);
    fModel.method = TQTool::Method::kEqualFrequency;
    fModel.settings.missingTokens = MakeTokens();
    const std::size_t columns = 1 + bytes.Below(3);
    for (std::size_t i = 0; i < columns; ++i) fModel.attributes.push_back(MakeAttribute(i));
  }

  bool AreTexts() const { return fAreTexts; }
  const Model& GetModel() const { return fModel; }
  const TQTool::ExportOptions& Options() const { return fOptions; }

  // As long as there are bytes: numbers at and beside cut points, odd ones and texts.
  Value MakeValue(const BinnedAttribute& attribute) {
    const std::uint8_t kind = fBytes.Byte();
    if (kind >= 250) return {std::nullopt, std::numeric_limits<double>::quiet_NaN()};
    if (fAreTexts && kind >= 200) return TextValue();
    double number =
        kind < 100 || attribute.cuts.empty() ? fBytes.Number() : fBytes.Pick(attribute.cuts);
    if (kind % 4 == 1) number = std::nextafter(number, -std::numeric_limits<double>::infinity());
    if (kind % 4 == 2) number = std::nextafter(number, std::numeric_limits<double>::infinity());
    const std::string text = TextOf(number);
    if (fAreTexts && !IsUsable(number)) return {std::nullopt, number};
    return {text, number};
  }

 private:
  std::vector<std::string> MakeTokens() {
    if (!fAreTexts) return {"", "NA", "nan"};  // numbers as texts are another matter
    std::vector<std::string> tokens(fBytes.Below(4));
    for (std::string& token : tokens) token = Utf8Text(fBytes, 4);
    fTokens = TQTool::MissingTokens(tokens);
    return tokens;
  }

  // Of a text that is neither number nor token, SQLite makes a number.
  Value TextValue() {
    const std::string text = Utf8Text(fBytes, 8);
    const std::string_view inner = TQTool::TrimBlanks(text);
    double number = 0.0;
    const bool isNumber = TQTool::ReadNumber(inner, &number) == TQTool::NumberText::kNumber;
    const bool isToken = fTokens.Contains(inner) && text.find('\0') == std::string::npos;
    if (isToken || (isNumber && IsUsable(number))) return {text, number};
    return {std::nullopt, 0.0};
  }

  bool IsUsable(double number) {
    return std::isfinite(number) && fDatabase.ReadsExactly(TextOf(number), number);
  }

  std::vector<double> MakeNumbers(std::size_t most) {
    std::vector<double> numbers = fBytes.Numbers(most);
    const auto isOdd = [this](double number) {
      return std::abs(number) >= std::numeric_limits<double>::max() || !IsUsable(number);
    };
    numbers.erase(std::remove_if(numbers.begin(), numbers.end(), isOdd), numbers.end());
    for (double& number : numbers) number += 0.0;  // no negative zero, as in a model file
    return numbers;
  }

  BinnedAttribute MakeAttribute(std::size_t index) {
    BinnedAttribute attribute;
    // A data base does not tell upper from lower case.
    attribute.name = std::string(1, static_cast<char>('a' + index)) + Utf8Text(fBytes, 6);
    attribute.isRightClosed = fBytes.Flag();
    attribute.cuts = MakeNumbers(6);
    std::sort(attribute.cuts.begin(), attribute.cuts.end());
    attribute.cuts.erase(std::unique(attribute.cuts.begin(), attribute.cuts.end()),
                         attribute.cuts.end());
    for (std::size_t i = 0; fHasLabels && i <= attribute.cuts.size(); ++i) {
      attribute.labels.push_back(Utf8Text(fBytes, 5));
    }
    attribute.missing.numbers = MakeNumbers(2);
    const std::vector<double> ends = MakeNumbers(2);
    if (fBytes.Flag() && ends.size() == 2) {
      attribute.missing.range = {std::min(ends[0], ends[1]), std::max(ends[0], ends[1])};
    } else if (!ends.empty()) {
      attribute.missing.range = TQTool::ClosedRange();
      (ends.size() == 1 ? attribute.missing.range->lower : attribute.missing.range->upper) =
          ends[0];
    }
    attribute.bins = TQTool::EmptyBins(attribute.cuts);
    fHasLabels = !fHasLabels;
    return attribute;
  }

  Bytes& fBytes;
  Database& fDatabase;
  bool fAreTexts = false;
  bool fHasLabels = true;
  TQTool::MissingTokens fTokens{{}};
  TQTool::ExportOptions fOptions;
  Model fModel;
};

// Rows in memory as a source.
class ValuesSource : public TQTool::Source {
 public:
  ValuesSource(const Model& model, const std::vector<std::vector<Value>>& rows) : fRows(rows) {
    for (const BinnedAttribute& attribute : model.attributes) fNames.push_back(attribute.name);
  }

  bool NextRow() override {
    if (fNext == fRows.size()) return false;
    fViews.clear();
    for (const Value& value : fRows[fNext]) {
      fViews.push_back(value.text.has_value() ? std::string_view(*value.text) : std::string_view());
    }
    fFields = fViews;
    ++fNext;
    return true;
  }
  std::string DescribeRow() const override { return "row"; }
  std::string LocateField(std::size_t) const override { return "field"; }
  std::string LocateHeader() const override { return "header"; }
  void Mark() override {}
  void Rewind() override { fNext = 0; }

 private:
  const std::vector<std::vector<Value>>& fRows;
  std::vector<std::string_view> fViews;
  std::size_t fNext = 0;
};

using Table = std::vector<std::vector<std::string>>;

std::string TextOf(const Table& table) {
  std::string text;
  for (const std::vector<std::string>& row : table) {
    for (const std::string& field : row) text += "'" + field + "' ";
    text += '\n';
  }
  return text;
}

// The names and bins that `apply` gives.
Table Applied(const Maker& maker, const std::vector<std::vector<Value>>& rows) {
  TQTool::ApplyOptions options;
  options.binText = maker.Options().binText;
  options.suffix = maker.Options().suffix;
  options.notNumber = TQTool::OddValue::kMissing;
  options.missingText = kMissing;
  options.areBinsOnly = true;
  ValuesSource source(maker.GetModel(), rows);
  std::string text;
  TQTool::ApplyModel(maker.GetModel(), source, options, [&text](std::string_view block) {
    text += block;
    return true;
  });
  TQTool::CsvReader reader(
      [rest = std::string_view(text)](char* buffer, std::size_t size) mutable {
        const std::size_t count = rest.copy(buffer, size);
        rest.remove_prefix(count);
        return count;
      },
      "bins", ',');
  Table table;
  while (reader.Next()) {
    table.emplace_back(reader.GetFields().begin(), reader.GetFields().end());
  }
  return table;
}

std::string Quoted(const std::string& name) {
  std::string quoted = "\"";
  for (const char byte : name) quoted += byte == '"' ? "\"\"" : std::string(1, byte);
  return quoted + "\"";
}

void Fill(Database& database, const Maker& maker, const std::vector<std::vector<Value>>& rows) {
  const std::string table = Quoted(maker.Options().table);
  std::string columns;
  std::string places;
  for (const BinnedAttribute& attribute : maker.GetModel().attributes) {
    const char* const comma = columns.empty() ? "" : ", ";
    columns += comma + Quoted(attribute.name) + (maker.AreTexts() ? " TEXT" : " DOUBLE PRECISION");
    places += std::string(comma) + "?";
  }
  database.Run("CREATE TABLE " + table + " (" + columns + ")");
  const Database::Statement insert =
      database.Prepare("INSERT INTO " + table + " VALUES (" + places + ")");
  for (const std::vector<Value>& row : rows) {
    sqlite3_reset(insert.get());
    int place = 0;
    for (const Value& value : row) {
      ++place;
      if (!value.text.has_value()) {
        sqlite3_bind_null(insert.get(), place);
      } else if (maker.AreTexts()) {
        Bind(insert.get(), place, *value.text);
      } else {
        sqlite3_bind_double(insert.get(), place, value.number);
      }
    }
    sqlite3_step(insert.get());
  }
}

// The names and bins that the query gives, the table's own columns left out.
Table Queried(Database& database, const std::string& query, std::size_t columns) {
  const Database::Statement statement = database.Prepare(query);
  Table table(1);
  for (std::size_t i = 0; i < columns; ++i) {
    table[0].emplace_back(sqlite3_column_name(statement.get(), static_cast<int>(columns + i)));
  }
  while (sqlite3_step(statement.get()) == SQLITE_ROW) {
    std::vector<std::string>& row = table.emplace_back();
    for (std::size_t i = 0; i < columns; ++i) {
      const auto column = static_cast<int>(columns + i);
      const unsigned char* const text = sqlite3_column_text(statement.get(), column);
      const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement.get(), column));
      row.push_back(text == nullptr ? kMissing
                                    : std::string(reinterpret_cast<const char*>(text), size));
    }
  }
  return table;
}

// The bins in a language; empty when it has no way to write them.
std::string Exported(const Maker& maker, const TQTool::ExportFormat& format) {
  TQTool::ExportOptions options = maker.Options();
  options.format = format;
  try {
    return TQTool::ExportModel(maker.GetModel(), options);
  } catch (const TQTool::ToolError& error) {
    fuzz::RequireGoodMessage(error);
    return "";
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes bytes(data, size);
  Database database;
  Maker maker(bytes, database);
  std::string query;  // of the one language that reads a table, SQL
  for (const TQTool::ExportFormat& format : TQTool::kExportFormats) {
    const std::string text = Exported(maker, format);
    if (format.readsTable) query = text;
  }
  if (query.empty()) return 0;

  constexpr std::size_t kMostRows = 32;
  std::vector<std::vector<Value>> rows;
  while (!bytes.IsUsedUp() && rows.size() < kMostRows) {
    std::vector<Value>& row = rows.emplace_back();
    for (const BinnedAttribute& attribute : maker.GetModel().attributes) {
      row.push_back(maker.MakeValue(attribute));
    }
  }
  Fill(database, maker, rows);
  const Table queried = Queried(database, query, maker.GetModel().attributes.size());
  const Table applied = Applied(maker, rows);
  if (queried != applied) {
    Require(false, "bins that the data base and `apply` give differently:\n" + query +
                       "in the data base:\n" + TextOf(queried) + "applied:\n" + TextOf(applied));
  }
  return 0;
}
