#include "devices/vendor/serial_port.h"
#include "text/status.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <chrono>
#endif

namespace zento::vendor {
namespace {

TEST(SerialSettings, Parse) {
  const auto usual = ParseSerialSettings("9600,N,8,1");
  ASSERT_TRUE(usual.ok());
  EXPECT_EQ(usual.value().baud, 9600u);
  EXPECT_EQ(usual.value().parity, SerialSettings::Parity::kNone);
  EXPECT_EQ(usual.value().data_bits, 8);
  const auto other = ParseSerialSettings("19200,E,7,1.5");
  ASSERT_TRUE(other.ok());
  EXPECT_EQ(other.value().parity, SerialSettings::Parity::kEven);
  EXPECT_EQ(other.value().stop_bits, SerialSettings::StopBits::kOneAndAHalf);
  for (const char* bad : {"", "9600", "9600,N,8", "0,N,8,1", "9600,X,8,1", "9600,N,9,1",
                          "9600,N,8,3", "9600,N,8,1,", "-1,N,8,1", "99999999999,N,8,1"}) {
    EXPECT_FALSE(ParseSerialSettings(bad).ok()) << bad;
  }
}

#ifndef _WIN32

// The other end of a serial line: a terminal's master side.
class PseudoTerminal {
 public:
  PseudoTerminal() : master_(posix_openpt(O_RDWR | O_NOCTTY)) {
    if (master_ < 0 || grantpt(master_) != 0 || unlockpt(master_) != 0) return;
    device_ = ptsname(master_);
  }
  ~PseudoTerminal() { Vanish(); }
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  void Vanish() {
    if (master_ >= 0) close(master_);
    master_ = -1;
  }
  const std::string& device() const { return device_; }

  // What arrives until the line has been quiet for a moment.
  std::string Read() const {
    std::string bytes;
    std::array<char, 4096> buffer{};
    pollfd waiting{master_, POLLIN, 0};
    while (poll(&waiting, 1, 50) > 0) {
      const ssize_t count = read(master_, buffer.data(), buffer.size());
      if (count <= 0) break;
      bytes.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return bytes;
  }

  termios Attributes() const {
    termios attributes{};
    tcgetattr(master_, &attributes);
    return attributes;
  }

 private:
  int master_;
  std::string device_;
};

class SerialPortTest : public testing::Test {
 protected:
  void SetUp() override {
    if (terminal.device().empty()) GTEST_SKIP() << "no pseudo-terminals here";
  }
  Status Open() { return line.Open(1, "9600,N,8,1"); }

  PseudoTerminal terminal;
  SerialLine line = MakeSerialLine(terminal.device(), std::chrono::milliseconds(100));
};

TEST_F(SerialPortTest, BytesArriveAsTheyAre) {
  EXPECT_FALSE(line.IsOpen());
  ASSERT_TRUE(Open().ok());
  EXPECT_TRUE(line.IsOpen());
  // Nothing on the way may change a line end or act on a control character.
  const std::string bytes("WRT #6,7\nF101\r\n\x03\x11\x13\x00\xFF end", 24);
  ASSERT_TRUE(line.Write(bytes).ok());
  ASSERT_TRUE(line.Write("").ok());
  EXPECT_EQ(terminal.Read(), bytes);
  const termios attributes = terminal.Attributes();
  EXPECT_EQ(cfgetospeed(&attributes), static_cast<speed_t>(B9600));
  EXPECT_EQ(attributes.c_cflag & (CSTOPB | PARENB | CRTSCTS), 0u);
  line.Close();
  EXPECT_FALSE(line.IsOpen());
  EXPECT_FALSE(line.Write("A0").ok());
  ASSERT_TRUE(Open().ok());
  EXPECT_TRUE(line.Write("A0").ok());
  EXPECT_EQ(terminal.Read(), "A0");
}

TEST_F(SerialPortTest, LongTextGoesOutPieceByPiece) {
  ASSERT_TRUE(Open().ok());
  // More than the line holds: it only fits while somebody reads.
  const std::string text(100'000, 'x');
  pid_t reader = fork();
  if (reader == 0) {
    std::size_t total = 0;
    while (total < text.size()) {
      const std::size_t count = terminal.Read().size();
      if (count == 0) break;
      total += count;
    }
    _exit(total == text.size() ? 0 : 1);
  }
  EXPECT_TRUE(line.Write(text).ok());
  int status = -1;
  waitpid(reader, &status, 0);
  EXPECT_EQ(status, 0);
}

TEST_F(SerialPortTest, ReaderThatNeverReadsCostsNoMoreThanTheDeadline) {
  ASSERT_TRUE(Open().ok());
  const auto start = std::chrono::steady_clock::now();
  Status status;
  int writes = 0;
  while (status.ok() && writes < 1000) {
    status = line.Write(std::string(100, 'x'));
    ++writes;
  }
  const auto took = std::chrono::steady_clock::now() - start;
  EXPECT_FALSE(status.ok());
  EXPECT_NE(status.why().find("nothing takes the data"), std::string::npos) << status.why();
  EXPECT_GT(writes, 10);
  EXPECT_LT(took, std::chrono::seconds(5));
  // Half a command may have gone out: the line has to be opened anew.
  EXPECT_FALSE(line.IsOpen());
  EXPECT_FALSE(line.Write("A0").ok());
}

TEST_F(SerialPortTest, VanishedPortIsAFailure) {
  ASSERT_TRUE(Open().ok());
  terminal.Vanish();
  EXPECT_FALSE(line.Write("A0").ok());
  EXPECT_FALSE(line.IsOpen());
  const Status again = Open();
  EXPECT_FALSE(again.ok());
  EXPECT_NE(again.why().find(terminal.device()), std::string::npos);
  EXPECT_FALSE(line.IsOpen());
}

TEST(SerialPort, WhatIsNoSerialPortDoesNotOpen) {
  for (const char* device : {"/dev/null", "/no/such/device", ""}) {
    const SerialLine line = MakeSerialLine(device);
    EXPECT_FALSE(line.Open(1, "9600,N,8,1").ok()) << device;
    EXPECT_FALSE(line.IsOpen());
  }
  const SerialLine line = MakeSerialLine("/dev/null");
  EXPECT_NE(line.Open(1, "fast").why().find("not like 9600,N,8,1"), std::string::npos);
}

#endif  // _WIN32

}  // namespace
}  // namespace zento::vendor
