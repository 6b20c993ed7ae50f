#pragma once

#include <utility>

#include <unistd.h>

namespace TQTool {

// A file descriptor that closes itself; below zero when nothing is open.
class Descriptor {
 public:
  explicit Descriptor(int file = -1) : fFile(file) {}
  Descriptor(Descriptor&& other) noexcept : fFile(std::exchange(other.fFile, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(fFile, other.fFile);
    return *this;
  }
  ~Descriptor() {
    if (fFile >= 0) close(fFile);
  }

  bool IsOpen() const { return fFile >= 0; }
  int Get() const { return fFile; }

 private:
  int fFile;
};

}  // namespace TQTool
