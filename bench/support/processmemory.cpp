#include "bench/support/processmemory.h"

#include <fstream>
#include <string>

namespace bench {

namespace {

// A line of /proc/self/status, such as "VmHWM:	  123456 kB".
double StatusBytes(const std::string& field) {
  std::ifstream status("/proc/self/status");
  std::string name;
  while (status >> name) {
    double kilobytes = 0.0;
    if (name == field + ":" && status >> kilobytes) return kilobytes * 1024.0;
    std::getline(status, name);
  }
  return 0.0;
}

}  // namespace

double ResidentBytes() { return StatusBytes("VmRSS"); }
double PeakResidentBytes() { return StatusBytes("VmHWM"); }

bool ResetPeakResidentBytes() {
  std::ofstream file("/proc/self/clear_refs");
  file << "5" << std::flush;  // 5: set the peak to what is resident now
  return file.good();
}

}  // namespace bench
