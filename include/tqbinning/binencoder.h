#pragma once

#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tqbinning/binusermissing.h"
#include "tqbinning/binvariable.h"
#include "tqbinning/export.h"

// Turns the raw values of one variable into the numbers that are binned:
// categories into dense codes from 0, in order of first appearance, or weights
// into whole weights.  Encode, EncodeConst and Decode belong to the concrete
// classes; the type tells which one it is.  Copies are deep.
class TQBINNING_EXPORT IBINEncoder {
 public:
  virtual ~IBINEncoder();
  virtual int GetEncoderType() const = 0;         // 2 numeric, 3 string, 4 weight rounding
  virtual int GetNumberOfCategories() const = 0;  // seen so far
  // Replaces all labels, one per code.
  virtual void SetValueLabels(const std::vector<std::string>& labels) = 0;
  // Sets the label of one code; a code without category is ignored.
  virtual void SetValueLabel(int code, const std::string& label) = 0;
  // The labels, owned by the encoder; null for an encoder without labels.
  virtual const std::vector<std::string>* GetValueLabels() const = 0;
  // Replaces the user-missing definition.  False: wrong data type, nothing changed.
  virtual bool SetUserMissingInfo(IBINUserMissing* userMissing) = 0;
  virtual IBINUserMissing* GetUserMissingInfo() const = 0;  // null when none
  virtual IBINEncoder* Clone() const = 0;                   // a copy; the caller deletes it
  virtual std::ostream& Display(std::ostream& os) const = 0;
};

// Orders doubles by <, with NaN after all numbers, so that a NaN is a category
// like any other and never upsets the order of a map.
struct BINNumericOrder {
  bool operator()(double a, double b) const { return a < b || (b != b && a == a); }  // a first
};

// Numbers as categories.  Owns its user-missing definition (numeric).
class TQBINNING_EXPORT BINCatNumEncoder : public IBINEncoder {
 public:
  // Empty; `n` only reserves room.
  explicit BINCatNumEncoder(int n);
  // Encodes the elements in order; a repeated one shares the first one's code.
  explicit BINCatNumEncoder(const std::vector<double>& values);
  BINCatNumEncoder(const BINCatNumEncoder& other);
  BINCatNumEncoder& operator=(const BINCatNumEncoder& other);
  ~BINCatNumEncoder() override;

  // The code of the value as a double, a new one if it is new; -1.0 for the
  // system-missing value and for a user-missing one.
  double Encode(double value);
  // The same without learning: -1.0 for a value that was never encoded.
  double EncodeConst(double value) const;
  // The value of a code; TQMV::gMissingValue for a code that is not in use.
  double Decode(int code) const;

  int GetEncoderType() const override;
  int GetNumberOfCategories() const override;
  void SetValueLabels(const std::vector<std::string>& labels) override;
  void SetValueLabel(int code, const std::string& label) override;
  const std::vector<std::string>* GetValueLabels() const override;
  bool SetUserMissingInfo(IBINUserMissing* userMissing) override;  // numeric; owns it
  IBINUserMissing* GetUserMissingInfo() const override;
  BINCatNumEncoder* Clone() const override;
  std::ostream& Display(std::ostream& os) const override;

 private:
  bool IsUserMissing(double value) const;

  std::map<double, int, BINNumericOrder> fCodes;
  std::vector<double> fValues;  // the value of each code
  std::vector<std::string> fValueLabels;
  int fLastCode;  // -1 when empty
  std::unique_ptr<IBINUserMissing> fUserMissing;
};

// Strings as categories, compared byte by byte; the empty string is a category.
// Owns its user-missing definition (string).
class TQBINNING_EXPORT BINStringEncoder : public IBINEncoder {
 public:
  // Empty; `n` only reserves room.
  explicit BINStringEncoder(int n);
  // Encodes the elements in order; a repeated one shares the first one's code.
  explicit BINStringEncoder(const std::vector<std::string>& values);
  BINStringEncoder(const BINStringEncoder& other);
  BINStringEncoder& operator=(const BINStringEncoder& other);
  ~BINStringEncoder() override;

  // The code of the string as a double, a new one if it is new; -1.0 for a
  // user-missing string.
  double Encode(const std::string& value);
  // The same without learning: -1.0 for a string that was never encoded.
  double EncodeConst(const std::string& value) const;
  // The string of a code; the empty string for a code that is not in use.
  std::string Decode(int code) const;
  // Points every code at its key again; needed after a copy, since keys move.
  void CreateLinks();

  int GetEncoderType() const override;
  int GetNumberOfCategories() const override;
  void SetValueLabels(const std::vector<std::string>& labels) override;
  void SetValueLabel(int code, const std::string& label) override;
  const std::vector<std::string>* GetValueLabels() const override;
  bool SetUserMissingInfo(IBINUserMissing* userMissing) override;  // string; owns it
  IBINUserMissing* GetUserMissingInfo() const override;
  BINStringEncoder* Clone() const override;
  std::ostream& Display(std::ostream& os) const override;

 private:
  bool IsUserMissing(const std::string& value) const;

  std::map<std::string, int> fCodes;
  std::vector<const std::string*> fLinks;  // the key of each code, inside fCodes
  std::vector<std::string> fValueLabels;
  int fLastCode;  // -1 when empty
  std::unique_ptr<IBINUserMissing> fUserMissing;
};

// Makes frequency weights whole.  Borrows its user-missing definition, which the
// weight variable owns; a copy borrows the same one.
class TQBINNING_EXPORT BINRoundEncoder : public IBINEncoder {
 public:
  // Rounds to the closest whole number, halves upwards.
  BINRoundEncoder();
  explicit BINRoundEncoder(IBINVariable::BINWRoundingOption option);
  BINRoundEncoder(const BINRoundEncoder&);
  BINRoundEncoder& operator=(const BINRoundEncoder&);
  ~BINRoundEncoder() override;

  // The weight to use: floor(w) or floor(w + 0.5) by the option, w itself by any
  // other option.  TQMV::gMissingValue for a missing or user-missing weight and
  // for one that is not above zero afterwards; a NaN is handed back.
  double Encode(double weight) const;

  int GetEncoderType() const override;
  int GetNumberOfCategories() const override;                            // 0
  void SetValueLabels(const std::vector<std::string>& labels) override;  // ignored
  void SetValueLabel(int code, const std::string& label) override;       // ignored
  const std::vector<std::string>* GetValueLabels() const override;       // null
  bool SetUserMissingInfo(IBINUserMissing* userMissing) override;        // numeric; borrows
  IBINUserMissing* GetUserMissingInfo() const override;
  BINRoundEncoder* Clone() const override;
  std::ostream& Display(std::ostream& os) const override;

 private:
  IBINVariable::BINWRoundingOption fOption;
  IBINUserMissing* fUserMissing;  // borrowed
};
