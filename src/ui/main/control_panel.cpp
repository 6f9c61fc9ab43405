#include "ui/main/control_panel.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "core/reference_scale.h"
#include "core/settings_file.h"
#include "core/tables.h"
#include "core/track_file.h"
#include "core/track_history.h"
#include "core/track_store.h"
#include "devices/rotation.h"
#include "exchange/exporters.h"
#include "exchange/information_sheet.h"
#include "exchange/paste_text.h"
#include "host/desktop.h"
#include "host/dialogs.h"
#include "host/host.h"
#include "host/path_text.h"
#include "host/services.h"
#include "text/number.h"

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

constexpr int kDiskColumn = 1;
constexpr int kRingColumn = 2;
constexpr char kConversion[] = "Reference conversion";

FileQuestion TrackFileQuestion(bool save, std::string title, std::filesystem::path folder) {
  FileQuestion question;
  question.save = save;
  question.title = std::move(title);
  question.folder = std::move(folder);
  question.description = "Track files";
  question.pattern = "*.znt";
  return question;
}

std::string Notice(const TrackFileLoad& load, const std::filesystem::path& path) {
  using Outcome = TrackFileLoad::Outcome;
  if (load.outcome == Outcome::kUnreadable) return "NOT OPENED: " + load.status.why();
  if (load.outcome == Outcome::kBrokenOff) return "ONLY PARTLY READ: " + load.status.why();
  std::string notice = "Opened " + TextFromPath(path);
  if (!load.remarks.empty()) notice += " - " + load.remarks.front();
  if (load.remarks.size() > 1) notice += " (and more)";
  return notice;
}

bool IsNamedAsTrackFile(const std::filesystem::path& path) {
  std::string extension = TextFromPath(path.extension());
  std::ranges::transform(extension, extension.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return extension == kTrackFileExtension;
}

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
  for (const Exporter& exporter : Exporters()) {
    menus_.SetAction(exporter.menu_entry, [this, &exporter] { Copy(exporter); });
  }
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
  const bool filled = !record.IsEmpty();
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

// The track that is shown: its header values, its reference electrode, its removal.

void frmControlPanel::TakeBack() {
  const std::string name = workstation_.history.UndoName();
  ShowChanged("Undone: " + name, workstation_.history.Undo(workstation_.tracks));
}

void frmControlPanel::DoAgain() {
  const std::string name = workstation_.history.RedoName();
  ShowChanged("Done again: " + name, workstation_.history.Redo(workstation_.tracks));
}

void frmControlPanel::ShowChanged(const std::string& what,
                                  const Result<std::vector<int>>& changed) {
  lblNotice.SetText(changed.ok() ? what : changed.why());
  if (!changed.ok()) return;
  // Other windows read their tracks anew, as after opening a file.
  ++workstation_.DataGeneration;
  const std::vector<int>& tracks = changed.value();
  const bool shown = std::ranges::find(tracks, track_) != tracks.end();
  ShowDataInfo(shown || tracks.empty() ? track_ : tracks.front());
}

void frmControlPanel::ShowHistory() {
  const auto offer = [this](const char* entry, const std::string& verb, const std::string& name) {
    menus_.Offer(entry, name.empty() ? verb : verb + " " + name, !name.empty());
  };
  offer("mnuUndo", "Undo", workstation_.history.UndoName());
  offer("mnuRedo", "Redo", workstation_.history.RedoName());
}

void frmControlPanel::SelectSheetRow(int row) {
  if (row < 0 || row >= kSheetRows) return;
  sheet_row_ = row;
  InformationSheet.SelectRow(row);
  txtEditField.SetText(InformationSheet.Cell(row, 1));
  Focus(txtEditField);
}

void frmControlPanel::StoreEditField() {
  if (!SheetRowEditable(sheet_row_)) return;
  const TrackChange change(workstation_, "Edit of " + std::string(SheetLabel(sheet_row_)),
                           {track_});
  TrackRecord& record = workstation_.tracks.Record(track_);
  const double previous = sheet_row_ == kSheetDiskYScale ? record.DiskYscale : record.RingYscale;
  SetSheetValue(sheet_row_, record, txtEditField.text());
  SetCell(sheet_row_, 1, SheetValue(sheet_row_, record));
  if (sheet_row_ == kSheetTitle) lblTrackTitle.SetText(record.Title);
  // The vertices tell the preview where cycles end.
  if (sheet_row_ >= kSheetV1st && sheet_row_ <= kSheetV3rd) DrawPreview(track_);
  if (sheet_row_ == kSheetDiskYScale || sheet_row_ == kSheetRingYScale) {
    OfferRescaling(sheet_row_, previous);
  }
}

void frmControlPanel::OfferRescaling(int row, double previous) {
  const TrackRecord& record = workstation_.tracks.Record(track_);
  const bool disk = row == kSheetDiskYScale;
  const double ratio = (disk ? record.DiskYscale : record.RingYscale) / previous;
  // A scale that was or is 0 has no sensible ratio, and one of 0 would wipe the currents out.
  if (!std::isfinite(ratio) || ratio == 0) return;
  host().dialogs.Ask("Do you want to multiply " + std::string(disk ? "disk" : "ring") +
                         " current by " + PlainNumber(ratio) + "?",
                     Buttons::kYesNo,
                     [&desktop = host().desktop, track = track_, ratio,
                      column = disk ? kDiskColumn : kRingColumn](bool yes) {
                       frmControlPanel* panel = yes ? In(desktop) : nullptr;
                       if (panel != nullptr) panel->Rescale(track, column, ratio);
                     });
}

void frmControlPanel::Rescale(int track, int column, double ratio) {
  const TrackChange change(workstation_, "Multiplication by " + PlainNumber(ratio, 6), {track});
  TrackStore& tracks = workstation_.tracks;
  for (std::int32_t i = 0; i < tracks.PointCount(track); ++i) {
    tracks.SetValue(column, track, i, tracks.Value(column, track, i) * ratio);
  }
  if (track == track_) DrawPreview(track);
}

void frmControlPanel::ChooseReference(int index) {
  TrackRecord& record = workstation_.tracks.Record(track_);
  if (!HasReferencedPotentials(record) || index == record.ref) {
    cbxReference.Select(record.IsEmpty() ? 0 : record.ref);
    return;
  }
  host().dialogs.Ask("Do you want to convert potential?", Buttons::kYesNo,
                     [&desktop = host().desktop, track = track_, index](bool yes) {
                       frmControlPanel* panel = In(desktop);
                       if (panel == nullptr) return;
                       if (yes) {
                         panel->AskForPH(track, index);
                       } else {
                         const TrackChange change(panel->workstation_, "Choice of reference",
                                                  {track});
                         panel->workstation_.tracks.Record(track).ref = index;
                       }
                     });
}

void frmControlPanel::AskForPH(int track, std::int32_t ref) {
  TrackRecord& record = workstation_.tracks.Record(track);
  if (record.ref != kReferenceRHE && ref != kReferenceRHE) {
    Convert(track, ref);
    return;
  }
  host().dialogs.AskText(
      {"Please input pH of the solution.", "pH of the solution", PlainNumber(record.pH)},
      [&desktop = host().desktop, track, ref](const std::optional<std::string>& answer) {
        frmControlPanel* panel = In(desktop);
        if (panel == nullptr) return;
        if (answer) {
          const TrackChange change(panel->workstation_, kConversion, {track});
          panel->workstation_.tracks.Record(track).pH = ParseLenient(*answer);
          panel->Convert(track, ref);
        } else if (track == panel->track_) {
          panel->cbxReference.Select(panel->workstation_.tracks.Record(track).ref);
        }
      });
}

void frmControlPanel::Convert(int track, std::int32_t ref) {
  // The track may have been replaced while the question stood on the screen.
  if (!HasReferencedPotentials(workstation_.tracks.Record(track))) return;
  const TrackChange change(workstation_, kConversion, {track});
  ConvertReference(workstation_.tracks, track, ref);
  if (track == track_) ShowDataInfo(track);
}

void frmControlPanel::AskToDelete() {
  host().dialogs.Ask("Would you like to delete the present track?", Buttons::kOkCancel,
                     [&desktop = host().desktop, track = track_](bool ok) {
                       frmControlPanel* panel = ok ? In(desktop) : nullptr;
                       if (panel == nullptr) return;
                       {
                         const TrackChange change(panel->workstation_,
                                                  "Removal of track " + std::to_string(track),
                                                  {track});
                         panel->workstation_.tracks.ClearTrack(track);
                       }
                       if (track == panel->track_) panel->ShowDataInfo(track);
                     });
}

// Tracks and other programs, through the clipboard.

void frmControlPanel::Copy(const Exporter& exporter) {
  auto job = StartExport(exporter, {workstation_.tracks, track_, workstation_.FileTitle});
  // An empty track, or one of another mode than the format's: the clipboard stays as it is.
  if (!job.ok()) return;
  copy_.Start(std::move(job.value()), [this, track = track_](bool copied) {
    lblNotice.SetText(copied ? "Copied track " + std::to_string(track) + " to the clipboard"
                             : "Copying was ended; the clipboard is as it was");
  });
}

void frmControlPanel::PasteFromClipboard() {
  const std::string text = host().clipboard.Text();
  if (text.empty()) return;
  const TrackChange change(workstation_, "Paste", {track_});
  const Pasted pasted = PasteText(text, workstation_.tracks, track_);
  if (pasted.has_mode) ShowDataInfo(track_);
  lblNotice.SetText(PasteNotice(pasted, track_));
}

// Track files.

void frmControlPanel::AskToOpen() {
  host().dialogs.AskFile(
      TrackFileQuestion(false, "Open", recent_.Folder()),
      [&desktop = host().desktop](const std::optional<std::filesystem::path>& path) {
        frmControlPanel* panel = path ? In(desktop) : nullptr;
        if (panel != nullptr) panel->OpenFile(*path);
      });
}

// Opening replaces all tracks; those that stand in no file yet are kept in the home first.
TrackFileLoad frmControlPanel::OpenFile(const std::filesystem::path& path) {
  const auto rescued = RescueTracks(workstation_, host().files);
  if (!rescued.ok()) {
    TrackFileLoad refused;
    refused.outcome = TrackFileLoad::Outcome::kUnreadable;
    refused.status = rescued.status().Within("keep the unsaved tracks");
    lblNotice.SetText(Notice(refused, path));
    return refused;
  }
  TrackFileLoad load = OpenTracks(workstation_, host().files, path);
  if (load.outcome == TrackFileLoad::Outcome::kNotRecognized) {
    host().dialogs.Message("This file type is not recognized.");
    return load;
  }
  std::string notice = Notice(load, path);
  if (rescued.value()) notice += " - unsaved before: " + TextFromPath(*rescued.value());
  const bool running = workstation_.running_flag != 0 || workstation_.macro_active;
  if (running && load.outcome != TrackFileLoad::Outcome::kUnreadable) {
    notice += " - what runs now will be stored among these tracks";
  }
  lblNotice.SetText(std::move(notice));
  if (!load.complete()) return load;
  ShowCaption();
  ShowDataInfo(0);
  Remember(path);
  return load;
}

void frmControlPanel::AskToSave() {
  FileQuestion question = TrackFileQuestion(true, "Save as", recent_.Folder());
  question.suggested = workstation_.FileTitle;
  host().dialogs.AskFile(
      question, [&desktop = host().desktop](const std::optional<std::filesystem::path>& path) {
        frmControlPanel* panel = path ? In(desktop) : nullptr;
        if (panel != nullptr) panel->ConfirmSave(*path);
      });
}

// The save dialog asks before it overwrites, but knows nothing of an extension that is added to the
// name afterwards.
void frmControlPanel::ConfirmSave(const std::filesystem::path& path) {
  const std::filesystem::path file = TrackFileName(path);
  if (file == path || !host().files.Exists(file)) {
    static_cast<void>(SaveFile(path));
    return;
  }
  host().dialogs.Ask(TextFromPath(file.filename()) + " already exists. Do you want to replace it?",
                     Buttons::kYesNo, [&desktop = host().desktop, file](bool yes) {
                       frmControlPanel* panel = yes ? In(desktop) : nullptr;
                       if (panel != nullptr) static_cast<void>(panel->SaveFile(file));
                     });
}

Status frmControlPanel::SaveFile(const std::filesystem::path& path) {
  Status saved = SaveTracksAs(workstation_, host().files, path);
  lblNotice.SetText(saved.ok() ? "Saved " + TextFromPath(TrackFileName(path))
                               : "NOT SAVED: " + saved.why());
  if (!saved.ok()) return saved;
  ShowCaption();
  Remember(TrackFileName(path));
  return saved;
}

// Track files that come without a dialog: the last ones, and dropped ones.

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
