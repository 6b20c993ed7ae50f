// What objects of odd contents show of themselves: the same each time and of a copy, to
// the stream that was given, whose settings stay as they were; lists with every element.

#include <cmath>
#include <cstdint>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <valarray>
#include <vector>

#include <tqbinning/tqbinning.h>

#include "fuzz/bytes.h"
#include "fuzz/target.h"
#include "support/memoryrecords.h"
#include "support/scratchdirectory.h"

namespace {

using fuzz::Bytes;
using fuzz::Require;

// What `show` writes to a stream.
template <class Show>
std::string Shown(const Show& show) {
  std::ostringstream os;
  const std::ios_base::fmtflags flags = os.flags();
  const std::streamsize precision = os.precision();
  Require(&show(os) == &os, "another stream than the one given");
  Require(os.good() && os.flags() == flags && os.precision() == precision,
          "a stream whose settings were changed");
  std::ostringstream again;
  show(again);
  Require(again.str() == os.str(), "another text the second time");
  std::ostream nowhere(nullptr);
  show(nowhere);
  return os.str();
}

template <class Object>
std::string ShownOf(const Object& object) {
  return Shown([&object](std::ostream& os) -> std::ostream& { return object.Display(os); });
}

// The same of an object and of its copy.
template <class Object>
void ShowWithCopy(const Object& object) {
  const auto copy = std::make_unique<Object>(object);
  Require(ShownOf(*copy) == ShownOf(object), "a copy that shows something else");
}

// ----------------------------------------------------------------- variables

std::vector<std::string> Texts(Bytes& bytes) {
  std::vector<std::string> texts(bytes.Below(4));
  for (std::string& text : texts) text = bytes.Text(4);
  return texts;
}

IBINVariable::VariableRole Role(Bytes& bytes) {
  return static_cast<IBINVariable::VariableRole>(bytes.Below(5));
}

int Index(Bytes& bytes) { return static_cast<int>(bytes.Below(10)) - 1; }

void AddVariable(Bytes& bytes, BINVarList& list) {
  const std::string name = bytes.Text(6);
  const std::string label = bytes.Text(6);
  switch (bytes.Below(6)) {
    case 0: list.AddContVar(name, label, Role(bytes)); break;
    case 1:
      list.AddCatVar(name, label, Index(bytes),
                     static_cast<IBINVariable::MeasureLevel>(bytes.Below(6)), Role(bytes));
      break;
    case 2: list.AddCatVar(name, label, bytes.Numbers(4), Role(bytes)); break;
    case 3: list.AddCatVar(name, label, Texts(bytes), Role(bytes)); break;
    case 4: list.AddCatVar(name, label, bytes.Numbers(4), Texts(bytes), Role(bytes)); break;
    default:
      list.AddWeightVar(name, label, static_cast<IBINVariable::BINWRoundingOption>(bytes.Below(4)));
  }
}

void ChangeVariable(Bytes& bytes, BINVarList& list) {
  const int index = Index(bytes);
  switch (bytes.Below(6)) {
    case 0: list.RemoveVar(index); break;
    case 1: list.SetVariableRole(index, Role(bytes)); break;
    case 2: {
      const double left = bytes.Number();
      list.SetMissingInterval(index, left, bytes.Number());
      break;
    }
    case 3: {
      const double value = bytes.Number();
      list.AddDiscreteUserMissing(index, value, bytes.Text(4));
      break;
    }
    case 4: {
      const std::string value = bytes.Text(4);
      list.AddDiscreteUserMissing(index, value, bytes.Text(4));
      break;
    }
    default: list.UpdateNumbersOfCategories();
  }
}

BINVarList MakeList(Bytes& bytes) {
  BINVarList list;
  for (std::size_t steps = bytes.Below(16); steps > 0; --steps) {
    if (bytes.Flag()) {
      AddVariable(bytes, list);
    } else {
      ChangeVariable(bytes, list);
    }
  }
  return list;
}

void ShowSettings(Bytes& bytes) {
  BINSettings supervised;
  supervised.SetSmallBinDetectionThreshold(bytes.Number());
  supervised.SetNumberOfBins(Index(bytes));
  supervised.SetTempDirName(bytes.Text(8));
  ShowWithCopy(supervised);
  EFBINSettings equalFrequency;
  equalFrequency.SetNumberOfBins(Index(bytes));
  ShowWithCopy(equalFrequency);
}

// Whether a list keeps what it promises to a run: every variable is an attribute, the
// target or the weight.
bool FitsRun(const BINVarList& list) {
  for (int i = 0; i < list.Size(); ++i) {
    const IBINVariable::VariableRole role = list.GetVariableRole(i);
    const bool isWeight = i == list.GetWeightIndex();
    const bool isTarget = i == list.GetTargetIndex();
    const IBINVariable::VariableRole expected = isWeight   ? IBINVariable::kFrequencyWeight
                                                : isTarget ? IBINVariable::kTarget
                                                           : IBINVariable::kAttribute;
    if (role != expected) return false;
  }
  return true;
}

// An algorithm shows itself once it has read data.
void ShowAlgorithm(Bytes& bytes, BINVarList& list) {
  static const support::ScratchDirectory directory;
  if (!FitsRun(list)) return;
  BINSettings settings;
  settings.SetNumberOfBins(3);
  settings.SetTempDirName(directory.Path());
  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, list));
  if (algorithm == nullptr) return;
  support::Rows rows(1 + bytes.Below(8));
  for (std::vector<double>& row : rows) {
    for (int i = 0; i < list.Size(); ++i) row.push_back(bytes.Number());
  }
  support::MemoryRecords records(rows);
  if (!algorithm->CreateBins(records, nullptr, nullptr).IsError()) ShownOf(*algorithm);
}

void ShowVariables(Bytes& bytes) {
  BINVarList list = MakeList(bytes);
  ShowWithCopy(list);
  for (int i = 0; i < list.Size(); ++i) {
    ShownOf(*list.GetVarAt(i));
    if (const IBINEncoder* const encoder = list.GetEncoderAt(i)) ShownOf(*encoder);
  }
  ShowSettings(bytes);
  ShowAlgorithm(bytes, list);
}

// ------------------------------------------------------------------- results

TQBinning::TQStatus MakeStatus(Bytes& bytes) {
  const std::uint8_t byte = bytes.Byte();
  return byte % 3 == 0 ? TQBinning::TQStatus()
                       : TQBinning::TQStatus(120000 + byte % 32, byte % 3 == 1);
}

void ShowResults(Bytes& bytes) {
  BINOutput output;
  EFBINOutput equalFrequency;
  for (std::size_t count = bytes.Below(5); count > 0; --count) {
    const TQBinning::TQStatus status = MakeStatus(bytes);
    const std::vector<double> cuts = bytes.Numbers(5);
    const std::vector<double> cells = bytes.Numbers(12);
    const std::vector<double> numbers = {bytes.Number(), bytes.Number(), bytes.Number(),
                                         bytes.Number(), bytes.Number()};
    const int attribute = Index(bytes);
    const TQBinning::TQStatus stored = output.SetAttributeTargetResults(
        status, {cuts.begin(), cuts.end()}, cells, attribute, Index(bytes), bytes.Byte(),
        numbers[0], numbers[1], numbers[2], numbers[3], numbers[4]);
    const TQBinning::TQStatus alike =
        equalFrequency.SetAttributeResults(status, cuts, cells, attribute, bytes.Byte(), numbers[0],
                                           numbers[1], numbers[2], numbers[3]);
    Require(alike.IsOK() == (attribute >= 0) && (alike.IsOK() || stored.IsError()),
            "a result of no attribute that was stored");
  }
  ShowWithCopy(output);
  ShowWithCopy(equalFrequency);
}

// --------------------------------------------------------------------- lists

// The words behind the line that names a list and its length.
std::size_t CountElements(const std::string& text) {
  std::istringstream words(text.substr(text.find('\n')));
  std::size_t count = 0;
  for (std::string word; words >> word;) ++count;
  return count;
}

template <class Show>
void ShowElements(std::size_t count, const Show& show) {
  Require(CountElements(Shown(show)) == count, "more or fewer elements than there are");
}

template <class Value>
std::valarray<Value> ArrayOf(const std::vector<double>& values) {
  std::valarray<Value> array(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) array[i] = static_cast<Value>(values[i] > 3.0);
  return array;
}

void ShowLists(Bytes& bytes) {
  using std::ostream;
  const std::vector<double> values = bytes.Numbers(64);
  const std::size_t n = values.size();
  const std::valarray<double> array(values.data(), n);
  const auto bools = ArrayOf<bool>(values);
  const auto integers = ArrayOf<int>(values);
  const std::vector<int> whole(std::begin(integers), std::end(integers));
  ShowElements(n, [&](ostream& os) -> ostream& {
    return TQBinning::DisplayD(os, values.data(), static_cast<int>(n), "x");
  });
  ShowElements(n, [&](ostream& os) -> ostream& { return TQBinning::DisplayD(os, values, "x"); });
  ShowElements(n, [&](ostream& os) -> ostream& { return TQBinning::DisplayD(os, array, "x"); });
  ShowElements(n, [&](ostream& os) -> ostream& { return TQBinning::DisplayI(os, integers, "x"); });
  ShowElements(n, [&](ostream& os) -> ostream& { return TQBinning::DisplayI(os, whole, "x"); });
  ShowElements(n, [&](ostream& os) -> ostream& { return TQBinning::DisplayB(os, bools, "x"); });
  const auto side = static_cast<unsigned int>(std::sqrt(n));
  ShowElements(std::size_t{side} * side, [&](ostream& os) -> ostream& {
    return TQBinning::DisplayMD(os, values.data(), side, "x");
  });
  ShowElements(std::size_t{side} * side, [&](ostream& os) -> ostream& {
    return TQBinning::DisplayMI(os, whole.data(), side, "x");
  });
  const double value = bytes.Number();
  const std::string name = bytes.Text(8);
  const std::string text =
      Shown([&](ostream& os) -> ostream& { return TQBinning::Display(os, name, value); });
  Require(text.starts_with(name + " = ") && text.ends_with('\n'), "a number without its name");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes bytes(data, size);
  switch (bytes.Below(3)) {
    case 0: ShowVariables(bytes); break;
    case 1: ShowResults(bytes); break;
    default: ShowLists(bytes);
  }
  return 0;
}
