#pragma once

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "input/databasesource.h"

struct pg_conn;
struct pg_result;

namespace TQTool {

// The rows of a query to a PostgreSQL server, which hands them over one by one, so
// that no more than a row is in memory.  The session can only read.  NULL is a
// missing value.
class PostgresSource : public DatabaseSource {
 public:
  // Whether the input is the address of a server: postgresql://... or postgres://...
  static bool IsAddress(std::string_view input);

  // Connects and asks.  Throws ToolError: kUsage without a query, kInput for a
  // server that cannot be reached and a query that is no good.
  PostgresSource(const std::string& address, const std::string& query);

  bool NextRow() override;
  void Mark() override;
  void Rewind() override;

 private:
  struct CloseConnection {
    void operator()(pg_conn* connection) const;
  };
  struct ClearResult {
    void operator()(pg_result* result) const;
  };
  using Result = std::unique_ptr<pg_result, ClearResult>;

  void Connect(const std::string& address);
  void Execute(const char* command);
  void Ask(const std::string& query);
  // The server's next answer; null when there is none.
  Result Receive();
  [[noreturn]] void FailInSession(std::string_view message, const std::string& expectation) const;

  std::unique_ptr<pg_conn, CloseConnection> fConnection;
  std::deque<Result> fNext;  // received and not yet gone on to
  std::deque<Result> fSeen;  // since Mark, the current row included
  Result fRow;               // the current row, unless it is in fSeen
  bool fIsMarked;
  std::vector<std::string_view> fTexts;
};

}  // namespace TQTool
