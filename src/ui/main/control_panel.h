#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "devices/instruments.h"
#include "graph/preview_plot.h"
#include "graph/track_preview.h"
#include "host/controls.h"
#include "host/file_target.h"
#include "host/form.h"
#include "ui/main/clipboard_copy.h"
#include "ui/main/main_menus.h"
#include "ui/main/recent_files.h"

namespace zento {

struct TrackFileLoad;
struct Exporter;

// frmControlPanel, the main window: one track at a time with its header and a preview, and the
// menus that open every other window. While it is loaded the program runs: loading it reads the
// settings, closing it ends an active run safely, writes them and closes all other windows.
class frmControlPanel : public Form, public FileTarget {
 public:
  frmControlPanel(Workstation& workstation, Host& host, Instruments& instruments);

  bool Load() override;
  void Unload() override;
  // Draws the preview again when its style was changed elsewhere.
  void Activate() override;
  void CloseRequested() override;
  LayoutNode Layout() override;
  // Opens the first of the files that is named as a track file.
  void FilesDropped(const std::vector<std::filesystem::path>& files) override;

  // Makes the track, 0 to 20, the current one and shows it; others are ignored.
  void ShowDataInfo(int track);
  int current_track() const { return track_; }
  // The window's inner size in device-independent pixels.
  void SetSize(int width, int height);
  void SetCell(int row, int column, std::string text);
  void DrawPreview(int track);

  // The menu's "Open" and "Save as", behind their questions.
  TrackFileLoad OpenFile(const std::filesystem::path& path);
  Status SaveFile(const std::filesystem::path& path);

  // The current track as text on the clipboard; nothing when the format is not for it.
  void Copy(const Exporter& exporter);
  // Rebuilds the current track from the clipboard's text.
  void PasteFromClipboard();

  TextBox txtDatNum{*this, "txtDatNum", "0"};
  UpDown UpDown1{*this, "UpDown1"};
  Grid InformationSheet;
  TextBox txtEditField{*this, "txtEditField"};
  ComboBox cbxReference{*this, "cbxReference"};
  Label lblTrackTitle{*this, "lblTrackTitle"};
  PreviewPlot PrevGraph{*this, "PrevGraph", {620, 460}};
  // What became of the last file operation. Nothing of it is told in a message box, so that an
  // unattended run is never held up; a failed save must be seen all the same.
  Label lblNotice{*this, "lblNotice"};

 private:
  // The window as a continuation finds it: null when it is gone by then.
  static frmControlPanel* In(Desktop& desktop);
  void StepTrack(int direction);
  void ShowCaption();

  void TakeBack();
  void DoAgain();
  // Shows the tracks that were taken back or done again, or why they were not.
  void ShowChanged(const std::string& what, const Result<std::vector<int>>& changed);
  void ShowHistory();

  void SelectSheetRow(int row);
  void StoreEditField();
  void OfferRescaling(int row, double previous);
  void Rescale(int track, int column, double ratio);

  void ChooseReference(int index);
  void AskForPH(int track, std::int32_t ref);
  void Convert(int track, std::int32_t ref);

  void AskToOpen();
  void AskToSave();
  void ConfirmSave(const std::filesystem::path& path);
  void AskToDelete();
  void CloseOtherWindows();

  void Remember(const std::filesystem::path& path);
  void OpenRecent(std::size_t place);
  void ShowRecent();

  Workstation& workstation_;
  Instruments& instruments_;
  MainMenus menus_;
  ClipboardCopy copy_;
  RecentFiles recent_;
  int track_ = 0;
  int sheet_row_ = -1;
  DisplayRange range_;
  PreviewStyle drawn_style_ = PreviewStyle::kLines;
};

}  // namespace zento
