#include "base/ownerfile.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace TQTool {

Descriptor LockOwnerFile(int directory) {
  Descriptor file(openat(directory, kOwnerFile,
                         O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK,
                         S_IRUSR | S_IWUSR));
  struct stat status = {};
  if (!file.IsOpen() || flock(file.Get(), LOCK_EX | LOCK_NB) != 0 ||
      fstat(file.Get(), &status) != 0) {
    return Descriptor();
  }
  if (!S_ISREG(status.st_mode) || status.st_nlink == 0) {
    errno = EWOULDBLOCK;
    return Descriptor();
  }
  return file;
}

}  // namespace TQTool
