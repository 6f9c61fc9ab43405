// The main window's exchange of tracks with other programs through the clipboard.

#include <memory>
#include <string>
#include <utility>

#include "core/tables.h"
#include "core/track_history.h"
#include "core/track_store.h"
#include "host/host.h"
#include "host/services.h"
#include "ui/main/control_panel.h"
#include "ui/main/paste_text.h"
#include "ui/main/table_text.h"
#include "ui/main/track_text.h"

namespace zento {
namespace {

std::string PasteNotice(const Pasted& pasted, int track) {
  const std::string name = "track " + std::to_string(track);
  std::string notice = "Pasted " + std::to_string(pasted.points) + " points into " + name;
  if (pasted.left_out > 0) {
    notice += "; " + std::to_string(pasted.left_out) + " MORE HAD NO ROOM in it";
  }
  if (!pasted.has_mode) notice += ", which stays empty: the text has no line that says the mode";
  return notice;
}

}  // namespace

void frmControlPanel::CopyAll() {
  CopyBehind(TrackInfoText(workstation_.tracks, track_, workstation_.FileTitle) + "\r\n");
}

void frmControlPanel::CopyOnlyExpData() {
  CopyBehind(CellText(workstation_.tracks.Record(track_).Title) + "\r\n\r\n");
}

void frmControlPanel::CopyItTable() {
  CopyMultiTable(MultiTableKind::kCurrentTime);
}

void frmControlPanel::CopyVITable() {
  CopyMultiTable(MultiTableKind::kPotentialCurrent);
}

void frmControlPanel::CopyBehind(const std::string& head) {
  if (workstation_.tracks.Record(track_).Mode == kModeNone) return;
  auto table = std::make_unique<DataTable>(workstation_.tracks, track_, TableOptions());
  table->text.insert(0, head);
  StartCopy(std::move(table));
}

void frmControlPanel::CopyMultiTable(MultiTableKind kind) {
  if (workstation_.tracks.Record(track_).Mode != kModeMulti) return;
  StartCopy(
      std::make_unique<MultiTable>(workstation_.tracks, track_, workstation_.FileTitle, kind));
}

void frmControlPanel::StartCopy(std::unique_ptr<TableJob> job) {
  copy_.Start(std::move(job), [this, track = track_](bool copied) {
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

}  // namespace zento
