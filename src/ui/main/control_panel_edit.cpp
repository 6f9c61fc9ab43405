// The main window's questions about the track that is shown: its header values, its reference
// electrode, its removal.

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "core/tables.h"
#include "core/track_history.h"
#include "core/track_store.h"
#include "host/dialogs.h"
#include "host/host.h"
#include "text/number.h"
#include "text/status.h"
#include "ui/main/control_panel.h"
#include "ui/main/information_sheet.h"
#include "ui/main/reference_scale.h"

namespace zento {
namespace {

constexpr int kDiskColumn = 1;
constexpr int kRingColumn = 2;
constexpr char kConversion[] = "Reference conversion";

}  // namespace

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
    cbxReference.Select(record.Mode == kModeNone ? 0 : record.ref);
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

}  // namespace zento
