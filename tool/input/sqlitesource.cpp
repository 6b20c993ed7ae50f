#include "input/sqlitesource.h"

#include <optional>

#include <fmt/format.h>
#include <sqlite3.h>

#include "base/plaintext.h"
#include "base/safemode.h"
#include "base/signals.h"
#include "base/toolerror.h"

namespace TQTool {
namespace {

constexpr int kStepsBetweenLooks = 10000;  // how often a long query looks for a signal

constexpr std::string_view kTable = "?table=";
constexpr std::string_view kQuery = "?query=";

// An address in parts.
struct Address {
  std::string file;
  std::optional<std::string> table;
  std::optional<std::string> query;
};

Address ParseAddress(std::string_view text) {
  text.remove_prefix(SqliteSource::kScheme.size());
  Address address;
  const std::size_t table = text.find(kTable);
  const std::size_t query = text.find(kQuery);
  const std::size_t mark = std::min(table, query);
  address.file = text.substr(0, mark);
  if (mark == std::string_view::npos) return address;
  const std::string rest(text.substr(mark + kTable.size()));
  static_assert(kTable.size() == kQuery.size());
  (mark == table ? address.table : address.query) = rest;
  return address;
}

// A name as SQL writes it.
std::string QuotedName(std::string_view name) {
  std::string quoted = "\"";
  for (const char c : name) quoted += c == '"' ? "\"\"" : std::string(1, c);
  return quoted + "\"";
}

// Lets a query read and nothing else.
int AllowReading(void* /*user*/, int action, const char* /*a*/, const char* /*b*/,
                 const char* /*database*/, const char* /*trigger*/) {
  switch (action) {
    case SQLITE_SELECT:
    case SQLITE_READ:
    case SQLITE_FUNCTION:
    case SQLITE_RECURSIVE: return SQLITE_OK;
    default: return SQLITE_DENY;
  }
}

int LookForSignal(void* /*user*/) { return CaughtSignal() != 0 || AreWaitsToEnd() ? 1 : 0; }

}  // namespace

void SqliteSource::CloseDatabase::operator()(sqlite3* database) const { sqlite3_close(database); }

void SqliteSource::CloseStatement::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

SqliteSource::SqliteSource(const std::string& address, const std::string& query)
    : DatabaseSource(Printable(address)), fMark(0) {
  const Address parts = ParseAddress(address);
  if (!query.empty() && (parts.table.has_value() || parts.query.has_value())) {
    throw ToolError(kUsage,
                    fmt::format("{}: a query besides --query; expected one of them", fName));
  }
  Open(parts.file);
  if (parts.table.has_value()) {
    Prepare("SELECT * FROM " + QuotedName(*parts.table));
  } else if (const std::string& text = parts.query.value_or(query); !text.empty()) {
    Prepare(text);
  } else {
    Fail(
        fmt::format("neither table nor query is named; expected ?table=NAME or ?query=SELECT... "
                    "at its end, or --query; {}",
                    ListTables()));
  }
}

void SqliteSource::Open(const std::string& file) {
  sqlite3* database = nullptr;
  const int safe = IsSafeMode() ? SQLITE_OPEN_NOFOLLOW : 0;
  const int result = sqlite3_open_v2(file.c_str(), &database,
                                     SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX | safe, nullptr);
  fDatabase.reset(database);  // there is one even when that failed
  if (database == nullptr) throw std::bad_alloc();
  if (result != SQLITE_OK) {
    FailInDatabase(safe != 0 ? "expected an SQLite file, and with --safe no symbolic link on the "
                               "way to it; check the path"
                             : "expected an SQLite file; check the path");
  }
  // Sorting would make files in a directory that nobody named.
  if (safe != 0) sqlite3_exec(database, "PRAGMA temp_store = MEMORY", nullptr, nullptr, nullptr);
  sqlite3_set_authorizer(database, AllowReading, nullptr);
  sqlite3_progress_handler(database, kStepsBetweenLooks, LookForSignal, nullptr);
}

void SqliteSource::Prepare(const std::string& query) {
  sqlite3_stmt* statement = nullptr;
  const char* rest = nullptr;
  const int result = sqlite3_prepare_v2(fDatabase.get(), query.c_str(),
                                        static_cast<int>(query.size()) + 1, &statement, &rest);
  fStatement.reset(statement);
  if (result == SQLITE_AUTH) Fail("the query does more than read; expected one SELECT");
  if (result != SQLITE_OK) {
    const std::string message = sqlite3_errmsg(fDatabase.get());  // before it is asked more
    Fail(fmt::format("{}; expected one SELECT; {}", FirstLineOf(message), ListTables()));
  }
  const int columns = sqlite3_column_count(statement);
  const bool isAlone = std::string_view(rest).find_first_not_of(" \t\r\n;") == std::string::npos;
  if (columns == 0 || !isAlone) {
    Fail(fmt::format("{} in the query; expected one SELECT",
                     isAlone ? "no columns" : "a second statement"));
  }
  std::vector<std::string> names;
  names.reserve(static_cast<std::size_t>(columns));
  for (int i = 0; i < columns; ++i) names.emplace_back(sqlite3_column_name(statement, i));
  fNumbers.resize(names.size());
  fTexts.resize(names.size());
  SetNames(std::move(names));
}

// "there are the tables a, b".
std::string SqliteSource::ListTables() {
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(fDatabase.get(),
                     "SELECT group_concat(name, ', ') FROM (SELECT name FROM sqlite_master WHERE "
                     "type IN ('table', 'view') AND name NOT LIKE 'sqlite_%' ORDER BY name)",
                     -1, &statement, nullptr);
  const std::unique_ptr<sqlite3_stmt, CloseStatement> owner(statement);
  if (sqlite3_step(statement) != SQLITE_ROW) FailInDatabase("expected an SQLite file");
  const unsigned char* const names = sqlite3_column_text(statement, 0);
  if (names == nullptr) return "there is no table";
  return fmt::format("there are the tables {}", Printable(reinterpret_cast<const char*>(names)));
}

bool SqliteSource::NextRow() {
  if (!Step()) return false;
  for (std::size_t i = 0; i < fTexts.size(); ++i) fTexts[i] = ReadField(static_cast<int>(i));
  SetRow(fTexts);
  return true;
}

bool SqliteSource::Step() {
  const int result = sqlite3_step(fStatement.get());
  if (result == SQLITE_ROW) return true;
  if (result == SQLITE_DONE) return false;
  ThrowIfCancelled();
  FailInDatabase("expected rows; check the file and the query");
}

std::string_view SqliteSource::ReadField(int column) {
  sqlite3_stmt* const statement = fStatement.get();
  switch (sqlite3_column_type(statement, column)) {
    case SQLITE_NULL: return {};
    case SQLITE_FLOAT: {
      // Its own text would have 15 digits, too few to give the number back.
      std::string& text = fNumbers[static_cast<std::size_t>(column)];
      text.clear();
      fmt::format_to(std::back_inserter(text), "{}", sqlite3_column_double(statement, column));
      return text;
    }
    case SQLITE_BLOB:
      SetRowNumber(GetRowNumber() + 1);
      FailAtField(static_cast<std::size_t>(column),
                  "bytes (a BLOB); expected numbers or text; leave the column out of the query, "
                  "or turn it into text with CAST");
    default: {
      const auto* const text =
          reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
      if (text == nullptr) throw std::bad_alloc();
      return {text, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
    }
  }
}

void SqliteSource::Rewind() {
  sqlite3_reset(fStatement.get());
  for (std::uint64_t row = 0; row < fMark; ++row) Step();
  SetRowNumber(fMark);
}

void SqliteSource::FailInDatabase(const std::string& expectation) {
  Fail(fmt::format("{}; {}", FirstLineOf(sqlite3_errmsg(fDatabase.get())), expectation));
}

}  // namespace TQTool
