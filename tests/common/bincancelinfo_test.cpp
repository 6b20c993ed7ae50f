#include "tqbinning/bincancelinfo.h"

#include <chrono>
#include <thread>
#include <type_traits>

#include <gtest/gtest.h>

#include "support/hostfakes.h"

namespace {

using support::CancelAtPoll;

constexpr int kNever = 0;

static_assert(!std::is_polymorphic_v<BINCancelInfo>);

TEST(BINCancelInfo, WithoutQueryAndSetCancelItIsNeverCancelled) {
  BINCancelInfo info(nullptr);
  for (int poll = 0; poll < 3; ++poll) EXPECT_FALSE(info.IsCancel());
}

TEST(BINCancelInfo, SetCancelWorksWithoutAQuery) {
  BINCancelInfo info(nullptr);
  info.SetCancel();
  EXPECT_TRUE(info.IsCancel());
  EXPECT_TRUE(info.IsCancel());
}

TEST(BINCancelInfo, ConstructionAndSetCancelDoNotAskTheQuery) {
  CancelAtPoll query(1);
  BINCancelInfo info(&query);
  info.SetCancel();
  EXPECT_EQ(0, query.Polls());
}

TEST(BINCancelInfo, TheQueryIsAskedOnceAtEachPollWhileItSaysNo) {
  CancelAtPoll query(kNever);
  BINCancelInfo info(&query);
  for (int poll = 1; poll <= 4; ++poll) {
    EXPECT_FALSE(info.IsCancel());
    EXPECT_EQ(poll, query.Polls());
  }
}

TEST(BINCancelInfo, TheFirstYesOfTheQueryCancels) {
  CancelAtPoll query(3);
  BINCancelInfo info(&query);
  EXPECT_FALSE(info.IsCancel());
  EXPECT_FALSE(info.IsCancel());
  EXPECT_TRUE(info.IsCancel());
}

// The fake would say no again at its second poll.
TEST(BINCancelInfo, AfterOneYesItStaysCancelledWithoutAskingTheHostAgain) {
  CancelAtPoll query(1);
  BINCancelInfo info(&query);
  EXPECT_TRUE(info.IsCancel());
  EXPECT_TRUE(info.IsCancel());
  EXPECT_TRUE(info.IsCancel());
  EXPECT_EQ(1, query.Polls());
}

TEST(BINCancelInfo, AfterSetCancelTheQueryIsNotAsked) {
  CancelAtPoll query(kNever);
  BINCancelInfo info(&query);
  info.SetCancel();
  EXPECT_TRUE(info.IsCancel());
  EXPECT_TRUE(info.IsCancel());
  EXPECT_EQ(0, query.Polls());
}

TEST(BINCancelInfo, SetCancelPtrReplacesTheQuery) {
  CancelAtPoll first(1);
  CancelAtPoll second(2);
  BINCancelInfo info(&first);
  info.SetCancelPtr(&second);
  EXPECT_FALSE(info.IsCancel());
  EXPECT_TRUE(info.IsCancel());
  EXPECT_EQ(0, first.Polls());
  EXPECT_EQ(2, second.Polls());
}

TEST(BINCancelInfo, SetCancelPtrGivesAQueryToAnInfoWithoutOne) {
  CancelAtPoll query(1);
  BINCancelInfo info(nullptr);
  EXPECT_FALSE(info.IsCancel());
  info.SetCancelPtr(&query);
  EXPECT_TRUE(info.IsCancel());
}

TEST(BINCancelInfo, SetCancelPtrWithNullStopsTheAsking) {
  CancelAtPoll query(1);
  BINCancelInfo info(&query);
  info.SetCancelPtr(nullptr);
  EXPECT_FALSE(info.IsCancel());
  EXPECT_EQ(0, query.Polls());
}

TEST(BINCancelInfo, SetCancelPtrDoesNotResetTheFlag) {
  CancelAtPoll yes(1);
  CancelAtPoll no(kNever);
  BINCancelInfo info(&yes);
  EXPECT_TRUE(info.IsCancel());
  info.SetCancelPtr(&no);
  EXPECT_TRUE(info.IsCancel());
  EXPECT_EQ(0, no.Polls());

  BINCancelInfo set(nullptr);
  set.SetCancel();
  set.SetCancelPtr(&no);
  EXPECT_TRUE(set.IsCancel());
  EXPECT_EQ(0, no.Polls());
}

TEST(BINCancelInfo, ACopySharesTheQueryAndHasAFlagOfItsOwn) {
  CancelAtPoll query(kNever);
  BINCancelInfo info(&query);
  BINCancelInfo copy(info);
  info.SetCancel();
  EXPECT_FALSE(copy.IsCancel());
  EXPECT_EQ(1, query.Polls());
  EXPECT_TRUE(BINCancelInfo(info).IsCancel());
}

// The thread sanitizer sees here whether the flag may be set while it is polled.
TEST(BINCancelInfo, SetCancelFromAnotherThreadReachesThePollingOne) {
  BINCancelInfo info(nullptr);
  std::thread other([&info] { info.SetCancel(); });
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  bool cancelled = false;
  while (!cancelled && std::chrono::steady_clock::now() < deadline) cancelled = info.IsCancel();
  other.join();
  EXPECT_TRUE(cancelled);
}

}  // namespace
