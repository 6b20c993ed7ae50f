#include "run/rowcount.h"

#include <cstddef>
#include <cstdint>

#include "run/categoryorder.h"
#include "run/resultcollector.h"

namespace TQTool {
namespace {

// The places of a target's codes in the order of its categories.
std::vector<std::size_t> PlacesOf(const BINVarList& list, std::size_t target) {
  const std::vector<std::size_t> order = CategoryOrder(CategoriesOf(list, TargetVariable(target)));
  std::vector<std::size_t> places(order.size());
  for (std::size_t place = 0; place < order.size(); ++place) places[order[place]] = place;
  return places;
}

// Everything that was not counted so far holds no row.
void Clear(BinnedAttribute& attribute) {
  attribute.valid.rows = 0.0;
  attribute.total.rows = 0.0;
  for (Bin& bin : attribute.bins) {
    bin.count.rows = 0.0;
    for (Count& count : bin.categories) count.rows = 0.0;
  }
}

// Counts the rows of one pair.
class PairCounter {
 public:
  PairCounter(const Columns& columns, const ColumnPair& pair, const BINVarList& list,
              BinnedAttribute& attribute)
      : fValue(AttributeVariable(columns, pair.attribute)), fAttribute(attribute) {
    Clear(attribute);
    if (!pair.target.has_value()) return;
    fTarget = TargetVariable(*pair.target);
    fPlaces = PlacesOf(list, *pair.target);
  }

  void Add(const double* record) {
    fAttribute.total.rows += 1.0;
    const double value = record[fValue];
    const bool hasCategory = fTarget < 0 || record[fTarget] >= 0.0;
    if (value == TQMV::gMissingValue || !hasCategory) return;
    fAttribute.valid.rows += 1.0;
    if (fAttribute.bins.empty()) return;
    Bin& bin = fAttribute.bins[BinOf(fAttribute, value)];
    bin.count.rows += 1.0;
    if (fTarget < 0) return;
    bin.categories[fPlaces[static_cast<std::size_t>(record[fTarget])]].rows += 1.0;
  }

 private:
  std::ptrdiff_t fValue;        // its place in a record
  std::ptrdiff_t fTarget = -1;  // the target's, -1 without
  std::vector<std::size_t> fPlaces;
  BinnedAttribute& fAttribute;
};

}  // namespace

void CountRows(CaseSpool& cases, const Columns& columns, const BINVarList& list,
               std::vector<BinnedAttribute>& attributes) {
  std::vector<PairCounter> counters;
  counters.reserve(columns.pairs.size());
  for (std::size_t i = 0; i < columns.pairs.size(); ++i) {
    counters.emplace_back(columns, columns.pairs[i], list, attributes.at(i));
  }
  cases.ForEach([&counters](const double* record) {
    for (PairCounter& counter : counters) counter.Add(record);
  });
}

}  // namespace TQTool
