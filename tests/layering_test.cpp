// Holds the rooms' table of docs/architecture.md against the #include lines: rules that nobody
// checks rot.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

const fs::path kSource = ZENTO_SOURCE_DIR "/src";

// What a room may include besides itself. Folders named with a slash are rooms within a room.
const std::map<std::string, std::vector<std::string>> kMayInclude = {
    {"text", {}},
    {"host", {"text"}},
    {"host/native", {"text", "host"}},
    {"host/virtual", {"text", "host"}},
    {"core", {"text", "host"}},
    {"exchange", {"text", "host", "core"}},
    {"graph", {"text", "host", "core"}},
    {"devices/vendor", {"text", "host"}},
    {"devices", {"text", "host", "core", "devices/vendor"}},
    {"sim", {"text", "host", "devices/vendor"}},
    {"measure", {"text", "host", "core", "graph", "devices", "exchange"}},
    {"macro", {"text", "host", "core", "graph", "devices", "measure"}},
    {"analysis", {"text", "host", "core", "graph", "exchange"}},
    {"ui/main", {"text", "host", "core", "graph", "devices", "exchange"}},
    {"qt", {"text", "host", "host/native", "graph"}},
    {"program",
     {"text", "host", "host/native", "host/virtual", "core", "exchange", "graph", "devices/vendor",
      "devices", "sim", "measure", "macro", "analysis", "ui/main", "qt"}},
    {"cli",
     {"text", "host", "host/native", "host/virtual", "core", "exchange", "graph", "devices/vendor",
      "devices", "sim", "measure", "macro", "analysis", "ui/main", "program"}},
};

std::string RoomOf(const std::string& path) {
  std::string room;
  for (const auto& [name, allowed] : kMayInclude) {
    if (path.rfind(name + "/", 0) == 0 && name.size() > room.size()) room = name;
  }
  return room;
}

bool IsSource(const fs::path& path) {
  return path.extension() == ".h" || path.extension() == ".cpp";
}

// Tests, what they share ("test_rig.h") and fuzz targets look at a room from outside and may use
// what they need.
bool IsProduct(const std::string& path) {
  static const std::regex test("(^|_)test[_.]|_fuzz\\.cpp$");
  return !std::regex_search(fs::path(path).filename().string(), test);
}

template <typename Visit>
void ForEachProductLine(Visit visit) {
  int files = 0;
  for (const auto& entry : fs::recursive_directory_iterator(kSource)) {
    if (!entry.is_regular_file() || !IsSource(entry.path())) continue;
    const std::string path = fs::relative(entry.path(), kSource).generic_string();
    if (!IsProduct(path)) continue;
    ++files;
    std::ifstream file(entry.path());
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) visit(path, number, line);
  }
  ASSERT_GT(files, 20) << "the sources were not found under " << kSource;
}

// `visit` gets the file and what it includes from src/.
template <typename Visit>
void ForEachInclude(Visit visit) {
  static const std::regex include("^\\s*#\\s*include\\s*\"([^\"]+)\"");
  ForEachProductLine([&](const std::string& path, int number, const std::string& line) {
    std::smatch match;
    if (line.find('#') == line.npos || !std::regex_search(line, match, include)) return;
    visit(path, number, match[1].str());
  });
}

TEST(Layering, RoomsIncludeOnlyRoomsBelowThem) {
  ForEachInclude([](const std::string& path, int number, const std::string& included) {
    const std::string room = RoomOf(path);
    const std::string target = RoomOf(included);
    ASSERT_FALSE(room.empty()) << path << " stands in no room";
    EXPECT_FALSE(target.empty()) << path << ":" << number << " includes \"" << included
                                 << "\", which is no path from src/";
    if (target == room || target.empty()) return;
    const auto& allowed = kMayInclude.at(room);
    EXPECT_TRUE(std::find(allowed.begin(), allowed.end(), target) != allowed.end())
        << path << ":" << number << ": " << room << " may not include " << target;
  });
}

// A header and its source are one: what they include together must not lead back to them.
TEST(Layering, NoCircleInsideARoomOfThePrograms) {
  const auto unit = [](const std::string& path) { return path.substr(0, path.rfind('.')); };
  std::map<std::string, std::set<std::string>> uses;
  ForEachInclude([&](const std::string& path, int, const std::string& included) {
    const std::string room = RoomOf(path);
    if ((room != "program" && room != "cli") || RoomOf(included) != room) return;
    if (unit(path) != unit(included)) uses[unit(path)].insert(unit(included));
  });
  ASSERT_GT(uses.size(), 10U);
  // What uses nothing that is left stands in no circle.
  for (bool found = true; found;) {
    found = false;
    for (auto user = uses.begin(); user != uses.end();) {
      std::erase_if(user->second, [&](const std::string& used) { return !uses.contains(used); });
      const bool free = user->second.empty();
      found |= free;
      user = free ? uses.erase(user) : std::next(user);
    }
  }
  for (const auto& [user, used] : uses) {
    ADD_FAILURE() << user << " stands in a circle or above one, by " << *used.begin();
  }
}

TEST(Layering, OnlyTheQtRoomKnowsQt) {
  const std::regex include("^\\s*#\\s*include\\s*[<\"]Q[A-Z]");
  ForEachProductLine([&](const std::string& path, int number, const std::string& line) {
    if (line.find('#') == line.npos || !std::regex_search(line, include)) return;
    EXPECT_TRUE(RoomOf(path) == "qt" || path.rfind("program/gui", 0) == 0) << path << ":" << number;
  });
}

TEST(Layering, TimeThreadsAndLocaleStayWithTheHost) {
  const std::regex clock(
      "steady_clock|system_clock|high_resolution_clock|sleep_for|std::thread|std::async|usleep|"
      "GetTickCount\\(|[^a-z_]time\\(nullptr\\)");
  const std::regex locale("std::locale|setlocale|\\bstrtod\\b|\\bstod\\(|\\batof\\(|\\bsscanf\\b");
  ForEachProductLine([&](const std::string& path, int number, const std::string& line) {
    const std::string room = RoomOf(path);
    const std::string code = line.substr(0, line.find("//"));
    if (room != "host/native" && room != "qt") {
      EXPECT_FALSE(std::regex_search(code, clock)) << path << ":" << number << ": " << line;
    }
    // The toolkit sets the program's locale; the graphical program sets it back.
    if (room != "qt" && path.rfind("program/gui", 0) != 0) {
      EXPECT_FALSE(std::regex_search(code, locale)) << path << ":" << number << ": " << line;
    }
  });
}

}  // namespace
