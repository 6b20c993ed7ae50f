#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "tqbinning/binvariable.h"
#include "tqbinning/export.h"

// The host's description of its records: all variables in order, of which at
// most one is the target and at most one the frequency weight.  A variable's
// index is its field in the records and its index in every result.  The list
// owns its variables; copies are deep.  Names are unique but for the weight's.
class TQBINNING_EXPORT BINVarList {
 public:
  BINVarList();                                    // no variables
  BINVarList(const BINVarList& other);             // a deep copy
  BINVarList& operator=(const BINVarList& other);  // a deep copy
  virtual ~BINVarList();

  int Size() const;            // number of variables, the weight included
  int GetNumContVar() const;   // continuous ones
  int GetNumCatVar() const;    // categorical ones
  int GetTargetIndex() const;  // -1 when none
  int GetWeightIndex() const;  // -1 when none

  // The variable, or its encoder, owned by the list; null for an index out of
  // range (and, for the encoder, for a continuous variable).
  IBINVariable* GetVarAt(int index);
  const IBINVariable* GetVarAt(int index) const;
  IBINEncoder* GetEncoderAt(int index);
  const IBINEncoder* GetEncoderAt(int index) const;

  // The variable's role; undefined for an index out of range.
  IBINVariable::VariableRole GetVariableRole(int index) const;
  // Sets the role; false for an index out of range.  A first target becomes the
  // list's target, an existing one is kept; taking the role away from any target
  // leaves the list without one.
  bool SetVariableRole(int index, IBINVariable::VariableRole role);

  int GetNumAttributeVars() const;  // variables in the attribute role
  // Number of categories of the first variable in the target role; 0 when none.
  int GetNTargetCats() const;
  // Lets every variable take over what its encoder has seen; the sum of the counts.
  int UpdateNumbersOfCategories();
  // Index of the variable of exactly this name, or -1.
  int FindVariable(const std::string& name) const;

  // Each Add appends a variable and returns its index, or -1: an empty or
  // repeated name (not tested for the weight), a continuous target, fewer than
  // two values, a second weight.  A target added here becomes the list's target.
  int AddContVar(const std::string& name, const std::string& label,
                 IBINVariable::VariableRole role);
  int AddCatVar(const std::string& name, const std::string& label, int numberOfCategories,
                IBINVariable::MeasureLevel level, IBINVariable::VariableRole role);
  // Categories from values: they are encoded in order, and their number (repeated
  // ones included) is the declared number of categories.
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<double>& values, IBINVariable::VariableRole role);
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<std::string>& values, IBINVariable::VariableRole role);
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<double>& values, const std::vector<std::string>& valueLabels,
                IBINVariable::VariableRole role);
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<std::string>& values, const std::vector<std::string>& valueLabels,
                IBINVariable::VariableRole role);
  int AddWeightVar(const std::string& name, const std::string& label,
                   IBINVariable::BINWRoundingOption option);

  // Deletes a variable; later ones move down.  False when there is no such one.
  bool RemoveVar(int index);
  bool RemoveVar(std::string name);

  // Declares [left, right] missing.  False for an index out of range, a string
  // variable, or a variable whose definition already has an interval.
  bool SetMissingInterval(int index, double left, double right);
  // Declares one value missing.  False for an index out of range or a variable of
  // the other kind.
  bool AddDiscreteUserMissing(int index, double value, const std::string& label);
  bool AddDiscreteUserMissing(int index, const std::string& value, const std::string& label);

  // Whether the list can be binned: an attribute at least, and no categorical
  // variable with one category only or with none; their indices are handed out.
  bool IsValidList(std::vector<int>& oneCategoryVars, std::vector<int>& emptyVars) const;
  // Whether `other` describes the same variables, so that the two stand for one
  // data set.  On false, `index` tells where they differ first: the smaller size,
  // else the smaller target index, else the variable; on true it is left alone.
  bool CanMergeWith(const BINVarList& other, int& index) const;
  // The attributes' names in order, and the (last) target's name if there is one.
  void GetVarNames(std::vector<std::string>& names, std::string& targetName) const;

  std::ostream& Display(std::ostream& os) const;  // for people to read

 private:
  bool HasIndex(int index) const;
  bool IsFreeName(const std::string& name) const;
  int Append(std::unique_ptr<IBINVariable> variable);
  int AppendCatVar(std::unique_ptr<IBINVariable> variable);

  std::vector<std::unique_ptr<IBINVariable>> fVariables;
  int fNumContVars;
  int fNumCatVars;
  int fTargetIndex;  // -1 when none
  int fWeightIndex;  // -1 when none
};
