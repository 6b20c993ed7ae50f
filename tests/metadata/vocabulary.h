#pragma once

#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tqbinning/binencoder.h"
#include "tqbinning/binusermissing.h"
#include "tqbinning/binvariable.h"

// The words that the tests of variables, encoders and definitions share.
namespace metadata {

inline constexpr auto kUndefined = IBINVariable::kUndefinedRole;
inline constexpr auto kAttribute = IBINVariable::kAttribute;
inline constexpr auto kTarget = IBINVariable::kTarget;
inline constexpr auto kWeightRole = IBINVariable::kFrequencyWeight;
inline constexpr auto kNumeric = IBINVariable::kNumericCategorical;
inline constexpr auto kString = IBINVariable::kStringCategorical;

template <class T>
std::string Shown(const T& object) {
  std::ostringstream os;
  object.Display(os);
  return os.str();
}

// What had been written at the last flush; a dump must end in one.
template <class T>
std::string ShownWhenFlushedLast(const T& object) {
  class Buffer : public std::stringbuf {
   public:
    std::string flushed;

   protected:
    int sync() override {
      flushed = str();
      return 0;
    }
  };
  Buffer buffer;
  std::ostream os(&buffer);
  object.Display(os);
  return buffer.flushed;
}

// Whether the pieces occur in the text, each after the end of the one before it.
inline bool OccurInOrder(const std::string& text, const std::vector<std::string>& pieces) {
  std::string::size_type from = 0;
  for (const std::string& piece : pieces) {
    const std::string::size_type found = text.find(piece, from);
    if (found == std::string::npos) return false;
    from = found + piece.size();
  }
  return true;
}

// The ways to copy: construction, assignment over `other`, Clone.
template <class T>
std::vector<std::unique_ptr<T>> CopiesOf(const T& source, const T& other) {
  std::vector<std::unique_ptr<T>> copies;
  copies.push_back(std::make_unique<T>(source));
  copies.push_back(std::make_unique<T>(other));
  *copies.back() = source;
  copies.emplace_back(source.Clone());
  return copies;
}

// A user-missing definition that says when it is deleted.  Its clones do not.
template <class Definition>
class DeletionNoting : public Definition {
 public:
  explicit DeletionNoting(int& deletions) : fDeletions(deletions) {}
  DeletionNoting(const DeletionNoting&) = delete;
  DeletionNoting& operator=(const DeletionNoting&) = delete;
  ~DeletionNoting() override { ++fDeletions; }

 private:
  int& fDeletions;
};
using NotingNumericMissing = DeletionNoting<BINNumericUserMissing>;
using NotingStringMissing = DeletionNoting<BINStringUserMissing>;

inline std::vector<std::string> Labels(const IBINEncoder& encoder) {
  return *encoder.GetValueLabels();
}

inline std::unique_ptr<BINNumericUserMissing> NumericMissing(const std::vector<double>& values) {
  auto definition = std::make_unique<BINNumericUserMissing>();
  for (const double value : values) definition->AddValue(value, "");
  return definition;
}

inline std::unique_ptr<BINStringUserMissing> StringMissing(const std::vector<std::string>& values) {
  auto definition = std::make_unique<BINStringUserMissing>();
  for (const std::string& value : values) definition->AddValue(value, "");
  return definition;
}

// Hands the definition over; it stays with the caller's side (and is deleted) when
// it is refused.
template <class Owner, class Definition>
bool Give(Owner& owner, std::unique_ptr<Definition> definition) {
  const bool accepted = owner.SetUserMissingInfo(definition.get());
  if (accepted) (void)definition.release();
  return accepted;
}

}  // namespace metadata
