// Track files that come to the main window without a dialog: the last ones, and dropped ones.

#include <algorithm>
#include <string>

#include "core/track_file.h"
#include "host/host.h"
#include "host/path_text.h"
#include "host/services.h"
#include "text/status.h"
#include "ui/main/control_panel.h"

namespace zento {
namespace {

bool IsNamedAsTrackFile(const std::filesystem::path& path) {
  std::string extension = TextFromPath(path.extension());
  std::ranges::transform(extension, extension.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return extension == kTrackFileExtension;
}

}  // namespace

void frmControlPanel::ShowRecent() {
  const auto& paths = recent_.paths();
  for (std::size_t place = 0; place < RecentFiles::kMost; ++place) {
    const bool there = place < paths.size();
    menus_.ShowRecent(place, there ? RecentCaption(place, paths[place]) : std::string(),
                      there ? TextFromPath(paths[place]) : std::string());
  }
}

void frmControlPanel::Remember(const std::filesystem::path& path) {
  const Status remembered = recent_.Add(path);
  if (!remembered.ok()) lblNotice.SetText(lblNotice.text() + " - " + remembered.why());
  ShowRecent();
}

void frmControlPanel::OpenRecent(std::size_t place) {
  if (place >= recent_.paths().size()) return;
  const std::filesystem::path path = recent_.paths()[place];
  if (host().files.Exists(path)) {
    OpenFile(path);
    return;
  }
  std::string notice = "NOT OPENED: " + TextFromPath(path) + " is no longer there";
  const Status remembered = recent_.Remove(path);
  if (!remembered.ok()) notice += " - " + remembered.why();
  lblNotice.SetText(std::move(notice));
  ShowRecent();
}

void frmControlPanel::FilesDropped(const std::vector<std::filesystem::path>& files) {
  const auto first = std::ranges::find_if(files, IsNamedAsTrackFile);
  if (first == files.end()) {
    lblNotice.SetText("NOT OPENED: " + TextFromPath(files.front()) +
                      (files.size() == 1 ? " is no track file (.znt)"
                                         : " and the others are no track files (.znt)"));
    return;
  }
  OpenFile(*first);
  const std::size_t others = files.size() - 1;
  if (others == 0) return;
  lblNotice.SetText(lblNotice.text() + " - one file at a time: " + std::to_string(others) +
                    (others == 1 ? " other was" : " others were") + " not opened");
}

}  // namespace zento
