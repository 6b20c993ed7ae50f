#pragma once

#include <string>
#include <vector>

#include "reference/reference.h"

// What a problem exercised.  The counts over many problems show whether the generator
// still makes the hard ones.
namespace property {

// Short names, for example "call 120018" or "percentile met exactly", each at most
// once.  `outcome` is the problem's.
std::vector<std::string> Observe(const reference::Problem& problem,
                                 const reference::Outcome& outcome);

// The names that every large enough set of generated problems must have shown.
const std::vector<std::string>& RequiredObservations();

}  // namespace property
