#pragma once

#include <cstddef>
#include <vector>

#include "tqcommon/tqcommon.h"

namespace bench {

// A data set in memory, column by column, as a host may hold it.
struct Columns {
  std::vector<std::vector<double>> attributes;
  std::vector<double> target;   // category codes 0 .. classes - 1; one per row
  std::vector<double> weights;  // empty: every row counts once
  int classes = 0;

  std::size_t Rows() const { return target.size(); }
};

// A host's stream of cases over columns in memory (borrowed): attributes in order,
// then the target when asked for, then the weights when there are any.  One record
// serves all cases.
class ColumnRecords : public TQCommon::RecordIterator {
 public:
  ColumnRecords(const Columns& columns, bool withTarget)
      : fRows(columns.Rows()),
        fFields(FieldsOf(columns, withTarget)),
        fRecord(static_cast<int>(fFields.size())) {}

  bool HasMore() override { return fRow < fRows; }

  const TQCommon::Record* Next() override {
    int field = 0;
    for (const double* const values : fFields) fRecord[field++] = values[fRow];
    ++fRow;
    return &fRecord;
  }

 private:
  static std::vector<const double*> FieldsOf(const Columns& columns, bool withTarget) {
    std::vector<const double*> fields;
    for (const std::vector<double>& column : columns.attributes) fields.push_back(column.data());
    if (withTarget) fields.push_back(columns.target.data());
    if (!columns.weights.empty()) fields.push_back(columns.weights.data());
    return fields;
  }

  std::size_t fRow = 0;
  std::size_t fRows;
  std::vector<const double*> fFields;
  TQCommon::Record fRecord;
};

}  // namespace bench
