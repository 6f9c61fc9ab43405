#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <thread>

#ifndef _WIN32
#include <unistd.h>
#endif

#include "host/native/home.h"
#include "host/native/native_clock.h"
#include "host/native/real_time_loop.h"
#include "host/native/termination.h"
#include "text/status.h"

namespace zento {
namespace {

namespace fs = std::filesystem;

class HomeTest : public testing::Test {
 protected:
  std::string Resolved() {
    const auto home = ResolveHome(question_);
    return home.ok() ? home.value().generic_string() : "failed: " + home.why();
  }

  std::map<std::string, std::string> variables_ = {{"HOME", "/home/ann"}};
  HomeQuestion question_{{},
                         false,
                         "/opt/zento/bin",
                         [this](const char* name) -> std::optional<std::string> {
                           const auto found = variables_.find(name);
                           return found == variables_.end() ? std::nullopt
                                                            : std::optional(found->second);
                         },
                         [](const fs::path&) { return false; }};
};

#ifndef _WIN32

TEST_F(HomeTest, IsTheUsersDataFolderUnlessSomethingSaysOtherwise) {
  EXPECT_EQ(Resolved(), "/home/ann/.local/share/zento");
  question_.simulated = true;
  EXPECT_EQ(Resolved(), "/home/ann/.local/share/zento-sim");
  variables_["XDG_DATA_HOME"] = "relative/is/ignored";
  EXPECT_EQ(Resolved(), "/home/ann/.local/share/zento-sim");
  variables_["XDG_DATA_HOME"] = "/data/ann";
  EXPECT_EQ(Resolved(), "/data/ann/zento-sim");
}

TEST_F(HomeTest, IsTheExecutablesFolderWhenItHoldsSettings) {
  question_.exists = [](const fs::path& path) { return path == "/opt/zento/bin/Parameters.txt"; };
  EXPECT_EQ(Resolved(), "/opt/zento/bin");
  question_.simulated = true;
  EXPECT_EQ(Resolved(), "/opt/zento/bin/zento-sim");
  question_.wanted = "/mnt/bench/../bench 2";
  EXPECT_EQ(Resolved(), "/mnt/bench 2");
}

TEST_F(HomeTest, FailsWhereNoUserHasAFolder) {
  variables_.clear();
  EXPECT_NE(Resolved().find("--home"), std::string::npos);
}

#endif

// Of this process alone, so that several may run the tests at once.
fs::path FreshPath() {
  static const unsigned process = std::random_device()();
  static int count = 0;
  return fs::path(testing::TempDir()) /
         ("zento-home-" + std::to_string(process) + "-" + std::to_string(count++));
}

TEST(HomeLock, KeepsASecondProgramOutAndNamesTheFirst) {
  const fs::path folder = FreshPath();
  const fs::path home = folder / "new home";
  auto first = HomeLock::Take(home, "the workstation");
  ASSERT_TRUE(first.ok()) << first.why();
  const auto second = HomeLock::Take(home, "a script");
  ASSERT_FALSE(second.ok());
  EXPECT_NE(second.why().find("in use by the workstation (process "), std::string::npos)
      << second.why();
  first.value().reset();
  EXPECT_TRUE(HomeLock::Take(home, "a script").ok());
  fs::remove_all(folder);
}

TEST(HomeLock, FailsWhereTheHomeCannotBe) {
  const fs::path folder = FreshPath();
  ASSERT_TRUE(HomeLock::Take(folder, "x").ok());
  EXPECT_FALSE(HomeLock::Take(folder / ".zento.lock" / "below a file", "x").ok());
  fs::remove_all(folder);
}

TEST(RealTimeLoop, TicksOnTheGridAndStopsAtItsLimit) {
  NativeClock clock;
  TimerQueue timers(clock);
  RealTimeLoop loop(clock, timers);
  int ticks = 0;
  TimerQueue::PeriodicTimer timer(timers, [&] { ++ticks; });
  timer.SetInterval(5);
  timer.SetEnabled(true);
  const std::int64_t began = clock.Micros();
  EXPECT_EQ(loop.RunUntil([&] { return ticks == 10; }, 60'000'000), Waited::kDone);
  EXPECT_GE(clock.Micros() - began, 50'000);
  EXPECT_EQ(loop.RunUntil([] { return false; }, 1'000), Waited::kTimeout);
  timer.SetEnabled(false);
  EXPECT_EQ(loop.RunUntil([] { return false; }, 1'000'000), Waited::kNothingArmed);
}

TEST(RealTimeLoop, WakesForATerminationRequest) {
  NativeClock clock;
  TimerQueue timers(clock);
  RealTimeLoop loop(clock, timers, &Termination::Requested);
  const Termination termination([&loop] { loop.Wake(); });
  EXPECT_FALSE(Termination::Requested());
  TimerQueue::PeriodicTimer far(timers, [] {});
  far.SetInterval(60'000);
  far.SetEnabled(true);
#ifdef _WIN32
  GTEST_SKIP() << "no console events here";
#else
  std::thread sender([] {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    kill(getpid(), SIGTERM);
  });
  EXPECT_EQ(loop.RunUntil([] { return false; }, 60'000'000), Waited::kInterrupted);
  sender.join();
  EXPECT_EQ(Termination::Signal(), SIGTERM);
#endif
}

}  // namespace
}  // namespace zento
