#include "base/statuswords.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

namespace TQTool {
namespace {

struct Entry {
  long code;
  StatusWords words;
};

using namespace TQBinning;

constexpr Entry kEntries[] = {
    {kOK, {"binned", "cut points were found", "nothing to do"}},
    {kCancelled, {"cancelled", "the run was asked to stop", "start it again"}},
    {kResourceFailure,
     {"out of resources", "memory could not be had",
      "free memory, or bin fewer columns at a time"}},
    {kInvalidTable,
     {"not binned", "the bin borders do not cover the values",
      "report this as an error of the library"}},
    {kInvalidVariableList,
     {"columns refused", "a column cannot take the part it was given", "choose other columns"}},
    {kNoCases,
     {"no cases", "no row counts, because every weight is missing or not above zero",
      "check the weight column and --weight-rounding"}},
    {kRoleConflict,
     {"not binned", "the column is the target or the weight already", "choose other columns"}},
    {kTargetNotCategorical,
     {"not binned", "the target is not categorical", "choose another target"}},
    {kNoValidPair,
     {"nothing to bin", "no column can be binned against the target", "choose other columns"}},
    {kInvalidNumberOfBins,
     {"bin count refused", "fewer than two bins were asked for", "ask for at least two"}},
    {kTargetNotUsable,
     {"not binned", "the target has more than 256 categories, or none", "choose another target"}},
    {kInvalidAttributeIndex,
     {"not binned", "the library knows no such column", "report this as an error of the tool"}},
    {kCodeOutOfRange,
     {"category refused", "a category's code lies outside 0 to 255", "choose another target"}},
    {kInvalidIndex,
     {"not stored", "the library has no result for the column",
      "report this as an error of the tool"}},
    {kOneDistinctValue,
     {"not cut", "the column holds one distinct value only", "leave the column out"}},
    {kNoValidCase,
     {"not binned", "every value is missing, or its row's target is",
      "check the column, --missing-token and --user-missing"}},
    {kOneTargetClass, {"not cut", "the target has a single category", "choose another target"}},
    {kNoCutAccepted,
     {"not cut", "no cut separates the target's categories well enough",
      "nothing is wrong; use equal-frequency if bins are needed"}},
    {kSomeNotOK,
     {"done, with remarks", "at least one column was not cut as asked",
      "look at each column's status"}},
    {kNoCutPoint,
     {"not cut", "equal values are too frequent to be parted into more bins",
      "ask for more bins, or leave the column out"}},
    {kNoResults,
     {"no results", "the library stored none", "report this as an error of the library"}},
    {kCannotAppend,
     {"temporary files failed", "a temporary file cannot be written",
      "free space, or name another directory with --temp-dir"}},
};

constexpr StatusWords kUnknown = {"unknown status", "the library reported an unknown code",
                                  "report this as an error of the library"};

}  // namespace

const StatusWords& WordsOf(long code) {
  const auto* const entry = std::find_if(std::begin(kEntries), std::end(kEntries),
                                         [code](const Entry& e) { return e.code == code; });
  return entry == std::end(kEntries) ? kUnknown : entry->words;
}

const char* SeverityOf(const TQStatus& status) {
  return status.IsOK() ? "ok" : status.IsWarning() ? "warning" : "error";
}

std::string Describe(const TQStatus& status) {
  const StatusWords& words = WordsOf(status.GetErrorCode());
  return fmt::format("{}: {}; {} (library code {})", words.words, words.reason, words.remedy,
                     status.GetErrorCode());
}

}  // namespace TQTool
