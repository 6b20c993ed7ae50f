#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "tqbinning/bininterval.h"
#include "tqbinning/export.h"

// Values that the user declares missing besides the system-missing value.  The
// variable or encoder that accepts a definition owns it.  A definition of data
// type 0 is a BINNumericUserMissing, one of data type 1 a BINStringUserMissing:
// the library relies on that where it asks Contains.
class TQBINNING_EXPORT IBINUserMissing {
 public:
  virtual ~IBINUserMissing();
  virtual int GetDataType() const = 0;         // 0 numeric, 1 string
  virtual int GetNDiscreteValues() const = 0;  // number of listed values
  virtual bool HasInterval() const = 0;        // whether a range is missing
  virtual IBINUserMissing* Clone() const = 0;  // a deep copy; the caller deletes it
  // Same type, values in the same order and interval; labels do not count.  False
  // for null.
  virtual bool IsEqualTo(const IBINUserMissing* other) const = 0;
  virtual std::ostream& Display(std::ostream& os) const = 0;
};

// Numbers listed one by one, each with a label, and at most one closed range.
class TQBINNING_EXPORT BINNumericUserMissing : public IBINUserMissing {
 public:
  // No values, no interval.
  BINNumericUserMissing();
  BINNumericUserMissing(const BINNumericUserMissing&);
  BINNumericUserMissing& operator=(const BINNumericUserMissing&);
  ~BINNumericUserMissing() override;

  // Appends a value; neither number nor repetition is limited.
  void AddValue(double value, const std::string& label);
  // Sets the range, replacing an earlier one.
  void SetInterval(const BINNumericInterval& interval);

  const std::vector<double>& GetDiscreteValues() const;    // in the order added
  const std::vector<std::string>& GetValueLabels() const;  // one per value
  const BINNumericInterval* GetInterval() const;           // null when there is none

  // Whether the value is listed (ordinary equality, so NaN never is) or lies in
  // the range.  The system-missing value is not treated specially.
  bool Contains(double value) const;

  int GetDataType() const override;
  int GetNDiscreteValues() const override;
  bool HasInterval() const override;
  BINNumericUserMissing* Clone() const override;
  bool IsEqualTo(const IBINUserMissing* other) const override;
  std::ostream& Display(std::ostream& os) const override;

 private:
  std::vector<double> fDiscreteValues;  // in the order added
  std::vector<std::string> fValueLabels;
  BINNumericInterval fInterval;  // meaningful only with fHasInterval
  bool fHasInterval;
};

// Strings listed one by one, each with a label; compared byte by byte.
class TQBINNING_EXPORT BINStringUserMissing : public IBINUserMissing {
 public:
  // No values.
  BINStringUserMissing();
  BINStringUserMissing(const BINStringUserMissing&);
  BINStringUserMissing& operator=(const BINStringUserMissing&);
  ~BINStringUserMissing() override;

  // Appends a value; neither number nor repetition is limited.
  void AddValue(const std::string& value, const std::string& label);

  const std::vector<std::string>& GetDiscreteValues() const;  // in the order added
  const std::vector<std::string>& GetValueLabels() const;     // one per value

  // Whether exactly this string is listed.
  bool Contains(const std::string& value) const;

  int GetDataType() const override;
  int GetNDiscreteValues() const override;
  bool HasInterval() const override;  // always false
  BINStringUserMissing* Clone() const override;
  bool IsEqualTo(const IBINUserMissing* other) const override;
  std::ostream& Display(std::ostream& os) const override;

 private:
  std::vector<std::string> fDiscreteValues;  // in the order added
  std::vector<std::string> fValueLabels;
};
