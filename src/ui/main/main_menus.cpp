#include "ui/main/main_menus.h"

#include <cstddef>
#include <iterator>
#include <utility>

#include "core/track_file.h"
#include "exchange/exporters.h"
#include "host/desktop.h"
#include "host/host.h"

namespace zento {
namespace {

struct MenuRow {
  const char* name;
  const char* menu;
  const char* caption;
  const char* shortcut;
  const char* window;  // null: an action of the main window
  bool separator_before = false;
};

// Copying and pasting leave Ctrl+C and Ctrl+V to the text boxes. Entries of an exporter have its
// caption; one that has no row here comes last in its menu.
constexpr MenuRow kRows[] = {
    {"mnuOpen", "File", "Open", "Ctrl+O", nullptr},
    {"mnuSaveAs", "File", "Save as", "Ctrl+S", nullptr},
    {"mnuImportTrack", "File", "Import Track", "Ctrl+I", "frmImportTrack", true},
    {"mnuSearchTrack", "File", "Search Track", "Ctrl+F", "frmSearchTrack"},
    {"mnuRecent0", "File", "", "", nullptr, true},
    {"mnuRecent1", "File", "", "", nullptr},
    {"mnuRecent2", "File", "", "", nullptr},
    {"mnuRecent3", "File", "", "", nullptr},
    {"mnuRecent4", "File", "", "", nullptr},
    {"mnuRecent5", "File", "", "", nullptr},
    {"mnuRecent6", "File", "", "", nullptr},
    {"mnuRecent7", "File", "", "", nullptr},
    {"mnuRecent8", "File", "", "", nullptr},
    {"mnuRecent9", "File", "", "", nullptr},
    {"mnuQuit", "File", "Quit", "Ctrl+Q", nullptr, true},

    {"mnuUndo", "Edit", "Undo", "Ctrl+Z", nullptr},
    {"mnuRedo", "Edit", "Redo", "Ctrl+Y", nullptr},
    {"mnuCopyAll", "Edit", "", "Ctrl+Shift+C", nullptr, true},
    {"mnuCopyOnlyExpData", "Edit", "", "Ctrl+Shift+D", nullptr},
    {"mnuReplaceTitle", "Edit", "Replace words in each title", "Ctrl+H", "frmReplaceTitle"},
    {"mnuSpecialCopy", "Edit", "Special Copy", "", "frmSpecialCopy"},
    {"mnuEditTracks", "Edit", "Edit Tracks", "Ctrl+T", "frmEditTracks", true},
    {"mnuEditATrack", "Edit", "Edit a Track", "Ctrl+Shift+E", "frmEditATrack"},
    {"mnuDeleteTrack", "Edit", "Delete Track", "Ctrl+Del", nullptr},
    {"mnuPastefromClip", "Edit", "Paste from Clipboard", "Ctrl+Shift+V", nullptr, true},
    {"mnuCopyI_ttable", "Edit", "", "", nullptr},
    {"mnuCopyV_ITable", "Edit", "", "", nullptr},

    {"mnuCV", "Measurement", "Cyclic Voltammogram", "Ctrl+1", "frmMeasureCV"},
    {"mnuRDE", "Measurement", "RDE", "Ctrl+2", "frmMeasureRDE"},
    {"mnuPotentialStep", "Measurement", "Potential Step", "Ctrl+3", "frmPotentialStep"},
    {"mnuRPMvsj", "Measurement", "RPM vs. i", "Ctrl+4", "frmMeasureRPMvsj"},
    {"mnuMultipotentiostat", "Measurement", "Multipotentiostat", "Ctrl+5", "frmMultipotentiostat"},

    {"mnuFFTFilter", "Calculation", "FFT Filter", "", "frmFFTFilter"},
    {"mnuSmoothing", "Calculation", "Smoothing", "", "frmSmoothing"},
    {"mnuCalculation", "Calculation", "Calculation", "", "frmCalculation"},

    {"mnuKouteckyLevich", "Analysis", "Koutecky-Levich Analysis", "Ctrl+Shift+K",
     "frmKoutecky_Levich"},
    {"mnuRDAO2", "Analysis", "%H2O Analysis(O2 reduction)", "", "frmO2Reduction"},
    {"mnuCottrellEquation", "Analysis", "Cottrell Equation Analysis", "", "frmCottrellEquation"},
    {"mnuCoulombCalculation", "Analysis", "Coulomb Number Calculation", "", "frmCoulombCalculator"},
    {"mnuTafelAnalysis", "Analysis", "Tafel Analysis", "", "frmTafelAnalyzer"},

    {"mnuPowerControl", "Tool", "Power Control", "Ctrl+P", "frmPower"},
    {"mnuMacro", "Tool", "Macro", "Ctrl+M", "frmMacro"},
    {"mnuAdjustRPM", "Tool", "Adjust RPM", "Ctrl+R", "frmAdjustRPM"},

    {"mnuSettings", "Option", "Settings", "Ctrl+,", "frmSettings"},
};

std::string RecentName(std::size_t place) {
  return "mnuRecent" + std::to_string(place);
}

}  // namespace

MainMenus::MainMenus(Form& form) : form_(form) {
  entries_.reserve(std::size(kRows));
  for (const MenuRow& row : kRows) {
    MenuItem& entry = Add(row.name, row.menu, row.caption, row.shortcut);
    entry.separator_before = row.separator_before;
    if (row.window == nullptr) continue;
    windows_[&entry] = row.window;
    entry.on_click = [&form, window = row.window] { form.host().desktop.Show(window); };
  }
  for (const Exporter& exporter : Exporters()) {
    if (exporter.menu_entry.empty()) continue;
    MenuItem* entry = Find(exporter.menu_entry);
    if (entry == nullptr) entry = &Add(exporter.menu_entry, "Edit", {}, {});
    entry->SetCaption(std::string(exporter.caption));
  }
}

MenuItem& MainMenus::Add(std::string_view name, const char* menu, std::string caption,
                          std::string shortcut) {
  entries_.push_back(std::make_unique<MenuItem>(form_, std::string(name), menu, std::move(caption),
                                                 std::move(shortcut)));
  entries_.back()->SetEnabled(false);
  return *entries_.back();
}

MenuItem* MainMenus::Find(std::string_view name) const {
  for (const std::unique_ptr<MenuItem>& entry : entries_) {
    if (entry->name() == name) return entry.get();
  }
  return nullptr;
}

void MainMenus::SetAction(std::string_view name, const std::function<void()>& action) {
  if (MenuItem* entry = Find(name)) entry->on_click = action;
}

void MainMenus::Offer(std::string_view name, const std::string& caption, bool usable) {
  MenuItem* entry = Find(name);
  if (entry == nullptr) return;
  entry->SetCaption(caption);
  entry->SetEnabled(usable);
}

void MainMenus::SetRecentAction(const std::function<void(std::size_t place)>& action) {
  for (std::size_t place = 0; MenuItem* entry = Find(RecentName(place)); ++place) {
    entry->on_click = [action, place] { action(place); };
  }
}

void MainMenus::ShowRecent(std::size_t place, const std::string& caption, const std::string& tip) {
  MenuItem* entry = Find(RecentName(place));
  if (entry == nullptr) return;
  entry->SetCaption(caption);
  entry->SetTip(tip);
  entry->SetVisible(!caption.empty());
  entry->SetEnabled(!caption.empty());
}

void MainMenus::EnableUsable() {
  const Desktop& desktop = form_.host().desktop;
  for (const std::unique_ptr<MenuItem>& entry : entries_) {
    const auto window = windows_.find(entry.get());
    entry->SetEnabled(window != windows_.end() ? desktop.Knows(window->second)
                                               : static_cast<bool>(entry->on_click));
  }
}

}  // namespace zento
