#pragma once

#include <map>
#include <string>

// A record library in one header, with the operations that the binning library uses.

class ProgressReport;

namespace TQMV {
inline const double gMissingValue = -1.7976931348623157e308;
}  // namespace TQMV

class ProgressListener {
 public:
  virtual ~ProgressListener() = default;
  virtual void Report(ProgressReport* report) = 0;
};

class TQQueryCancel {
 public:
  virtual ~TQQueryCancel() = default;
  virtual bool IsCancelled() = 0;
};

namespace TQCommon {

// Fields by their names, which are their numbers.
class Record {
 public:
  explicit Record(int numberOfFields) {
    for (int field = 0; field < numberOfFields; ++field) fFields[std::to_string(field)] = 0.0;
  }
  double operator[](int field) const { return fFields.at(std::to_string(field)); }
  double& operator[](int field) { return fFields[std::to_string(field)]; }
  int GetNumberOfFields() const { return static_cast<int>(fFields.size()); }

 private:
  std::map<std::string, double> fFields;
};

class RecordIterator {
 public:
  virtual ~RecordIterator() = default;
  virtual bool HasMore() = 0;
  virtual const Record* Next() = 0;
};

}  // namespace TQCommon
