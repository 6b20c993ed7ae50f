#include "tqcommon/progresslistener.h"

#include <memory>
#include <type_traits>

#include <gtest/gtest.h>

// The record library only passes reports on: whoever makes them says what one is.
class ProgressReport {
 public:
  int percent = 0;
};

namespace {

static_assert(std::is_abstract_v<ProgressListener>);
static_assert(std::has_virtual_destructor_v<ProgressListener>);

class PercentListener : public ProgressListener {
 public:
  explicit PercentListener(bool& deleted) : fDeleted(deleted) {}
  ~PercentListener() override { fDeleted = true; }
  void Report(ProgressReport* report) override { fPercent = report->percent; }
  int Percent() const { return fPercent; }

 private:
  bool& fDeleted;
  int fPercent = -1;
};

TEST(ProgressListener, AReportReachesTheHostThroughTheInterface) {
  bool deleted = false;
  PercentListener listener(deleted);
  ProgressListener& asSeenByARun = listener;
  ProgressReport report;
  report.percent = 40;
  asSeenByARun.Report(&report);
  EXPECT_EQ(40, listener.Percent());
}

TEST(ProgressListener, AHostsListenerIsDeletedThroughTheInterface) {
  bool deleted = false;
  std::unique_ptr<ProgressListener> listener = std::make_unique<PercentListener>(deleted);
  listener.reset();
  EXPECT_TRUE(deleted);
}

}  // namespace
