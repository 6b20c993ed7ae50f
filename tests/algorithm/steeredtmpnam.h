#pragma once

// The test program defines tmpnam itself (tempdirname_test.cpp), so that a test
// can say what the system proposes as a temporary name.
namespace support {

// While one is alive tmpnam answers `name` (null: no name at all); without one it
// is the system's own.
class SteeredTmpnam {
 public:
  explicit SteeredTmpnam(const char* name);
  SteeredTmpnam(const SteeredTmpnam&) = delete;
  SteeredTmpnam& operator=(const SteeredTmpnam&) = delete;
  ~SteeredTmpnam();

  int Calls() const;
};

}  // namespace support
