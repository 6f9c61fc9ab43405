#include "analysis/smoothing_form.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

#include "analysis/track_points.h"
#include "core/palette.h"
#include "core/settings.h"
#include "core/sweeps.h"
#include "core/tables.h"
#include "core/track_history.h"
#include "core/track_store.h"
#include "graph/track_preview.h"
#include "host/dialogs.h"
#include "host/host.h"
#include "text/number.h"
#include "text/status.h"

namespace zento {
namespace {

constexpr std::int32_t kMostPoints = 15;
constexpr std::int32_t kLeastWindow[] = {3, 5, 3};  // by method

std::string Tracks(const std::vector<int>& tracks) {
  return tracks.size() == 1 ? "track " + PlainNumber(tracks.front())
                            : PlainNumber(tracks.size()) + " tracks";
}

}  // namespace

frmSmoothing::frmSmoothing(Workstation& workstation, Host& host,
                           std::vector<std::filesystem::path> data_folders)
    : TransformForm(workstation, host, kName, "Smoothing"), data_folders_(std::move(data_folders)) {
  opnYFilter.SetTip(
      "Simple moving average; Savitzky-Golay; suppression of spikes, against the disk's display "
      "scale");
  txtPointNum.SetTip("Length of the window: odd, up to 15");
  chkXAxis.SetTip("Smooth the x column, too");
  txtSkipNum.SetTip("So many points and one more at each end of a sweep stay as they are");
  chkApplyAllTrack.SetTip("Calculation shows, and Update Data changes, all tracks 0 to 20");
  PrevGraph.SetTip("Light red: smoothed");
  WireControls();
}

void frmSmoothing::WireControls() {
  opnYFilter.on_select = [this](int) { ShowPoints(LeastPoints()); };
  UpDown3.on_up = [this] { ShowPoints(TypedPoints() + 2); };
  UpDown3.on_down = [this] { ShowPoints(TypedPoints() - 2); };
  const auto points_typed = [this] { ShowPoints(TypedPoints()); };
  txtPointNum.on_commit = points_typed;
  for (CheckBox* box : {&chkXAxis, &chkSkipatEdge, &chkApplyAllTrack}) {
    box->on_click = [this](int) { Forget(); };
  }
  txtSkipNum.on_change = [this] { Forget(); };
  txtSkipNum.on_lost_focus = [this] { txtSkipNum.SetText(PlainNumber(TypedSkip())); };
}

void frmSmoothing::ShowSettings() {
  ShowPoints(LeastPoints());
}

void frmSmoothing::TakeSource() {
  const int track = Source();
  const TrackRecord& record = tracks().Record(track);
  points_.Keep(tracks(), track);
  mode_ = record.Mode;
  vertices_ = record.V;
  scale_ = record.DiskYscale;
  Forget();
  DrawPreview();
  lblNote.SetText(HoldsTrack(tracks(), track) ? "" : "Track " + PlainNumber(track) + " is empty.");
}

std::int32_t frmSmoothing::LeastPoints() const {
  return kLeastWindow[std::clamp(opnYFilter.selected(), 0, 2)];
}

std::int32_t frmSmoothing::TypedPoints() const {
  return std::clamp(ToLong(ParseLenient(txtPointNum.text())), 0, kMostPoints + 2);
}

std::int32_t frmSmoothing::TypedSkip() const {
  return std::clamp(ToLong(ParseLenient(txtSkipNum.text())), 0, kMaxPoints);
}

// An even number becomes the odd one below.
void frmSmoothing::ShowPoints(std::int32_t points) {
  const std::int32_t odd = points % 2 == 0 ? points - 1 : points;
  txtPointNum.SetText(PlainNumber(std::clamp(odd, LeastPoints(), kMostPoints)));
  Forget();
}

void frmSmoothing::Forget() {
  EnableWriting(false, false);
  if (!std::exchange(ready_, false)) return;
  curves_.clear();
  lblNote.SetText({});
  DrawPreview();
}

bool frmSmoothing::SourceChanged() const {
  const int track = Source();
  // Of the header, what decides how the track is smoothed.
  const TrackRecord& record = tracks().Record(track);
  return record.Mode != mode_ || record.V != vertices_ || record.DiskYscale != scale_ ||
         !points_.AreStill(tracks(), track);
}

Result<Smoothing> frmSmoothing::Settings() const {
  Smoothing smoothing;
  smoothing.method = static_cast<SmoothingMethod>(std::clamp(opnYFilter.selected(), 0, 2));
  smoothing.points = TypedPoints();
  if (chkSkipatEdge.value() == 1) smoothing.skip = TypedSkip();
  if (smoothing.method != SmoothingMethod::kSavitzkyGolay) return smoothing;
  std::vector<std::filesystem::path> folders = data_folders_;
  folders.insert(folders.begin(), workstation().home);
  auto table = ReadSavitzkyGolay(host().files, folders);
  if (!table.ok()) return table.status();
  const auto row = static_cast<std::size_t>((smoothing.points - LeastPoints()) / 2);
  if (row >= table->size()) {
    std::string why = kSavitzkyGolayFile;
    why.append(" has no row for a window of ").append(PlainNumber(smoothing.points));
    return Status::Failure(why.append(" points."));
  }
  smoothing.row = table.value()[row];
  return smoothing;
}

std::vector<int> frmSmoothing::ChosenTracks() const {
  if (chkApplyAllTrack.value() != 1) return {Source()};
  std::vector<int> all;
  for (int track = 0; track < kTracks; ++track) {
    if (HoldsTrack(tracks(), track)) all.push_back(track);
  }
  return all;
}

void frmSmoothing::Preview(int track) {
  if (!SmoothTrack(tracks(), track, smoothing_, x_axis_, kScratchSlot)) return;
  // The channels of a multichannel record are drawn against their common time.
  const bool multi = IsMultichannel(tracks().Record(track).Mode);
  const std::span<const double> x = tracks().Points(multi ? 2 : 0, multi ? 0 : kScratchSlot);
  const std::span<const double> y = tracks().Points(1, kScratchSlot);
  curves_.push_back({{x.begin(), x.end()}, {y.begin(), y.end()}});
}

void frmSmoothing::Calculate() {
  if (!HoldsTrack(tracks(), Source())) return;
  if (SourceChanged()) ShowSource();
  ShowPoints(TypedPoints());
  auto settings = Settings();
  if (!settings.ok()) return host().dialogs.Message(settings.why());

  Forget();
  smoothing_ = std::move(settings.value());
  x_axis_ = chkXAxis.value() == 1;
  chosen_ = ChosenTracks();
  for (const int track : chosen_) Preview(track);
  if (curves_.empty()) {
    return lblNote.SetText(
        "Nothing is smoothed: tracks of this mode are not, nor those without "
        "points.");
  }
  ready_ = true;
  DrawPreview();
  NoteWhatWasDone();
  txtDestTitle.SetText("Smooth_" + tracks().Record(Source()).Title);
  EnableWriting(true, !SmoothedStretches(tracks(), Source()).empty());
}

void frmSmoothing::NoteWhatWasDone() {
  std::size_t stretches = 0;
  std::size_t turning = 0;
  bool no_scale = false;
  for (const int track : chosen_) {
    const std::size_t its = SmoothedStretches(tracks(), track).size();
    stretches += its;
    turning += StretchesThatTurn(tracks(), track);
    no_scale |= its > 0 && tracks().Record(track).DiskYscale == 0;
  }
  const auto count = [](std::size_t n, const std::string& one, const std::string& many) {
    return PlainNumber(n) + (n == 1 ? one : many);
  };
  std::string note = "Smoothed " + count(curves_.size(), " track in ", " tracks in ") +
                     count(stretches, " piece.", " pieces that meet at the turning points.");
  if (turning > 0) {
    note += " The potential turns within " + PlainNumber(turning) +
            " of them: noise, or other vertices than the track's, hid the turning point, which is "
            "smoothed over.";
  }
  if (smoothing_.method == SmoothingMethod::kSpikes && no_scale) {
    note += " A display scale of 0 makes every point the mean of its neighbours.";
  }
  lblNote.SetText(note);
}

void frmSmoothing::DrawPreview() {
  const int track = Source();
  const auto style = static_cast<PreviewStyle>(workstation().settings.PrevGraphDrawSetting);
  DrawTrack(PrevGraph, tracks(), track, RangeOf(tracks(), track), style);
  for (const Curve& curve : curves_) {
    if (style == PreviewStyle::kDots) {
      PrevGraph.Dots(curve.x, curve.y, kLightRed);
    } else {
      PrevGraph.Polyline(curve.x, curve.y, kLightRed);
    }
  }
}

void frmSmoothing::UpdateData() {
  if (!ready_) return;
  if (SourceChanged()) return ShowSource();
  std::vector<int> written;
  {
    const TrackChange change(
        workstation(), chosen_.size() == 1 ? "Smoothing" : "Smoothing of all tracks", chosen_);
    for (const int track : chosen_) {
      if (!SmoothTrack(tracks(), track, smoothing_, x_axis_, kScratchSlot)) continue;
      tracks().CopyTrackData(kScratchSlot, track);
      written.push_back(track);
    }
  }
  AfterWriting(written);
  Forget();  // also where the track that is shown was not among them
  lblNote.SetText("Written into " + Tracks(written) + "; Undo gives back what was there.");
}

void frmSmoothing::RecordAnotherTrack() {
  if (!ready_) return;
  if (SourceChanged()) return ShowSource();
  const int from = Source();
  const int to = Destination();
  {
    const TrackChange change(workstation(), "Smoothing into track " + PlainNumber(to), {to});
    if (!SmoothTrack(tracks(), from, smoothing_, x_axis_, kScratchSlot)) return;
    CopyTimeColumn(tracks(), from, to);
    tracks().CopyTrackHeader(from, to);
    tracks().Record(to).Title = txtDestTitle.text();
    tracks().CopyTrackData(kScratchSlot, to);
  }
  AfterWriting({to});
  lblNote.SetText("Written into " + Tracks({to}) + "; Undo gives back what was there.");
}

LayoutNode frmSmoothing::Layout() {
  using namespace layout;
  return Rows({
      Columns(
          {
              Rows({
                  SourceGroup(),
                  Group(
                      "Smoothing",
                      {Item(opnYFilter), Fields({Field("Points", txtPointNum, &UpDown3)}),
                       Item(chkXAxis), Item(chkSkipatEdge),
                       Fields({Field("Points at each edge", txtSkipNum)}), Item(chkApplyAllTrack)}),
                  Item(cmdCalc),
                  Item(cmdUpdate),
                  DestinationGroup(),
                  Stretch(),
              }),
              Rows({Item(PrevGraph, 1)}, 3),
          },
          1),
      Item(lblNote),
  });
}

}  // namespace zento
