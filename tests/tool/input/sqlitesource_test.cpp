#include "input/sqlitesource.h"

#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "input/missingtokens.h"
#include "input/numbertext.h"
#include "support/scratchdirectory.h"
#include "tooltesting.h"

namespace TQTool {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

// A file with what the statements make of it.
class SqliteSourceTest : public testing::Test {
 protected:
  void Make(const std::string& statements) {
    sqlite3* database = nullptr;
    ASSERT_EQ(SQLITE_OK, sqlite3_open(Path().c_str(), &database));
    EXPECT_EQ(SQLITE_OK, sqlite3_exec(database, statements.c_str(), nullptr, nullptr, nullptr));
    sqlite3_close(database);
  }

  std::string Path() const { return fScratch.File("f.db"); }
  std::string Address() const { return "sqlite:" + Path(); }

  std::string ErrorIn(const std::string& rest, const std::string& query = "") const {
    return ErrorOf([&] {
      SqliteSource source(Address() + rest, query);
      while (source.NextRow()) {
      }
    });
  }

 private:
  support::ScratchDirectory fScratch;
};

TEST_F(SqliteSourceTest, GivesTheRowsOfATable) {
  Make("CREATE TABLE \"my \"\" t\" (a, b); INSERT INTO \"my \"\" t\" VALUES (1, 'x'), (2, ' y ')");
  SqliteSource source(Address() + "?table=my \" t", "");
  EXPECT_EQ((std::vector<std::string>{"a", "b"}), source.GetNames());
  ASSERT_TRUE(source.NextRow());
  EXPECT_EQ("1", source.GetField(0));
  EXPECT_EQ("x", source.GetField(1));
  EXPECT_EQ("row 1", source.DescribeRow());
  ASSERT_TRUE(source.NextRow());
  EXPECT_EQ("y", source.GetField(1));
  EXPECT_FALSE(source.NextRow());
}

TEST_F(SqliteSourceTest, RealNumbersKeepEveryBit) {
  Make("CREATE TABLE t (a); INSERT INTO t VALUES (0.1 + 0.2), (1e300), (-5e-324), (3.0)");
  SqliteSource source(Address() + "?table=t", "");
  for (const double expected : {0.1 + 0.2, 1e300, -5e-324, 3.0}) {
    ASSERT_TRUE(source.NextRow());
    double number = NAN;
    ReadNumber(source.GetField(0), &number);
    EXPECT_EQ(expected, number);
  }
}

TEST_F(SqliteSourceTest, NullIsNoText) {
  Make("CREATE TABLE t (a); INSERT INTO t VALUES (NULL), ('')");
  SqliteSource source(Address() + "?table=t", "");
  ASSERT_TRUE(source.NextRow());
  EXPECT_EQ(nullptr, source.GetField(0).data());
  EXPECT_TRUE(MissingTokens({"x"}).Contains(source.GetField(0)));
  ASSERT_TRUE(source.NextRow());
  EXPECT_FALSE(MissingTokens({"x"}).Contains(source.GetField(0)));
}

TEST_F(SqliteSourceTest, RewindsToTheMark) {
  Make("CREATE TABLE t (a); INSERT INTO t VALUES (1), (2), (3)");
  SqliteSource source(Address(), "SELECT a FROM t ORDER BY a");
  ASSERT_TRUE(source.NextRow());
  source.Mark();
  while (source.NextRow()) {
  }
  source.Rewind();
  ASSERT_TRUE(source.NextRow());
  EXPECT_EQ("2", source.GetField(0));
  EXPECT_EQ("row 2", source.DescribeRow());
}

TEST_F(SqliteSourceTest, OnlyOneQueryThatReadsIsTaken) {
  Make("CREATE TABLE t (a); INSERT INTO t VALUES (1)");
  EXPECT_EQ("none", ErrorIn("?query=WITH x AS (SELECT a FROM t) SELECT max(a) AS m FROM x;"));
  for (const char* const query :
       {"DELETE FROM t", "PRAGMA user_version", "ATTACH 'x' AS y", "DROP TABLE t", "BEGIN"}) {
    EXPECT_THAT(ErrorIn("", query), HasSubstr("expected one SELECT")) << query;
  }
  EXPECT_THAT(ErrorIn("", "SELECT 1; SELECT 2"), HasSubstr("a second statement"));
  EXPECT_THAT(ErrorIn("", " "), HasSubstr("no columns in the query"));
  EXPECT_EQ("none", ErrorIn("?table=t"));
}

TEST_F(SqliteSourceTest, WhatIsNotThereIsAnError) {
  EXPECT_THAT(ErrorIn("?table=t"), HasSubstr("unable to open database file;"));
  Make("CREATE TABLE t (a); CREATE VIEW v AS SELECT a AS b, a AS c FROM t");
  EXPECT_THAT(ErrorIn("?table=x"), HasSubstr("no such table: x; expected one SELECT; there are "
                                             "the tables t, v"));
  EXPECT_THAT(ErrorIn(""), HasSubstr("neither table nor query is named;"));
  EXPECT_THAT(ErrorIn("?query=SELECT z FROM t"), HasSubstr("no such column: z"));
  EXPECT_THAT(ErrorIn("?table=t", "SELECT 1"), StartsWith("2: "));
}

TEST_F(SqliteSourceTest, UnusableColumnsAreAnError) {
  Make("CREATE TABLE t (a); INSERT INTO t VALUES (1), (x'00')");
  EXPECT_THAT(ErrorIn("?query=SELECT a, a FROM t"), HasSubstr("two columns are named 'a'"));
  EXPECT_THAT(ErrorIn("?query=SELECT 1, a FROM t"), HasSubstr("row 2, column 2: bytes (a BLOB);"));
}

}  // namespace
}  // namespace TQTool
