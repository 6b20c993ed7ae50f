#pragma once

#include "tqbinning/export.h"

namespace TQBinning {

// The codes that a TQStatus carries.  Whether one is an error or a warning is
// decided where it is raised; the comments name the condition.
enum StatusCode : long {
  kOK = 0,
  kCancelled = 1,                 // the host, or Cancel, asked the run to stop
  kResourceFailure = 3,           // memory (or another resource) could not be had
  kInvalidTable = 120002,         // no bin borders, or a table that they do not fit
  kInvalidVariableList = 120003,  // datum 1: an offending variable's index, or -1
  kNoCases = 120004,              // the iterator holds no case, or none was kept
  kRoleConflict = 120005,         // attribute equals target, or is the weight
  kTargetNotCategorical = 120006,
  kNoValidPair = 120008,          // the index lists hold no usable attribute/target
  kInvalidNumberOfBins = 120009,  // the settings' number of bins is below 1
  kTargetNotUsable = 120010,      // negative, or its column was found unusable
  kInvalidAttributeIndex = 120011,
  kCodeOutOfRange = 120012,    // category code outside 0..255; datum 0: where
  kInvalidIndex = 120013,      // an index out of range, or nothing stored for it
  kOneDistinctValue = 120014,  // datum 0: the attribute's index
  kNoValidCase = 120015,       // the attribute has no valid case
  kOneTargetClass = 120016,    // datum 0: the target's index
  kNoCutAccepted = 120017,     // the stop rule accepted no cut: a single bin
  kSomeNotOK = 120018,         // an attribute or pair ended not OK; see results
  kNoCutPoint = 120019,        // equal frequency gave no cut; datum 0: attribute
  kNoResults = 120020,         // nothing is stored at all
  kCannotAppend = 120021       // a temporary file cannot be appended to
};

// The outcome of an operation: a code, a severity and six slots in which the
// raiser may leave an index or a number that says what went wrong.  A small
// value: copied freely, owns nothing.  The severity alone decides whether it is
// OK; a warning never stops a run.  The library holds no message texts.
class [[nodiscard]] TQBINNING_EXPORT TQStatus {
 public:
  // OK: code 0, all slots 0.
  TQStatus();
  // A warning or an error of this code (never OK, even for code 0); slots 0.
  TQStatus(long code, bool isWarning);

  // The code; one of StatusCode wherever the library raised it.
  long GetErrorCode() const;

  bool IsOK() const;       // severity 0
  bool IsError() const;    // severity below 0
  bool IsWarning() const;  // severity above 0

  // The auxiliary integers and doubles.  `i` is 0, 1 or 2 and is not checked.
  long GetDiscreteDatum(unsigned int i) const;
  void SetDiscreteDatum(unsigned int i, long value);
  double GetScaleDatum(unsigned int i) const;
  void SetScaleDatum(unsigned int i, double value);

  // Equal code, severity and slots; a NaN slot equals nothing, itself included.
  bool operator==(const TQStatus& other) const;

 private:
  long fErrorCode;
  short fSeverity;  // 0 OK, 1 warning, -1 error
  long fDiscreteData[3];
  double fScaleData[3];
};

}  // namespace TQBinning
