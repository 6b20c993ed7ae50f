#include "run/categoryorder.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "input/numbertext.h"

namespace TQTool {

std::vector<std::size_t> CategoryOrder(const std::vector<std::string>& categories) {
  std::vector<std::size_t> order(categories.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::vector<double> numbers(categories.size(), 0.0);
  const auto isNumber = [&](std::size_t i) {
    return ReadNumber(categories[i], &numbers[i]) == NumberText::kNumber;
  };
  if (!std::all_of(order.begin(), order.end(), isNumber)) {
    std::fill(numbers.begin(), numbers.end(), 0.0);
  }
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return std::pair(numbers[a], categories[a]) < std::pair(numbers[b], categories[b]);
  });
  return order;
}

}  // namespace TQTool
