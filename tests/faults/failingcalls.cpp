// Loaded before a program (LD_PRELOAD), makes one of its calls into the system fail.
//
//   FAULT_CALL    the call's name, "malloc" for every kind of allocation
//   FAULT_AT      which call is the first to fail, counted from 1; 0 for none
//   FAULT_ONCE    present when that one alone is to fail, not all from it on
//   FAULT_COUNT   a file that receives the number of calls, when the program ends
//
// Calls count while `main` runs: what happens before is the loader's business.

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/statvfs.h>
#include <unistd.h>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
}

namespace {

const char* gCall = "";
long gFirst = 0;
bool gIsOnce = false;
std::atomic<bool> gIsArmed{false};
std::atomic<long> gCalls{0};

// Counts a call, and tells whether it is to fail, with errno set.
bool IsToFail(const char* call, int error) {
  if (!gIsArmed || std::strcmp(call, gCall) != 0) return false;
  const long number = ++gCalls;
  const bool isToFail = gFirst != 0 && (gIsOnce ? number == gFirst : number >= gFirst);
  if (isToFail) errno = error;
  return isToFail;
}

void ReadWishes() {
  const char* const call = std::getenv("FAULT_CALL");
  const char* const first = std::getenv("FAULT_AT");
  if (call == nullptr || first == nullptr) return;
  gCall = call;
  gFirst = std::atol(first);
  gIsOnce = std::getenv("FAULT_ONCE") != nullptr;
  gIsArmed = true;
}

void WriteCount() {
  gIsArmed = false;
  const char* const path = std::getenv("FAULT_COUNT");
  if (path == nullptr) return;
  const int file = open(path, O_WRONLY | O_CREAT | O_TRUNC, 0600);
  dprintf(file, "%ld\n", gCalls.load());
  close(file);
}

using Main = int (*)(int, char**, char**);
Main gMain = nullptr;

int CountedMain(int argc, char** argv, char** environment) {
  ReadWishes();
  const int result = gMain(argc, argv, environment);
  WriteCount();
  return result;
}

// The call as it is without us.
template <class Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// Each stands before the function of the same name, with its type.
#define FAIL_CALL(result, name, parameters, arguments, error, failure) \
  result name parameters {                                             \
    static const auto next = Next<result parameters>(#name);           \
    if (IsToFail(#name, error)) return failure;                        \
    return next arguments;                                             \
  }

extern "C" {

int __libc_start_main(Main main, int argc, char** argv, void (*init)(), void (*finish)(),
                      void (*finishLoader)(), void* stackEnd) {
  gMain = main;
  const auto next = Next<decltype(__libc_start_main)>("__libc_start_main");
  return next(CountedMain, argc, argv, init, finish, finishLoader, stackEnd);
}

void* malloc(std::size_t size) {
  return IsToFail("malloc", ENOMEM) ? nullptr : __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
  return IsToFail("malloc", ENOMEM) ? nullptr : __libc_calloc(count, size);
}
void* realloc(void* memory, std::size_t size) {
  return IsToFail("malloc", ENOMEM) ? nullptr : __libc_realloc(memory, size);
}

FAIL_CALL(FILE*, fopen, (const char* path, const char* mode), (path, mode), EMFILE, nullptr)
FAIL_CALL(int, remove, (const char* path), (path), EACCES, -1)
FAIL_CALL(int, unlink, (const char* path), (path), EACCES, -1)
FAIL_CALL(int, unlinkat, (int directory, const char* path, int flags), (directory, path, flags),
          EACCES, -1)
FAIL_CALL(int, rmdir, (const char* path), (path), EACCES, -1)
FAIL_CALL(char*, mkdtemp, (char* pattern), (pattern), EACCES, nullptr)
FAIL_CALL(int, mkostemp, (char* pattern, int flags), (pattern, flags), EACCES, -1)
FAIL_CALL(int, rename, (const char* from, const char* to), (from, to), EIO, -1)
FAIL_CALL(ssize_t, read, (int file, void* data, std::size_t size), (file, data, size), EIO, -1)
FAIL_CALL(ssize_t, write, (int file, const void* data, std::size_t size), (file, data, size),
          ENOSPC, -1)
FAIL_CALL(int, fsync, (int file), (file), EIO, -1)
FAIL_CALL(int, flock, (int file, int operation), (file, operation), ENOLCK, -1)
FAIL_CALL(int, statvfs, (const char* path, struct statvfs* status), (path, status), EIO, -1)
FAIL_CALL(DIR*, opendir, (const char* path), (path), EMFILE, nullptr)
FAIL_CALL(ssize_t, getrandom, (void* data, std::size_t size, unsigned int flags),
          (data, size, flags), EAGAIN, -1)
FAIL_CALL(void*, mmap,
          (void* address, std::size_t size, int access, int flags, int file, off_t offset),
          (address, size, access, flags, file, offset), ENOMEM, reinterpret_cast<void*>(-1))
FAIL_CALL(int, dup, (int file), (file), EMFILE, -1)
FAIL_CALL(int, dup2, (int from, int to), (from, to), EBUSY, -1)
FAIL_CALL(int, memfd_create, (const char* name, unsigned int flags), (name, flags), ENOMEM, -1)
FAIL_CALL(int, pipe2, (int* files, int flags), (files, flags), EMFILE, -1)
FAIL_CALL(int, eventfd, (unsigned int value, int flags), (value, flags), EMFILE, -1)

// Messages come out, since they are what is looked at.
std::size_t fwrite(const void* data, std::size_t size, std::size_t count, FILE* file) {
  static const auto next = Next<decltype(fwrite)>("fwrite");
  return file != stderr && IsToFail("fwrite", ENOSPC) ? 0 : next(data, size, count, file);
}

// A read that fails leaves its mark on the stream.
std::size_t fread(void* data, std::size_t size, std::size_t count, FILE* file) {
  static const auto next = Next<decltype(fread)>("fread");
  if (!IsToFail("fread", EIO)) return next(data, size, count, file);
  constexpr int kErrorSeen = 0x20;
  file->_flags |= kErrorSeen;
  return 0;
}

// The stream is closed all the same, without what it had not yet written.
int fclose(FILE* file) {
  static const auto next = Next<decltype(fclose)>("fclose");
  if (!IsToFail("fclose", ENOSPC)) return next(file);
  next(file);
  errno = ENOSPC;
  return EOF;
}

int open(const char* path, int flags, ...) {
  static const auto next = Next<int(const char*, int, ...)>("open");
  std::va_list rest;
  va_start(rest, flags);
  const auto mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  return IsToFail("open", EMFILE) ? -1 : next(path, flags, mode);
}

int openat(int directory, const char* path, int flags, ...) {
  static const auto next = Next<int(int, const char*, int, ...)>("openat");
  std::va_list rest;
  va_start(rest, flags);
  const auto mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  return IsToFail("openat", EMFILE) ? -1 : next(directory, path, flags, mode);
}

}  // extern "C"
