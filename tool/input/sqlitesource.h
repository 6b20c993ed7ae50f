#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "input/databasesource.h"

struct sqlite3;
struct sqlite3_stmt;

namespace TQTool {

// The rows of a table or of a query of an SQLite file, which is opened for reading
// only.  NULL is a missing value, and numbers arrive as they are stored.
class SqliteSource : public DatabaseSource {
 public:
  static constexpr std::string_view kScheme = "sqlite:";

  // `address` is sqlite:FILE?table=NAME or sqlite:FILE?query=SELECT..., or sqlite:FILE
  // with `query` given.  Throws ToolError: kUsage for another address, kInput for a
  // file, table or query that is no good.
  SqliteSource(const std::string& address, const std::string& query);

  bool NextRow() override;
  void Mark() override { fMark = GetRowNumber(); }
  void Rewind() override;

 private:
  struct CloseDatabase {
    void operator()(sqlite3* database) const;
  };
  struct CloseStatement {
    void operator()(sqlite3_stmt* statement) const;
  };

  void Open(const std::string& file);
  void Prepare(const std::string& query);
  std::string ListTables();
  bool Step();
  std::string_view ReadField(int column);
  [[noreturn]] void FailInDatabase(const std::string& expectation);

  std::unique_ptr<sqlite3, CloseDatabase> fDatabase;
  std::unique_ptr<sqlite3_stmt, CloseStatement> fStatement;
  std::vector<std::string_view> fTexts;
  std::vector<std::string> fNumbers;  // texts of real numbers, one per column
  std::uint64_t fMark;                // the row before the first one to keep
};

}  // namespace TQTool
