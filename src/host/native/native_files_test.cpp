#include "host/native/native_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#ifndef _WIN32
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#endif

#include "host/path_text.h"
#include "text/status.h"

namespace zento {
namespace {

namespace fs = std::filesystem;

// Of this process alone, so that several may run the tests at once.
fs::path FreshFolder() {
  static const unsigned process = std::random_device()();
  static int count = 0;
  return fs::path(testing::TempDir()) /
         ("zento-" + std::to_string(process) + "-" + std::to_string(count++));
}

class NativeFilesTest : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = FreshFolder();
    fs::create_directories(folder_);
  }
  void TearDown() override { fs::remove_all(folder_); }

  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder_)) {
      names.push_back(TextFromPath(entry.path().filename()));
    }
    return names;
  }
  std::string Text(const fs::path& path) { return files_.Read(path).value(); }

  fs::path folder_;
  NativeFiles files_;
};

TEST_F(NativeFilesTest, ReplacesAndReadsBackWhateverTheNameAndTheBytes) {
  const fs::path path = folder_ / PathFromText("測定 ä.znt");
  const std::string bytes("a\0b\r\n", 5);
  ASSERT_TRUE(files_.Replace(path, "first and longer").ok());
  ASSERT_TRUE(files_.Replace(path, bytes).ok());
  EXPECT_EQ(Text(path), bytes);
  EXPECT_EQ(Names(), (std::vector<std::string>{"測定 ä.znt"}));
  ASSERT_TRUE(files_.Append(path, "mo").ok());
  ASSERT_TRUE(files_.AppendFlushed(path, "re").ok());
  EXPECT_EQ(Text(path), bytes + "more");
}

TEST_F(NativeFilesTest, ReadsFilesLargerThanItsBuffers) {
  std::string bytes(3'000'000, 'x');
  bytes.back() = 'y';
  ASSERT_TRUE(files_.Replace(folder_ / "large", bytes).ok());
  EXPECT_EQ(Text(folder_ / "large"), bytes);
}

TEST_F(NativeFilesTest, FailuresNameTheFileAndTheCause) {
  const Result<std::string> missing = files_.Read(folder_ / "none.znt");
  ASSERT_FALSE(missing.ok());
  EXPECT_NE(missing.why().find("none.znt: "), std::string::npos) << missing.why();
  EXPECT_FALSE(files_.Read(folder_).ok());
  EXPECT_FALSE(files_.Replace(folder_, "x").ok());
  EXPECT_FALSE(files_.Replace(folder_ / "no" / "folder", "x").ok());
  ASSERT_TRUE(files_.Replace(folder_ / "file", "x").ok());
  EXPECT_FALSE(files_.CreateFolder(folder_ / "file").ok());
  EXPECT_TRUE(files_.CreateFolder(folder_ / "a" / "b").ok());
  EXPECT_TRUE(files_.CreateFolder(folder_ / "a" / "b").ok());
}

TEST_F(NativeFilesTest, RenamesButNeverOverwrites) {
  ASSERT_TRUE(files_.Replace(folder_ / "a", "1").ok());
  ASSERT_TRUE(files_.Replace(folder_ / "b", "2").ok());
  EXPECT_FALSE(files_.Rename(folder_ / "a", folder_ / "b").ok());
  EXPECT_EQ(Text(folder_ / "b"), "2");
  EXPECT_TRUE(files_.Rename(folder_ / "a", folder_ / "c").ok());
  EXPECT_FALSE(files_.Exists(folder_ / "a"));
  EXPECT_EQ(Text(folder_ / "c"), "1");
}

TEST_F(NativeFilesTest, ListsFoldersAndReadsInPieces) {
  ASSERT_TRUE(files_.CreateFolder(folder_ / "sub").ok());
  ASSERT_TRUE(
      files_.Replace(folder_ / PathFromText("測定.znt"), std::string(1000, 'x') + "y").ok());
  auto listed = files_.ListFolder(folder_);
  ASSERT_TRUE(listed.ok()) << listed.why();
  std::vector<std::string> names;
  for (const FolderEntry& entry : listed.value()) {
    names.push_back(TextFromPath(entry.name) + (entry.folder ? "/" : ""));
  }
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"sub/", "測定.znt"}));
  EXPECT_FALSE(files_.ListFolder(folder_ / "none").ok());
  EXPECT_FALSE(files_.Open(folder_ / "sub").ok());
  EXPECT_FALSE(files_.Open(folder_ / "none").ok());

  auto reader = files_.Open(folder_ / PathFromText("測定.znt"));
  ASSERT_TRUE(reader.ok()) << reader.why();
  EXPECT_EQ(reader.value()->Size(), 1001U);
  std::string bytes;
  for (char room[300];;) {
    const auto got = reader.value()->Read(room);
    ASSERT_TRUE(got.ok());
    if (got.value() == 0) break;
    bytes.append(room, got.value());
  }
  EXPECT_EQ(bytes, std::string(1000, 'x') + "y");
  EXPECT_TRUE(files_.Exists(files_.Drives().front()));
}

#ifndef _WIN32

TEST_F(NativeFilesTest, NeverWaitsForAPipeAndSaysWhatIsALink) {
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  EXPECT_FALSE(files_.Open(folder_ / "pipe").ok());
  ASSERT_TRUE(files_.CreateFolder(folder_ / "real").ok());
  fs::create_symlink(folder_ / "real", folder_ / "link");
  fs::create_symlink(folder_ / "nowhere", folder_ / "broken");
  auto listed = files_.ListFolder(folder_);
  ASSERT_EQ(listed->size(), 2U);
  for (const FolderEntry& entry : listed.value()) {
    EXPECT_TRUE(entry.folder);
    EXPECT_EQ(entry.link, entry.name == "link");
  }
}

// A full disk as the kernel can play it: no file may grow beyond the limit.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    handler_ = std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit now{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &now);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }

 private:
  rlimit before_{};
  void (*handler_)(int);
};

TEST_F(NativeFilesTest, ADiskThatFillsLeavesTheOldFileAndNothingElse) {
  const fs::path path = folder_ / "run.znt";
  ASSERT_TRUE(files_.Replace(path, "old").ok());
  {
    const FileSizeLimit full(1000);
    const Status failed = files_.Replace(path, std::string(100'000, 'x'));
    EXPECT_FALSE(failed.ok());
    EXPECT_NE(failed.why().find("run.znt"), std::string::npos);
    EXPECT_FALSE(files_.Append(path, std::string(100'000, 'x')).ok());
    EXPECT_FALSE(files_.AppendFlushed(path, std::string(100'000, 'x')).ok());
  }
  EXPECT_EQ(Text(path), "old");
  EXPECT_EQ(Names(), (std::vector<std::string>{"run.znt"}));
}

TEST_F(NativeFilesTest, WritesThroughToDevices) {
  EXPECT_NE(files_.Replace("/dev/full", "x").why().find("No space left"), std::string::npos);
  EXPECT_FALSE(files_.Append("/dev/full", "x").ok());
  EXPECT_TRUE(files_.Replace("/dev/null", "x").ok());
}

TEST_F(NativeFilesTest, FollowsLinksAndKeepsPermissions) {
  fs::create_directories(folder_ / "real");
  ASSERT_TRUE(files_.Replace(folder_ / "real" / "file", "old").ok());
  ASSERT_EQ(chmod((folder_ / "real" / "file").c_str(), 0640), 0);
  fs::create_symlink("real/file", folder_ / "second");
  fs::create_symlink(folder_ / "second", folder_ / "first");
  ASSERT_TRUE(files_.Replace(folder_ / "first", "new").ok());
  EXPECT_TRUE(fs::is_symlink(folder_ / "first"));
  EXPECT_EQ(Text(folder_ / "real" / "file"), "new");
  EXPECT_EQ(fs::status(folder_ / "real" / "file").permissions(), fs::perms(0640));

  fs::create_symlink("real/not yet", folder_ / "dangling");
  ASSERT_TRUE(files_.Replace(folder_ / "dangling", "made").ok());
  EXPECT_EQ(Text(folder_ / "real" / "not yet"), "made");

  fs::create_symlink("loop", folder_ / "loop");
  EXPECT_FALSE(files_.Replace(folder_ / "loop", "x").ok());
}

// To root everything may be written: for a while the test is somebody else.
class OrdinaryUser {
 public:
  OrdinaryUser() : was_root_(geteuid() == 0) {
    if (was_root_ && seteuid(kNobody) != 0) ADD_FAILURE() << "cannot become an ordinary user";
  }
  ~OrdinaryUser() {
    if (was_root_ && seteuid(0) != 0) ADD_FAILURE() << "cannot become root again";
  }
  static constexpr uid_t kNobody = 65534;

 private:
  bool was_root_;
};

TEST_F(NativeFilesTest, RefusesWhatTheUserMayNotWrite) {
  if (geteuid() == 0) {
    ASSERT_EQ(chown(folder_.c_str(), OrdinaryUser::kNobody, 0), 0);
  }
  const OrdinaryUser user;
  ASSERT_TRUE(files_.Replace(folder_ / "kept", "old").ok());
  ASSERT_EQ(chmod((folder_ / "kept").c_str(), 0440), 0);
  EXPECT_FALSE(files_.Replace(folder_ / "kept", "new").ok());
  ASSERT_EQ(chmod(folder_.c_str(), 0550), 0);
  EXPECT_FALSE(files_.Replace(folder_ / "other", "new").ok());
  EXPECT_FALSE(files_.Append(folder_ / "other", "new").ok());
  ASSERT_EQ(chmod(folder_.c_str(), 0750), 0);
  EXPECT_EQ(Names(), (std::vector<std::string>{"kept"}));
  EXPECT_EQ(Text(folder_ / "kept"), "old");
}

#endif

}  // namespace
}  // namespace zento
