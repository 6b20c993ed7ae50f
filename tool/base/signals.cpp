#include "base/signals.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <fmt/format.h>

#include "base/privatedirectory.h"
#include "base/toolerror.h"

namespace TQTool {
namespace {

std::atomic<int> gCaught{0};
static_assert(std::atomic<int>::is_always_lock_free, "used in a signal handler");

// A signal makes the pipe readable, so that one which arrives just before a wait
// for input ends that wait too.
int gPipe[2] = {-1, -1};

// Readable while waits are to end.
int gEndOfWaits = -1;
std::atomic<bool> gAreWaitsToEnd{false};

void HandleSignal(int signal) {
  const int savedErrno = errno;
  if (gCaught.exchange(signal) != 0) {
    PrivateDirectory::RemoveFromSignalHandler();
    _exit(128 + signal);
  }
  [[maybe_unused]] const ssize_t written = write(gPipe[1], "", 1);
  errno = savedErrno;
}

void Catch(int signal) {
  struct sigaction action = {};
  if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) return;
  action = {};
  action.sa_handler = HandleSignal;  // without SA_RESTART: a blocked open or read returns
  sigaction(signal, &action, nullptr);
}

void WaitFor(int file, short event) {
  pollfd waits[3] = {{file, event, 0}, {gPipe[0], POLLIN, 0}, {gEndOfWaits, POLLIN, 0}};
  int ready = 0;
  do {
    ThrowIfCancelled();
    ready = poll(waits, 3, -1);
  } while (ready < 0 && (errno == EINTR || errno == EAGAIN));
  ThrowIfCancelled();  // a signal goes before any input
  if (waits[2].revents != 0) throw ToolError(kInput, "the input is not wanted any more");
}

}  // namespace

void InstallSignalHandlers() {
  if (pipe2(gPipe, O_CLOEXEC | O_NONBLOCK) != 0) {
    throw ToolError(kFileSystem, fmt::format("no pipe can be made: {}", std::strerror(errno)));
  }
  gEndOfWaits = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  if (gEndOfWaits < 0) {
    throw ToolError(kFileSystem, fmt::format("no event can be made: {}", std::strerror(errno)));
  }
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) Catch(signal);
  for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, SIG_IGN);
}

int CaughtSignal() { return gCaught.load(std::memory_order_relaxed); }

void ThrowIfCancelled() {
  const int signal = CaughtSignal();
  if (signal == 0) return;
  const char* const name = signal == SIGINT ? "SIGINT" : signal == SIGTERM ? "SIGTERM" : "SIGHUP";
  throw ToolError(128 + signal, fmt::format("cancelled by {}", name));
}

void WaitForInput(int file) { WaitFor(file, POLLIN); }

void WaitForOutput(int file) { WaitFor(file, POLLOUT); }

void EndWaits(bool isToEnd) {
  gAreWaitsToEnd = isToEnd;
  eventfd_t count = 0;
  [[maybe_unused]] const int done =
      isToEnd ? eventfd_write(gEndOfWaits, 1) : eventfd_read(gEndOfWaits, &count);
}

bool AreWaitsToEnd() { return gAreWaitsToEnd; }

}  // namespace TQTool
