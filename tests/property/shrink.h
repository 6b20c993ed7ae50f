#pragma once

#include <functional>

#include "reference/reference.h"

namespace property {

// A smaller problem of which `isBad` still holds, as it must of the one given: calls,
// records, variables and list entries are dropped, settings and values made plainer,
// until nothing more can go.
reference::Problem Shrink(reference::Problem problem,
                          const std::function<bool(const reference::Problem&)>& isBad);

}  // namespace property
