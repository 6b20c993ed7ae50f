#pragma once

namespace bench {

// How much memory this process holds, in bytes; 0 when the system does not tell.
// The kernel counts to within some hundred kilobytes.
double ResidentBytes();
double PeakResidentBytes();  // the most that it ever held

// Lets PeakResidentBytes start again from what is held now.  False when the system
// refuses, and the peak stays.
bool ResetPeakResidentBytes();

}  // namespace bench
