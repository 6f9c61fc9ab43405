#include "ui/main/control_panel.h"

#include <utility>

#include "core/settings_file.h"
#include "core/tables.h"
#include "core/track_history.h"
#include "core/track_store.h"
#include "devices/rotation.h"
#include "host/desktop.h"
#include "host/host.h"
#include "text/number.h"
#include "ui/main/information_sheet.h"

namespace zento {
namespace {

constexpr char kName[] = "frmControlPanel";

std::string CaptionFor(const std::string& file_title) {
  return file_title.empty() ? "ZENTO" : "ZENTO --" + file_title;
}

// Closed first, in this order, when the program ends.
constexpr const char* kClosedFirst[] = {"Graph1",           "Graph2",
                                        "frmMeasureCV",     "frmMeasureRDE",
                                        "frmPotentialStep", "frmMeasureRPMvsj",
                                        "frmFFTFilter",     "frmKoutecky_Levich",
                                        "frmO2Reduction",   "frmCottrellEquation"};

}  // namespace

frmControlPanel::frmControlPanel(Workstation& workstation, Host& host, Instruments& instruments)
    : Form(host, kName, CaptionFor(workstation.FileTitle)),
      InformationSheet(*this, "InformationSheet", kSheetRows, 2),
      workstation_(workstation),
      instruments_(instruments),
      menus_(*this),
      copy_(host),
      recent_(host.files, workstation.home) {
  txtDatNum.read_only = true;
  txtDatNum.SetTip("The track that is shown, 0 to 20");
  UpDown1.SetTip("Previous or next track");
  txtEditField.SetTip("The chosen row's value; Enter stores it");
  InformationSheet.first_column_is_label = true;
  InformationSheet.column_widths = {0, -1};
  UpDown1.on_up = [this] { StepTrack(+1); };
  UpDown1.on_down = [this] { StepTrack(-1); };
  InformationSheet.on_click = [this](int row, int) { SelectSheetRow(row); };
  txtEditField.on_key = [this](Key key) {
    if (key.code == KeyCode::kEnter) StoreEditField();
  };
  cbxReference.on_select = [this](int index) { ChooseReference(index); };
  menus_.SetAction("mnuOpen", [this] { AskToOpen(); });
  menus_.SetAction("mnuSaveAs", [this] { AskToSave(); });
  menus_.SetAction("mnuQuit", [this] { CloseRequested(); });
  menus_.SetAction("mnuUndo", [this] { TakeBack(); });
  menus_.SetAction("mnuRedo", [this] { DoAgain(); });
  menus_.SetAction("mnuDeleteTrack", [this] { AskToDelete(); });
  menus_.SetAction("mnuCopyAll", [this] { CopyAll(); });
  menus_.SetAction("mnuCopyOnlyExpData", [this] { CopyOnlyExpData(); });
  menus_.SetAction("mnuCopyI_ttable", [this] { CopyItTable(); });
  menus_.SetAction("mnuCopyV_ITable", [this] { CopyVITable(); });
  menus_.SetAction("mnuPastefromClip", [this] { PasteFromClipboard(); });
  menus_.SetRecentAction([this](std::size_t place) { OpenRecent(place); });
}

bool frmControlPanel::Load() {
  for (int track = 0; track < kTracks; ++track) workstation_.tracks.ClearTrack(track);
  for (int row = 0; row < kSheetRows; ++row) SetCell(row, 0, std::string(SheetLabel(row)));
  LoadSettings(workstation_, host().files, [this](const std::filesystem::path&) {
    return LoadCalibration(workstation_, host());
  });
  if (!workstation_.SettingsLoaded) ApplyDefaultSettings(workstation_);
  cbxReference.SetItems({RefName.begin(), RefName.end()});
  menus_.EnableUsable();
  ShowRecent();
  workstation_.history.on_change = [this] { ShowHistory(); };
  workstation_.history.Clear();
  workstation_.show_data_info = [this](int track) { ShowDataInfo(track); };
  ShowDataInfo(0);
  return true;
}

void frmControlPanel::Unload() {
  copy_.GiveUp();
  workstation_.show_data_info = nullptr;
  workstation_.history.on_change = nullptr;
  instruments_.Release();
  // Nobody is left to be told of a failure; the file is as it was then.
  static_cast<void>(SaveSettings(workstation_, host().files));
  CloseOtherWindows();
}

void frmControlPanel::CloseOtherWindows() {
  Desktop& desktop = host().desktop;
  for (const char* name : kClosedFirst) desktop.Unload(name);
  // A window may close others as it goes.
  for (auto open = desktop.Loaded(); !open.empty(); open = desktop.Loaded()) {
    const std::string name = open.back()->name();
    desktop.Unload(name);
  }
}

void frmControlPanel::CloseRequested() {
  // Copies: what ends takes its function away. The macro goes first, or it would take its next
  // line.
  if (const auto end_macro = workstation_.end_active_macro) end_macro();
  if (const auto end_run = workstation_.end_active_run) end_run();
  Desktop& desktop = host().desktop;
  // Nobody watches a motor that was left turning, by hand or by a macro. Outlets that were never
  // touched are not touched now.
  if (instruments_.outlets.InUse()) instruments_.rotation.SwitchMotor(false);
  desktop.Unload(kName);
  if (desktop.on_quit) desktop.on_quit();
}

void frmControlPanel::Activate() {
  const auto style = static_cast<PreviewStyle>(workstation_.settings.PrevGraphDrawSetting);
  if (style != drawn_style_) DrawPreview(track_);
}

LayoutNode frmControlPanel::Layout() {
  using namespace layout;
  return Rows({
      Columns({Rows({Fields({Field("Track", txtDatNum, &UpDown1)}), Item(InformationSheet, 1),
                     Fields({Field("Value", txtEditField), Field("Reference", cbxReference)})},
                    1),
               Rows({Item(lblTrackTitle), Item(PrevGraph, 1)}, 2)},
              1),
      Item(lblNotice),
  });
}

frmControlPanel* frmControlPanel::In(Desktop& desktop) {
  return desktop.FindAs<frmControlPanel>(kName);
}

void frmControlPanel::StepTrack(int direction) {
  ShowDataInfo((track_ + direction + kTracks) % kTracks);
}

void frmControlPanel::ShowDataInfo(int track) {
  if (track < 0 || track >= kTracks) return;
  const TrackRecord& record = workstation_.tracks.Record(track);
  const bool filled = record.Mode != kModeNone;
  track_ = track;
  workstation_.shown_track = track;
  InformationSheet.SetRedraw(false);
  txtDatNum.SetText(std::to_string(track));
  for (int row = 0; row < kSheetRows; ++row) {
    SetCell(row, 1, filled ? SheetValue(row, record) : std::string());
  }
  lblTrackTitle.SetText(filled ? record.Title : std::string());
  cbxReference.Select(filled ? record.ref : 0);
  InformationSheet.SetRedraw(true);
  range_ = RangeOf(workstation_.tracks, track);
  DrawPreview(track);
}

void frmControlPanel::SetSize(int width, int height) {
  Geometry wanted = geometry();
  wanted.width = width;
  wanted.height = height;
  RequestGeometry(wanted);
}

void frmControlPanel::SetCell(int row, int column, std::string text) {
  InformationSheet.SetCell(row, column, std::move(text));
}

void frmControlPanel::DrawPreview(int track) {
  drawn_style_ =
      workstation_.settings.PrevGraphDrawSetting == 1 ? PreviewStyle::kDots : PreviewStyle::kLines;
  DrawTrack(PrevGraph, workstation_.tracks, track, range_, drawn_style_);
}

void frmControlPanel::ShowCaption() {
  SetCaption(CaptionFor(workstation_.FileTitle));
}

}  // namespace zento
