#include "base/staledirectories.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "base/descriptor.h"
#include "base/ownerfile.h"

namespace TQTool {
namespace {

bool IsPrivateName(std::string_view name) {
  const std::string_view pattern = kPrivateName;
  const std::size_t prefix = pattern.find('X');
  const auto isAlphanumeric = [](char c) {
    return ('0' <= c && c <= '9') || ('a' <= c && c <= 'z') || ('A' <= c && c <= 'Z');
  };
  return name.size() == pattern.size() && name.substr(0, prefix) == pattern.substr(0, prefix) &&
         std::all_of(name.begin() + static_cast<std::ptrdiff_t>(prefix), name.end(),
                     isAlphanumeric);
}

// Whether it is as a run would have made it.
bool IsOurs(int directory) {
  struct stat status = {};
  return fstat(directory, &status) == 0 && status.st_uid == geteuid() &&
         (status.st_mode & ALLPERMS) == S_IRWXU;
}

// Removes a directory and the files in it; false when it is something else or not empty then.
bool RemoveSubdirectory(int parent, const char* name) {
  const std::string_view text = name;
  if (text == "." || text == "..") return false;
  const int directory = openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (directory < 0) return false;
  while (RemoveFilesIn(directory)) {
  }
  close(directory);
  return unlinkat(parent, name, AT_REMOVEDIR) == 0;
}

void RemoveIfStale(int base, const char* name) {
  const Descriptor directory(openat(base, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!directory.IsOpen() || !IsOurs(directory.Get())) return;
  // A run that died, or still is, before it made the file has nothing else in there;
  // if there is something, it is not a run's directory.
  const bool hasOwner = faccessat(directory.Get(), kOwnerFile, F_OK, AT_SYMLINK_NOFOLLOW) == 0;
  const Descriptor lock = LockOwnerFile(directory.Get());
  if (!lock.IsOpen()) return;
  if (hasOwner) {
    RemoveFilesIn(directory.Get());
  } else {
    unlinkat(directory.Get(), kOwnerFile, 0);
  }
  unlinkat(base, name, AT_REMOVEDIR);
}

}  // namespace

void RemoveStaleDirectories(const std::string& base) {
  const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(base.c_str()), closedir);
  if (entries == nullptr) return;
  std::vector<std::string> names;
  while (const dirent* const entry = readdir(entries.get())) {
    if (IsPrivateName(entry->d_name)) names.emplace_back(entry->d_name);
  }
  for (const std::string& name : names) RemoveIfStale(dirfd(entries.get()), name.c_str());
}

// Plain system calls throughout: opendir and its kin allocate memory, which a signal
// handler must not.
bool RemoveFilesIn(int directory) {
  bool removedAny = false;
  lseek(directory, 0, SEEK_SET);
  alignas(dirent64) std::array<char, 4096> entries;
  for (;;) {
    const long size = syscall(SYS_getdents64, directory, entries.data(), entries.size());
    if (size <= 0) return removedAny;
    for (long offset = 0; offset < size;) {
      const auto* const entry = reinterpret_cast<const dirent64*>(entries.data() + offset);
      if (unlinkat(directory, entry->d_name, 0) == 0 ||
          RemoveSubdirectory(directory, entry->d_name)) {
        removedAny = true;
      }
      offset += entry->d_reclen;
    }
  }
}

}  // namespace TQTool
