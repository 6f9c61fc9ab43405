#include "ui/main/edit_tracks_form.h"

#include <algorithm>
#include <string>
#include <vector>

#include "core/track_history.h"
#include "core/track_store.h"
#include "exchange/table_text.h"
#include "host/desktop.h"
#include "host/dialogs.h"
#include "host/host.h"
#include "text/lines.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr int kThirdColumn = 2;

// Every occurrence, from left to right; nothing for an empty `before`.
std::string Replaced(std::string text, const std::string& before, const std::string& after) {
  if (before.empty()) return text;
  for (std::size_t at = text.find(before); at != text.npos;
       at = text.find(before, at + after.size())) {
    text.replace(at, before.size(), after);
  }
  return text;
}

}  // namespace

frmEditTracks::frmEditTracks(Workstation& workstation, Host& host)
    : Form(host, kName, "Edit Tracks"), workstation_(workstation) {
  RequestGeometry({false, 0, 0, 640, 380});
  cmdClose.is_cancel = true;
  Wire(txtSourceTrack, updSource, source_);
  Wire(txtDestinationTrack, updDestination, destination_);
  cmdCopy.on_click = [this] { cmdCopy_Click(); };
  cmdMove.on_click = [this] { cmdMove_Click(); };
  cmdSwap.on_click = [this] { cmdSwap_Click(); };
  cmdClose.on_click = [&desktop = host.desktop] { desktop.Unload(kName); };
}

void frmEditTracks::Wire(TextBox& box, UpDown& arrows, int& track) {
  const auto step = [this, &box, &track](int direction) {
    Choose(box, track, (track + direction + kTracks) % kTracks);
  };
  arrows.on_up = [step] { step(+1); };
  arrows.on_down = [step] { step(-1); };
  const auto typed = [this, &box, &track] {
    Choose(box, track, std::clamp(ToLong(ParseLenient(box.text())), 0, kTracks - 1));
  };
  box.on_commit = typed;
}

void frmEditTracks::Choose(TextBox& box, int& track, int wanted) {
  track = wanted;
  box.SetText(PlainNumber(wanted));
  ShowTracks();
}

bool frmEditTracks::Load() {
  ShowTracks();
  return true;
}

void frmEditTracks::Activate() {
  ShowTracks();
}

void frmEditTracks::ShowTracks() {
  const auto show = [this](Label& label, int track) {
    label.SetText(TrackInfoText(workstation_.tracks, track, workstation_.FileTitle));
  };
  show(lblSourceTrack, source_);
  show(lblDestinationTrack, destination_);
}

bool frmEditTracks::Refused(const char* doing) {
  if (source_ == destination_) {
    host().dialogs.Message(std::string("You cannot ") + doing + " between the same track.");
    return true;
  }
  if (!workstation_.tracks.Record(source_).IsEmpty()) return false;
  host().dialogs.Message("Source data is vacant.");
  return true;
}

// All columns: what a third one holds in modes whose data are two columns (the times of a rotation
// sweep or a multichannel record) belongs to the track, too.
void frmEditTracks::CopyTrack(int from, int to) {
  TrackStore& tracks = workstation_.tracks;
  tracks.CopyTrackHeader(from, to);
  tracks.CopyTrackData(from, to);
  const auto third = tracks.Points(kThirdColumn, from);
  const std::vector<double> values(third.begin(), third.end());
  std::vector<double>& column = tracks.Column(kThirdColumn, to);
  if (column.size() < values.size()) column.resize(values.size());
  std::copy(values.begin(), values.end(), column.begin());
}

void frmEditTracks::cmdCopy_Click() {
  if (Refused("copy")) return;
  {
    const TrackChange change(
        workstation_,
        "Copy of track " + PlainNumber(source_) + " to track " + PlainNumber(destination_),
        {destination_});
    CopyTrack(source_, destination_);
  }
  AfterChange();
}

void frmEditTracks::cmdMove_Click() {
  if (Refused("move")) return;
  {
    const TrackChange change(
        workstation_,
        "Move of track " + PlainNumber(source_) + " to track " + PlainNumber(destination_),
        {source_, destination_});
    CopyTrack(source_, destination_);
    workstation_.tracks.ClearTrack(source_);
  }
  AfterChange();
}

void frmEditTracks::cmdSwap_Click() {
  if (source_ == destination_) {
    return host().dialogs.Message("You cannot swap between the same track.");
  }
  TrackStore& tracks = workstation_.tracks;
  if (tracks.Record(source_).IsEmpty() && tracks.Record(destination_).IsEmpty()) {
    return host().dialogs.Message("Source data and destination data are vacant.");
  }
  {
    const TrackChange change(
        workstation_,
        "Swap of tracks " + PlainNumber(source_) + " and " + PlainNumber(destination_),
        {source_, destination_});
    CopyTrack(destination_, kScratchSlot);
    CopyTrack(source_, destination_);
    CopyTrack(kScratchSlot, source_);
  }
  AfterChange();
}

void frmEditTracks::AfterChange() {
  ShowTracks();
  const int shown = workstation_.shown_track;
  if (shown == source_ || shown == destination_) workstation_.ShowTrack(shown);
}

LayoutNode frmEditTracks::Layout() {
  using namespace layout;
  const auto side = [](const char* caption, TextBox& box, UpDown& arrows, Label& label) {
    return Group(caption, {Fields({Field("Track", box, &arrows)}), Item(label, 1), Stretch()});
  };
  return Rows({
      Columns({side("Source", txtSourceTrack, updSource, lblSourceTrack),
               side("Destination", txtDestinationTrack, updDestination, lblDestinationTrack)},
              1),
      Columns({Item(cmdCopy), Item(cmdMove), Item(cmdSwap), Stretch(), Item(cmdClose)}),
  });
}

frmReplaceTitle::frmReplaceTitle(Workstation& workstation, Host& host)
    : Form(host, kName, "Replace words in each title"), workstation_(workstation) {
  RequestGeometry({false, 0, 0, 420, 0});
  cmdGo.is_default = true;
  cmdClose.is_cancel = true;
  cmdGo.on_click = [this] { cmdGo_Click(); };
  cmdClose.on_click = [&desktop = host.desktop] { desktop.Unload(kName); };
}

void frmReplaceTitle::cmdGo_Click() {
  std::vector<int> changed;
  const auto replaced = [this](int track) {
    return Replaced(workstation_.tracks.Record(track).Title, txtBefore.text(),
                    OneLine(txtAfter.text()));
  };
  for (int track = 0; track < kTracks; ++track) {
    if (replaced(track) != workstation_.tracks.Record(track).Title) changed.push_back(track);
  }
  {
    const TrackChange change(workstation_, "Replacement of words in titles", changed);
    for (const int track : changed) workstation_.tracks.Record(track).Title = replaced(track);
  }
  lblNotice.SetText(changed.empty() ? "No title holds this text"
                                    : "Replaced in " + std::to_string(changed.size()) +
                                          (changed.size() == 1 ? " title" : " titles"));
  const int shown = workstation_.shown_track;
  if (std::ranges::find(changed, shown) != changed.end()) workstation_.ShowTrack(shown);
}

LayoutNode frmReplaceTitle::Layout() {
  using namespace layout;
  return Rows({
      Fields({Field("before", txtBefore), Field("after", txtAfter)}),
      Columns({Item(lblNotice), Stretch(), Item(cmdGo), Item(cmdClose)}),
  });
}

}  // namespace zento
