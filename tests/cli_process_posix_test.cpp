// What the command-line program does as a process: how it ends when the system asks it to.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

std::string Text(const fs::path& path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

class CliProcessTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = testing::TempDir() + "/zento-process-XXXXXX";
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    folder_ = name;
  }
  void TearDown() override { fs::remove_all(folder_); }

  // Starts a script or a macro, in a file of that name, on the simulated bench.
  void Start(const char* clock, const char* command, const std::string& text,
             std::vector<std::string> more = {}) {
    std::ofstream(folder_ / "file") << text;
    std::vector<std::string> arguments = {"zento-cli", "--bench", "sim",   "--home", "home",
                                          "--clock",   clock,     command, "file"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    std::vector<char*> argv;
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    child_ = fork();
    ASSERT_GE(child_, 0);
    if (child_ != 0) return;
    const bool ready = chdir(folder_.c_str()) == 0 && freopen("out", "w", stdout) != nullptr &&
                       freopen("err", "w", stderr) != nullptr;
    if (ready) execv(ZENTO_CLI, argv.data());
    _exit(99);
  }
  // Waits until the file is there and holds `text`.
  bool WaitFor(const char* name, const char* text = "") const {
    for (int i = 0; i < 600; ++i) {
      const bool there = fs::exists(folder_ / name);
      if (there && Text(folder_ / name).find(text) != std::string::npos) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return false;
  }
  int ExitStatus(int signal) const {
    if (signal != 0) kill(child_, signal);
    int status = 0;
    waitpid(child_, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  fs::path folder_;
  pid_t child_ = -1;
};

constexpr char kLongRun[] =
    "open frmMeasureCV\n"
    "set frmMeasureCV.txtRetainTime 0\n"
    "set frmMeasureCV.txtRPM 1000\n"
    "click frmMeasureCV.cmdStart\n"
    "wait 1s\n"
    "plot Graph1.Picture1 running.svg\n"
    "wait idle\n"
    "get frmMeasureCV\n";

TEST_F(CliProcessTest, ASignalEndsTheRunSafelyAndKeepsWhatWasMeasured) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    Start("real", "script", kLongRun);
    ASSERT_TRUE(WaitFor("running.svg")) << Text(folder_ / "err");
    EXPECT_EQ(ExitStatus(signal), 128 + signal);
    EXPECT_THAT(Text(folder_ / "err"), HasSubstr("brought to its safe end"));
    EXPECT_EQ(Text(folder_ / "out"), "") << "nothing behind the wait is carried out";
    EXPECT_THAT(Text(folder_ / "home" / "Rescued tracks 1.znt"), HasSubstr("pnum="));
    EXPECT_THAT(Text(folder_ / "home" / "Parameters.txt"), HasSubstr("CVRPM= 1000"));
    fs::remove_all(folder_ / "home");
    fs::remove(folder_ / "running.svg");
  }
}

TEST_F(CliProcessTest, ASignalEndsAMacroSafelyAndSavesItsTracks) {
  Start("real", "run", "CV.RetainTime 0\nCV.RPM 1000\nCV.RecordTrack 5\nCV.Start\nCV.Start\n",
        {"--save", "kept.znt", "--log", "log"});
  ASSERT_TRUE(WaitFor("log", "Recording"));
  EXPECT_EQ(ExitStatus(SIGTERM), 128 + SIGTERM);
  EXPECT_THAT(Text(folder_ / "kept.znt"), HasSubstr("DataNum= 5"));
  EXPECT_THAT(Text(folder_ / "log"), HasSubstr("bus: A0"));
  EXPECT_THAT(Text(folder_ / "log"), HasSubstr("END Macro file: Stopped at line 4"));
}

TEST_F(CliProcessTest, AKilledProgramLeavesItsHomeFree) {
  Start("real", "script", kLongRun);
  ASSERT_TRUE(WaitFor("running.svg"));
  EXPECT_EQ(ExitStatus(SIGKILL), -1);
  Start("virtual", "script", "get frmControlPanel.txtDatNum\n");
  EXPECT_EQ(ExitStatus(0), 0) << Text(folder_ / "err");
}

TEST_F(CliProcessTest, ASignalEndsAnEndlessWaitInVirtualTime) {
  Start("virtual", "script", std::string(kLongRun) + "wait 100000h\n");
  ASSERT_TRUE(WaitFor("running.svg"));
  EXPECT_EQ(ExitStatus(SIGTERM), 128 + SIGTERM);
}

TEST_F(CliProcessTest, AReaderThatGoesAwayDoesNotEndTheRun) {
  std::ofstream(folder_ / "script.zsc") << "get frmControlPanel\n"
                                           "open frmMeasureCV\n"
                                           "click frmMeasureCV.cmdStart\n"
                                           "get frmMeasureCV\n"
                                           "wait idle\n"
                                           "answer kept.znt\n"
                                           "click frmControlPanel.mnuSaveAs\n";
  const std::string command = "cd " + folder_.string() +
                              " && { " ZENTO_CLI
                              " --bench sim --home home script script.zsc; echo $? >status; } "
                              "2>/dev/null | true";
  ASSERT_EQ(std::system(command.c_str()), 0);
  ASSERT_TRUE(WaitFor("status"));
  EXPECT_NE(Text(folder_ / "status"), "0\n") << "not everything was printed";
  EXPECT_THAT(Text(folder_ / "kept.znt"), HasSubstr("pnum="));
}

TEST_F(CliProcessTest, OutputThatCannotBeWrittenIsAFailure) {
  EXPECT_EQ(WEXITSTATUS(std::system(ZENTO_CLI " bench >/dev/full 2>/dev/null")), 1);
  EXPECT_EQ(WEXITSTATUS(std::system(ZENTO_CLI " bench >/dev/null 2>/dev/null")), 0);
}

}  // namespace
