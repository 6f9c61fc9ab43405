#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "host/virtual/virtual_host.h"

namespace zento {
namespace {

TEST(VirtualDialogs, AnswersAfterTheAskingHandlerReturned) {
  VirtualHost machine;
  machine.dialogs.Answer("yes");
  std::optional<bool> answer;
  machine.dialogs.Ask("Convert?", Buttons::kYesNo, [&](bool yes) { answer = yes; });
  EXPECT_FALSE(answer);
  machine.Settle();
  EXPECT_EQ(answer, true);
  EXPECT_TRUE(machine.dialogs.unanswered.empty());
}

TEST(VirtualDialogs, CancelsWhatNobodyAnswersAndNotesIt) {
  VirtualHost machine;
  std::vector<std::string> heard;
  machine.dialogs.Ask("Delete?", Buttons::kOkCancel,
                      [&](bool ok) { heard.push_back(ok ? "ok" : "cancel"); });
  machine.dialogs.AskText({"pH", "", "7"}, [&](const std::optional<std::string>& text) {
    heard.push_back(text.value_or("nothing"));
  });
  machine.Settle();
  EXPECT_EQ(heard, (std::vector<std::string>{"cancel", "nothing"}));
  EXPECT_EQ(machine.dialogs.unanswered, (std::vector<std::string>{"Delete?", "pH"}));
}

TEST(VirtualDialogs, HeldMessagesHoldUpNothing) {
  VirtualHost machine;
  machine.dialogs.HoldMessages(true);
  bool closed = false;
  machine.dialogs.Message("Buffer overflow!", [&] { closed = true; });
  machine.RunFor(1'000'000);
  EXPECT_FALSE(closed);
  EXPECT_EQ(machine.dialogs.TakeMessages(), (std::vector<std::string>{"Buffer overflow!"}));
  EXPECT_TRUE(machine.dialogs.TakeMessages().empty());
  machine.dialogs.HoldMessages(false);
  machine.Settle();
  EXPECT_TRUE(closed);
}

TEST(MemoryFiles, FaultsLeaveTheOldFileAsItWas) {
  MemoryFiles files;
  ASSERT_TRUE(files.Replace("/home/a.txt", "old").ok());
  files.FailNext(MemoryFiles::Operation::kReplace, "input/output error");
  EXPECT_EQ(files.Replace("/home/a.txt", "new").why(), "write /home/a.txt: input/output error");
  EXPECT_EQ(files.Read("/home/a.txt").value(), "old");
  files.SetCapacity(5);
  EXPECT_FALSE(files.Replace("/home/a.txt", "too long").ok());
  EXPECT_TRUE(files.Replace("/home/./a.txt", "fits").ok());
  EXPECT_FALSE(files.Append("/home/b.txt", "12").ok());
  EXPECT_FALSE(files.Exists("/home/b.txt"));
  EXPECT_EQ(files.Read("/home/a.txt").value(), "fits");
}

TEST(MemoryFiles, RenamingNeverOverwrites) {
  MemoryFiles files;
  ASSERT_TRUE(files.Replace("a", "1").ok());
  ASSERT_TRUE(files.Replace("b", "2").ok());
  EXPECT_FALSE(files.Rename("a", "b").ok());
  EXPECT_TRUE(files.Rename("a", "c").ok());
  EXPECT_EQ(files.List(), (std::vector<std::filesystem::path>{"b", "c"}));
}

TEST(MemoryFiles, FoldersShowWhatStandsRightInThem) {
  MemoryFiles files;
  for (const char* name : {"/a/1.znt", "/a/b/2.znt", "/a/b/3.znt", "/ab/4.znt"}) {
    ASSERT_TRUE(files.Replace(name, "x").ok());
  }
  ASSERT_TRUE(files.CreateFolder("/a/empty").ok());
  const auto names = [&](const char* folder) {
    std::string text;
    auto listed = files.ListFolder(folder);
    if (!listed.ok()) return std::string("none");
    for (const FolderEntry& entry : listed.value()) {
      text += entry.name.generic_string() + (entry.folder ? "/ " : " ");
    }
    return text;
  };
  EXPECT_EQ(names("/a"), "1.znt b/ empty/ ");
  EXPECT_EQ(names("/a/b/"), "2.znt 3.znt ");
  EXPECT_EQ(names("/"), "a/ ab/ ");
  EXPECT_EQ(names("/a/empty"), "");
  EXPECT_EQ(names("/c"), "none");
}

}  // namespace
}  // namespace zento
