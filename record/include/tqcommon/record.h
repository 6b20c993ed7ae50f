#pragma once

#include <cstddef>
#include <vector>

#include "tqcommon/export.h"

namespace TQCommon {

// One case: a fixed number of values, addressed from 0.  The value of field k
// belongs to variable k of the variable list that describes the records; a
// value equal to TQMV::gMissingValue is missing.  Copies are deep.  No range is
// checked: a valid index is the caller's duty.
class TQCOMMON_EXPORT Record {
 public:
  // A record of `numberOfFields` zeros; a negative number counts as 0.
  explicit Record(int numberOfFields);
  Record(const Record&);
  Record& operator=(const Record&);
  ~Record();

  // The value of a field, and a reference through which it can be set.  Inline,
  // because a data pass touches every field of every case.
  double operator[](int field) const { return fValues[static_cast<std::size_t>(field)]; }
  double& operator[](int field) { return fValues[static_cast<std::size_t>(field)]; }

  // The number of fields that the record was built with.
  int GetNumberOfFields() const;

 private:
  std::vector<double> fValues;
};

}  // namespace TQCommon
