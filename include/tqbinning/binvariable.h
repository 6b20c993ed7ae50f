#pragma once

#include <iosfwd>
#include <memory>
#include <string>

#include "tqbinning/export.h"

class BINRoundEncoder;
class IBINEncoder;
class IBINUserMissing;

// One column of the host's records: its name, label, role and measurement level,
// and how its values become the numbers that are binned.  Copies are deep.
class TQBINNING_EXPORT IBINVariable {
 public:
  // What the variable is used for.
  enum VariableRole : int { kUndefinedRole = 0, kAttribute = 1, kTarget = 2, kFrequencyWeight = 3 };

  // How the variable is measured, which decides the kind of its encoder.
  enum MeasureLevel : int {
    kUnknownLevel = 0,
    kContinuous = 1,
    kNumericCategorical = 2,
    kStringCategorical = 3,
    kWeightLevel = 4
  };

  // How a frequency weight is made whole; any other value leaves it as it is.
  enum BINWRoundingOption : int { kTruncate = 0, kRoundToClosest = 1 };

  virtual ~IBINVariable();
  virtual MeasureLevel GetMeasureLevel() const = 0;             // how it is measured
  virtual std::string GetVariableName() const = 0;              // unique in a list
  virtual std::string GetVariableLabel() const = 0;             // for people to read
  virtual void SetVariableLabel(const std::string& label) = 0;  // replaces it
  // The number of categories, declared or seen; 0 for one that is not categorical.
  virtual int GetNumberOfCategories() const = 0;
  virtual VariableRole GetVariableRole() const = 0;
  virtual void SetVariableRole(VariableRole role) = 0;
  // Takes the encoder's number of categories over when that is larger (it never
  // shrinks) and returns the number now held.
  virtual int UpdateNumberOfCategories() = 0;
  // Replaces the user-missing definition, deleting the old one.  True: the
  // variable now owns `userMissing` (null clears).  False: wrong data type,
  // nothing changed, `userMissing` stays the caller's.
  virtual bool SetUserMissingInfo(IBINUserMissing* userMissing) = 0;
  // The definition, owned by the variable (or its encoder); null when none.
  virtual IBINUserMissing* GetUserMissingInfo() const = 0;
  virtual IBINVariable* Clone() const = 0;  // a deep copy; the caller deletes it
  // The encoder, owned by the variable; null for a continuous variable.
  virtual const IBINEncoder* GetEncoder() const = 0;
  virtual IBINEncoder* GetEncoder() = 0;
  // 0 usable, 1 only one category, 2 no category; updates the number first.
  virtual int GetVarStatus() = 0;
  virtual std::ostream& Display(std::ostream& os) const = 0;
};

// A continuous variable: the thing that gets binned.
class TQBINNING_EXPORT BINContVar : public IBINVariable {
 public:
  // Without user-missing definition.
  BINContVar(const std::string& name, const std::string& label, VariableRole role);
  BINContVar(const BINContVar& other);
  BINContVar& operator=(const BINContVar& other);
  ~BINContVar() override;

  MeasureLevel GetMeasureLevel() const override;  // continuous
  std::string GetVariableName() const override;
  std::string GetVariableLabel() const override;
  void SetVariableLabel(const std::string& label) override;
  int GetNumberOfCategories() const override;  // 0
  VariableRole GetVariableRole() const override;
  void SetVariableRole(VariableRole role) override;
  int UpdateNumberOfCategories() override;                         // 0
  bool SetUserMissingInfo(IBINUserMissing* userMissing) override;  // numeric only
  IBINUserMissing* GetUserMissingInfo() const override;
  BINContVar* Clone() const override;
  const IBINEncoder* GetEncoder() const override;  // null
  IBINEncoder* GetEncoder() override;              // null
  int GetVarStatus() override;                     // 0
  std::ostream& Display(std::ostream& os) const override;

 private:
  std::string fName;
  std::string fLabel;
  VariableRole fRole;
  std::unique_ptr<IBINUserMissing> fUserMissing;
};

// A categorical variable, normally the target.  Its user-missing definition
// lives in its encoder.
class TQBINNING_EXPORT BINCatVar : public IBINVariable {
 public:
  // Level 2 gives a numeric encoder, every other level a string encoder; the
  // number of categories is the declared one and a capacity hint.
  BINCatVar(const std::string& name, const std::string& label, int numberOfCategories,
            MeasureLevel level, VariableRole role);
  BINCatVar(const BINCatVar& other);
  BINCatVar& operator=(const BINCatVar& other);
  ~BINCatVar() override;

  MeasureLevel GetMeasureLevel() const override;
  std::string GetVariableName() const override;
  std::string GetVariableLabel() const override;
  void SetVariableLabel(const std::string& label) override;
  int GetNumberOfCategories() const override;
  VariableRole GetVariableRole() const override;
  void SetVariableRole(VariableRole role) override;
  int UpdateNumberOfCategories() override;
  bool SetUserMissingInfo(IBINUserMissing* userMissing) override;  // as its encoder
  IBINUserMissing* GetUserMissingInfo() const override;
  BINCatVar* Clone() const override;
  const IBINEncoder* GetEncoder() const override;  // never null
  IBINEncoder* GetEncoder() override;              // never null
  int GetVarStatus() override;
  std::ostream& Display(std::ostream& os) const override;

 private:
  std::string fName;
  std::string fLabel;
  VariableRole fRole;
  int fNumberOfCategories;
  MeasureLevel fMeasureLevel;
  std::unique_ptr<IBINEncoder> fEncoder;
};

// The frequency weight.  Its encoder borrows the user-missing definition that
// the variable owns.
class TQBINNING_EXPORT BINWeightVar : public IBINVariable {
 public:
  // Without user-missing definition.
  BINWeightVar(const std::string& name, const std::string& label, BINWRoundingOption option);
  BINWeightVar(const BINWeightVar& other);
  BINWeightVar& operator=(const BINWeightVar& other);
  ~BINWeightVar() override;

  MeasureLevel GetMeasureLevel() const override;  // frequency weight
  std::string GetVariableName() const override;
  std::string GetVariableLabel() const override;
  void SetVariableLabel(const std::string& label) override;
  int GetNumberOfCategories() const override;                      // 0
  VariableRole GetVariableRole() const override;                   // always frequency weight
  void SetVariableRole(VariableRole role) override;                // ignored
  int UpdateNumberOfCategories() override;                         // 0
  bool SetUserMissingInfo(IBINUserMissing* userMissing) override;  // numeric only
  IBINUserMissing* GetUserMissingInfo() const override;
  BINWeightVar* Clone() const override;
  const IBINEncoder* GetEncoder() const override;  // never null
  IBINEncoder* GetEncoder() override;              // never null
  int GetVarStatus() override;                     // 0
  std::ostream& Display(std::ostream& os) const override;

 private:
  std::string fName;
  std::string fLabel;
  std::unique_ptr<BINRoundEncoder> fEncoder;
  std::unique_ptr<IBINUserMissing> fUserMissing;
};
