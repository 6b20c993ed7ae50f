#include "tqcommon/querycancel.h"

#include <memory>
#include <type_traits>

#include <gtest/gtest.h>

namespace {

static_assert(std::is_abstract_v<TQQueryCancel>);
static_assert(std::has_virtual_destructor_v<TQQueryCancel>);

class DeletionNoting : public TQQueryCancel {
 public:
  DeletionNoting(bool answer, bool& deleted) : fAnswer(answer), fDeleted(deleted) {}
  ~DeletionNoting() override { fDeleted = true; }
  bool IsCancelled() override { return fAnswer; }

 private:
  bool fAnswer;
  bool& fDeleted;
};

TEST(TQQueryCancel, AHostsAnswerComesThroughTheInterface) {
  bool deleted = false;
  DeletionNoting yes(true, deleted);
  DeletionNoting no(false, deleted);
  TQQueryCancel* query = &yes;
  EXPECT_TRUE(query->IsCancelled());
  query = &no;
  EXPECT_FALSE(query->IsCancelled());
}

TEST(TQQueryCancel, AHostsQueryIsDeletedThroughTheInterface) {
  bool deleted = false;
  std::unique_ptr<TQQueryCancel> query = std::make_unique<DeletionNoting>(true, deleted);
  query.reset();
  EXPECT_TRUE(deleted);
}

}  // namespace
