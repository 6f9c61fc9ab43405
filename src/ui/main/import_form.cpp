#include "ui/main/import_form.h"

#include <cstddef>
#include <string>
#include <utility>

#include "core/tables.h"
#include "host/desktop.h"
#include "host/dialogs.h"
#include "host/host.h"
#include "host/path_text.h"
#include "text/number.h"
#include "ui/main/file_lists.h"
#include "ui/main/recent_files.h"

namespace zento {
namespace {

constexpr char kName[] = "frmImportTrack";
constexpr int kRows = kTracks + 1;
constexpr const char* kColumns[] = {"Track", "Mode", "Title", "RPM", "scanrate", "Time"};
constexpr int kColumnCount = static_cast<int>(std::size(kColumns));
constexpr int kDigits = 15;

}  // namespace

frmImportTrack::frmImportTrack(Workstation& workstation, Host& host, LastFolder last)
    : Form(host, kName, "Import Track"),
      lists(*this, std::move(last), StartFolder(host.files, workstation.home)),
      fgcDataSheet(*this, "fgcDataSheet", kRows, kColumnCount),
      workstation_(workstation) {
  fgcDataSheet.column_widths = {50, 70, -1, 70, 70, 140};
  for (int column = 0; column < kColumnCount; ++column) {
    fgcDataSheet.SetCell(0, column, kColumns[column]);
  }
  cmdImport.is_default = true;
  cmdClose.is_cancel = true;
  lists.on_folder = [this] { ShowNothing(); };
  lists.on_file = [this] { File1_Click(); };
  fgcDataSheet.on_click = [this](int row, int) { SelectRow(row); };
  cmdImport.on_click = [this] { cmdImport_Click(); };
  cmdClose.on_click = [&desktop = host.desktop] { desktop.Unload(kName); };
}

bool frmImportTrack::Load() {
  ShowNothing();
  lists.Begin();
  ShowTarget();
  return true;
}

void frmImportTrack::Activate() {
  lists.Refresh();
  ShowTarget();
}

LayoutNode frmImportTrack::Layout() {
  using namespace layout;
  return Columns({lists.Layout(), Rows({Item(fgcDataSheet, 1), Item(PrevGraph, 1), Item(lblNotice),
                                        Columns({Stretch(), Item(cmdImport), Item(cmdClose)})},
                                       3)});
}

void frmImportTrack::ShowTarget() {
  cmdImport.SetTip("Copies the chosen track into track " + PlainNumber(workstation_.shown_track) +
                   ", which the main window shows");
}

void frmImportTrack::ShowNothing() {
  path_.clear();
  recognized_ = false;
  headers_ = {};
  lblNotice.SetText("");
  ShowSheet();
}

void frmImportTrack::File1_Click() {
  ShowNothing();
  path_ = lists.file();
  const TrackFileLoad load = ReadTrackHeaders(host().files, path_, headers_);
  recognized_ = load.complete();
  lblNotice.SetText(!recognized_           ? load.status.why()
                    : load.remarks.empty() ? ""
                                           : load.remarks.front());
  ShowSheet();
}

// The records that hold a track; no row is chosen.
void frmImportTrack::ShowSheet() {
  selected_ = -1;
  fgcDataSheet.SetRedraw(false);
  fgcDataSheet.SelectRow(-1);
  for (int track = 0; track < kTracks; ++track) {
    const TrackRecord& record = headers_[static_cast<std::size_t>(track)];
    std::string cells[kColumnCount] = {" ", " ", " ", " ", " ", " "};
    if (!record.IsEmpty()) {
      cells[0] = PlainNumber(track);
      cells[1] = AtOrNone(ModeName, record.Mode);
      cells[2] = record.Title;
      cells[3] = PlainNumber(record.RPM, kDigits);
      cells[4] = PlainNumber(record.Scanrate, kDigits);
      cells[5] = record.MeasTime;
    }
    for (int column = 0; column < kColumnCount; ++column) {
      fgcDataSheet.SetCell(track + 1, column, std::move(cells[column]));
    }
  }
  fgcDataSheet.SetRedraw(true);
  ClearFilePreview(PrevGraph);
}

void frmImportTrack::SelectRow(int row) {
  selected_ = row - 1;
  ClearFilePreview(PrevGraph);
  lblNotice.SetText("");
  if (!recognized_ || selected_ < 0) return;
  if (headers_[static_cast<std::size_t>(selected_)].IsEmpty()) return;
  const TrackFileLoad load =
      PreviewFileTrack(PrevGraph, workstation_, host().files, path_, selected_);
  if (!load.complete()) {
    lblNotice.SetText(load.status.why());
  } else if (!load.remarks.empty()) {
    lblNotice.SetText(load.remarks.front());
  }
}

void frmImportTrack::cmdImport_Click() {
  const bool chosen =
      recognized_ && selected_ >= 0 && !headers_[static_cast<std::size_t>(selected_)].IsEmpty();
  if (!chosen) {
    host().dialogs.Message("Please select a varid track!");
    return;
  }
  const int target = workstation_.shown_track;
  const Status imported = ImportFileTrack(workstation_, host().files, path_, selected_, target);
  if (!imported.ok()) {
    host().dialogs.Message("Import track: " + imported.why());
    return;
  }
  lblNotice.SetText("Track " + PlainNumber(selected_) + " was imported into track " +
                    PlainNumber(target));
}

}  // namespace zento
