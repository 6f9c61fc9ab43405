#include "host/timer_queue.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "host/virtual/virtual_host.h"

namespace zento {
namespace {

// Records the moments of its ticks, in milliseconds since it was made.
class TimerQueueTest : public testing::Test {
 protected:
  std::int64_t Elapsed() const { return (machine_.clock.Micros() - began_) / 1000; }
  void Note() { ticks_.push_back(Elapsed()); }

  VirtualHost machine_;
  std::int64_t began_ = machine_.clock.Micros();
  std::vector<std::int64_t> ticks_;
};

TEST_F(TimerQueueTest, KeepsItsCadenceWhenTheHandlerTakesTimeAndRestartsItself) {
  std::optional<TimerQueue::PeriodicTimer> timer;
  timer.emplace(machine_.timers, [&] {
    timer->SetEnabled(false);
    Note();
    machine_.clock.Spend(700);
    timer->SetEnabled(true);
  });
  timer->SetInterval(10);
  timer->SetEnabled(true);
  machine_.RunFor(50'000);
  EXPECT_EQ(ticks_, (std::vector<std::int64_t>{10, 20, 30, 40, 50}));
}

// The second tick, at 20 ms, keeps the loop busy for so long. A tick up to one interval late comes
// late; of those missed by more, all but the last are dropped and none come in a bunch.
TEST(TimerQueue, DropsMissedTicksAndStaysOnTheMultiples) {
  using Ticks = std::vector<std::int64_t>;
  for (const auto& [busy, expected] : {std::pair{9, Ticks{10, 20, 30, 40, 50, 60, 70}},
                                       {15, {10, 20, 35, 40, 50, 60, 70}},
                                       {20, {10, 20, 40, 50, 60, 70}},
                                       {25, {10, 20, 45, 50, 60, 70}},
                                       {35, {10, 20, 55, 60, 70}}}) {
    VirtualHost machine;
    const std::int64_t began = machine.clock.Micros();
    Ticks ticks;
    TimerQueue::PeriodicTimer timer(machine.timers, [&] {
      ticks.push_back((machine.clock.Micros() - began) / 1000);
      if (ticks.size() == 2) machine.clock.Spend(busy * 1000);
    });
    timer.SetInterval(10);
    timer.SetEnabled(true);
    machine.RunFor(70'000);
    EXPECT_EQ(ticks, expected) << busy;
  }
}

TEST_F(TimerQueueTest, AHandlerThatAlwaysOverrunsNeverHoldsUpAnotherTimer) {
  int others = 0;
  TimerQueue::PeriodicTimer slow(machine_.timers, [&] { machine_.clock.Spend(25'000); });
  TimerQueue::PeriodicTimer other(machine_.timers, [&] { ++others; });
  slow.SetInterval(10);
  other.SetInterval(50);
  slow.SetEnabled(true);
  other.SetEnabled(true);
  machine_.RunFor(1'000'000);
  EXPECT_GE(others, 18);
}

TEST_F(TimerQueueTest, RunsATimerAtMostOnceARound) {
  int ticks = 0;
  TimerQueue::PeriodicTimer timer(machine_.timers, [&] { ++ticks; });
  timer.SetInterval(1);
  timer.SetEnabled(true);
  machine_.clock.Spend(500'500);
  EXPECT_EQ(machine_.timers.RunDue(), 1);
  EXPECT_EQ(ticks, 1);
  machine_.clock.Spend(500);
  EXPECT_EQ(machine_.timers.RunDue(), 1);
}

TEST_F(TimerQueueTest, TakesANewIntervalFromTheStartOfTheCurrentPeriod) {
  std::optional<TimerQueue::PeriodicTimer> timer;
  timer.emplace(machine_.timers, [&] {
    Note();
    machine_.clock.Spend(3'000);
    timer->SetEnabled(false);
    timer->SetInterval(20);
    timer->SetEnabled(true);
  });
  timer->SetInterval(10);
  timer->SetEnabled(true);
  machine_.RunFor(55'000);
  EXPECT_EQ(ticks_, (std::vector<std::int64_t>{10, 30, 50}));
}

TEST_F(TimerQueueTest, EnablingAnEnabledTimerChangesNothing) {
  TimerQueue::PeriodicTimer timer(machine_.timers, [&] { Note(); });
  timer.SetInterval(10);
  timer.SetEnabled(true);
  machine_.RunFor(9'000);
  timer.SetEnabled(true);
  machine_.RunFor(1'000);
  EXPECT_EQ(ticks_, (std::vector<std::int64_t>{10}));
}

TEST_F(TimerQueueTest, ATimerMayGoInItsOwnTickAndInAnothers) {
  std::unique_ptr<TimerQueue::PeriodicTimer> other;
  std::unique_ptr<TimerQueue::PeriodicTimer> self;
  int others = 0;
  self = std::make_unique<TimerQueue::PeriodicTimer>(machine_.timers, [&] {
    Note();
    other.reset();
    self.reset();
  });
  other = std::make_unique<TimerQueue::PeriodicTimer>(machine_.timers, [&] { ++others; });
  for (auto* timer : {self.get(), other.get()}) {
    timer->SetInterval(10);
    timer->SetEnabled(true);
  }
  machine_.RunFor(100'000);
  EXPECT_EQ(ticks_.size(), 1U);
  EXPECT_EQ(others, 0);
  EXPECT_FALSE(machine_.timers.NextDue());
}

TEST_F(TimerQueueTest, PostedWorkRunsLaterAndNeverInsideTheHandlerThatPostsIt) {
  std::vector<int> order;
  machine_.timers.Post([&] {
    machine_.timers.Post([&] { order.push_back(3); });
    EXPECT_EQ(machine_.timers.RunDue(), 0) << "a nested call runs nothing";
    order.push_back(1);
  });
  machine_.timers.Post([&] { order.push_back(2); });
  EXPECT_EQ(machine_.timers.RunDue(), 2);
  machine_.Settle();
  EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TEST_F(TimerQueueTest, AHandlerThatThrowsLeavesTheQueueWorking) {
  TimerQueue::PeriodicTimer timer(machine_.timers, [&] {
    Note();
    if (ticks_.size() == 1) throw std::runtime_error("once");
  });
  timer.SetInterval(10);
  timer.SetEnabled(true);
  EXPECT_THROW(machine_.RunFor(10'000), std::runtime_error);
  machine_.RunFor(20'000);
  EXPECT_EQ(ticks_, (std::vector<std::int64_t>{10, 20, 30}));
}

TEST_F(TimerQueueTest, WorkThatPostsItselfForEverDoesNotStopTime) {
  std::function<void()> again = [&] { machine_.timers.Post(again); };
  again();
  TimerQueue::PeriodicTimer timer(machine_.timers, [&] { Note(); });
  timer.SetInterval(10);
  timer.SetEnabled(true);
  EXPECT_TRUE(machine_.RunUntil([&] { return ticks_.size() == 2; }, 1'000'000));
}

TEST_F(TimerQueueTest, AWaitTellsWhyItEnded) {
  const auto never = [] { return false; };
  EXPECT_EQ(machine_.loop.RunUntil(never, 1'000'000), Waited::kNothingArmed);
  TimerQueue::PeriodicTimer timer(machine_.timers, [&] { Note(); });
  timer.SetInterval(300);
  timer.SetEnabled(true);
  EXPECT_EQ(machine_.loop.RunUntil(never, 1'000'000), Waited::kTimeout);
  EXPECT_EQ(Elapsed(), 1000);
  EXPECT_EQ(machine_.loop.RunUntil([&] { return ticks_.size() == 4; }, 1'000'000), Waited::kDone);
  EXPECT_EQ(Elapsed(), 1200);
}

}  // namespace
}  // namespace zento
