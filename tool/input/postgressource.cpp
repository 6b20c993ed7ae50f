#include "input/postgressource.h"

#include <array>
#include <iterator>
#include <utility>

#include <fmt/format.h>
#include <libpq-fe.h>

#include "base/plaintext.h"
#include "base/signals.h"
#include "base/toolerror.h"

namespace TQTool {
namespace {

// The address without user name, password and parameters, which are nobody else's
// business.
std::string NameOf(std::string_view address) {
  address = address.substr(0, address.find('?'));
  const std::size_t begin = address.find("://") + 3;
  const std::size_t host = address.rfind('@');
  const std::string_view shown = address.substr(host == std::string_view::npos ? begin : host + 1);
  return fmt::format("postgresql://{}", Printable(shown));
}

void KeepQuiet(void* /*user*/, const char* /*notice*/) {}

}  // namespace

void PostgresSource::CloseConnection::operator()(pg_conn* connection) const {
  PQfinish(connection);
}

void PostgresSource::ClearResult::operator()(pg_result* result) const { PQclear(result); }

bool PostgresSource::IsAddress(std::string_view input) {
  return input.starts_with("postgresql://") || input.starts_with("postgres://");
}

PostgresSource::PostgresSource(const std::string& address, const std::string& query)
    : DatabaseSource(NameOf(address)), fIsMarked(false) {
  if (query.empty()) {
    throw ToolError(
        kUsage,
        fmt::format("{}: no query; expected what to ask for, as --query 'SELECT ...'", fName));
  }
  Connect(address);
  Execute("SET SESSION CHARACTERISTICS AS TRANSACTION READ ONLY");
  Execute("SET extra_float_digits = 1");  // texts that give the very number back
  Ask(query);
}

void PostgresSource::Connect(const std::string& address) {
  const std::array<const char*, 4> keys = {"dbname", "client_encoding", "fallback_application_name",
                                           nullptr};
  const std::array<const char*, 4> values = {address.c_str(), "UTF8", "tqbin", nullptr};
  fConnection.reset(PQconnectStartParams(keys.data(), values.data(), 1));
  pg_conn* const connection = fConnection.get();
  if (connection == nullptr) throw std::bad_alloc();
  PQsetNoticeProcessor(connection, KeepQuiet, nullptr);
  PostgresPollingStatusType state = PGRES_POLLING_WRITING;
  while (PQstatus(connection) != CONNECTION_BAD && state != PGRES_POLLING_OK &&
         state != PGRES_POLLING_FAILED) {
    if (state == PGRES_POLLING_READING) {
      WaitForInput(PQsocket(connection));
    } else {
      WaitForOutput(PQsocket(connection));
    }
    state = PQconnectPoll(connection);
  }
  if (PQstatus(connection) != CONNECTION_OK) {
    FailInSession(PQerrorMessage(connection),
                  "expected postgresql://USER@HOST:PORT/DATABASE; check the address, and that the "
                  "server runs");
  }
}

void PostgresSource::Execute(const char* command) {
  if (PQsendQuery(fConnection.get(), command) == 0) {
    FailInSession(PQerrorMessage(fConnection.get()), "expected a server that answers");
  }
  while (const Result result = Receive()) {
  }
}

void PostgresSource::Ask(const std::string& query) {
  pg_conn* const connection = fConnection.get();
  // With parameters, although none: then the server takes one statement only.
  if (PQsendQueryParams(connection, query.c_str(), 0, nullptr, nullptr, nullptr, nullptr, 0) == 0 ||
      PQsetSingleRowMode(connection) == 0) {
    FailInSession(PQerrorMessage(connection), "expected a server that answers");
  }
  Result first = Receive();
  const int columns = first == nullptr ? 0 : PQnfields(first.get());
  if (columns == 0) Fail("no columns in the query's answer; expected one SELECT");
  std::vector<std::string> names;
  names.reserve(static_cast<std::size_t>(columns));
  for (int i = 0; i < columns; ++i) names.emplace_back(PQfname(first.get(), i));
  fTexts.resize(names.size());
  SetNames(std::move(names));
  fNext.push_back(std::move(first));
}

PostgresSource::Result PostgresSource::Receive() {
  pg_conn* const connection = fConnection.get();
  while (PQisBusy(connection) != 0) {
    WaitForInput(PQsocket(connection));
    if (PQconsumeInput(connection) == 0) {
      FailInSession(PQerrorMessage(connection), "expected the rest of the rows; ask again");
    }
  }
  Result result(PQgetResult(connection));
  const ExecStatusType status = result == nullptr ? PGRES_TUPLES_OK : PQresultStatus(result.get());
  if (status != PGRES_SINGLE_TUPLE && status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK) {
    FailInSession(PQresultErrorMessage(result.get()), "expected one SELECT; correct the query");
  }
  return result;
}

bool PostgresSource::NextRow() {
  Result row;
  if (!fNext.empty()) {
    row = std::move(fNext.front());
    fNext.pop_front();
  } else {
    row = Receive();
  }
  const pg_result* const values = row.get();
  if (values == nullptr || PQntuples(values) == 0) return false;
  for (std::size_t i = 0; i < fTexts.size(); ++i) {
    const auto column = static_cast<int>(i);
    if (PQgetisnull(values, 0, column) != 0) {
      fTexts[i] = {};
    } else {
      fTexts[i] = {PQgetvalue(values, 0, column),
                   static_cast<std::size_t>(PQgetlength(values, 0, column))};
    }
  }
  SetRow(fTexts);
  if (fIsMarked) {
    fSeen.push_back(std::move(row));
  } else {
    fRow = std::move(row);
  }
  return true;
}

void PostgresSource::Mark() {
  fIsMarked = true;
  fSeen.clear();
}

void PostgresSource::Rewind() {
  SetRowNumber(GetRowNumber() - fSeen.size());
  fNext.insert(fNext.begin(), std::make_move_iterator(fSeen.begin()),
               std::make_move_iterator(fSeen.end()));
  fSeen.clear();
  fIsMarked = false;
}

void PostgresSource::FailInSession(std::string_view message, const std::string& expectation) const {
  // The severity stands before the message.
  if (message.starts_with("ERROR:")) message.remove_prefix(6);
  Fail(fmt::format("{}; {}", FirstLineOf(message), expectation));
}

}  // namespace TQTool
