#include "analysis/fft_form.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <span>

#include "analysis/track_points.h"
#include "core/palette.h"
#include "core/settings.h"
#include "core/sweeps.h"
#include "core/tables.h"
#include "core/track_history.h"
#include "core/track_store.h"
#include "graph/plot_range.h"
#include "graph/track_preview.h"
#include "host/dialogs.h"
#include "host/host.h"
#include "text/number.h"

namespace zento {
namespace {

// For x, then for the currents.
constexpr std::array kColumnColours = {kLightBlue, kLightGreen, kLightCyan};
constexpr double kLeastMaximum = 1e-6;  // of the frequency graph
constexpr double kLeastFrequency = 0.1;
constexpr int kDigits = 4;
constexpr double kTimesAgree = 0.2;  // of the recorded time

// Columns that are transformed: x and one or two currents.
int TransformedColumns(std::int32_t mode) {
  return HasRing(mode) ? 3 : 2;
}

std::string Hertz(double frequency) {
  return PlainNumber(frequency, kDigits) + " Hz";
}

}  // namespace

frmFFTFilter::frmFFTFilter(Workstation& workstation, Host& host)
    : TransformForm(workstation, host, kName, "FFT Filter") {
  txtXMaxFrequency.SetTip("Cut-off of the x column in Hz: what is as fast or faster is removed");
  txtYMaxFrequency.SetTip("Cut-off of the currents in Hz: what is as fast or faster is removed");
  chkXSpectrum.SetValue(1);
  chkXSpectrum.SetTip("Off: the graph is scaled for the currents alone");
  updGraphScale.SetTip("Up: the lines of the spectrum are drawn twice as high");
  FrequencyGraph.SetTip("Light blue: x; light green and light cyan: currents");
  WireControls();
}

void frmFFTFilter::WireControls() {
  opnXFilter.on_select = [this, before = 0](int option) mutable {
    if (option != before) ForgetFiltered();
    before = option;
  };
  const auto bind = [this](TextBox& box, double& setting) {
    box.on_commit = [this, &box, &setting] { LeaveFrequency(box, setting); };
  };
  bind(txtXMaxFrequency, workstation().settings.FFTFxmax);
  bind(txtYMaxFrequency, workstation().settings.FFTFymax);
  chkXSpectrum.on_click = [this](int) {
    FitSpectra();
    DrawSpectra();
  };
  updGraphScale.on_up = [this] { ScaleGraph(0.5); };
  updGraphScale.on_down = [this] { ScaleGraph(2); };
}

void frmFFTFilter::ShowSettings() {
  txtXMaxFrequency.SetText(PlainNumber(workstation().settings.FFTFxmax));
  txtYMaxFrequency.SetText(PlainNumber(workstation().settings.FFTFymax));
}

void frmFFTFilter::TakeSource() {
  filtered_ready_ = false;
  Transform();
  DrawPreview();
  FitSpectra();
  DrawSpectra();
  ForgetFiltered();
}

std::string frmFFTFilter::Refusal(int columns) const {
  const int track = Source();
  if (!HoldsTrack(tracks(), track)) return "Track " + PlainNumber(track) + " is empty.";
  if (tracks().PointCount(track) == 0) {
    return "Track " + PlainNumber(track) + " has no points.";
  }
  const double time = TrackTime(tracks(), track);
  if (!(time > 0) || !std::isfinite(time)) {
    return "The track has neither measurement time nor scan rate, so its points have no "
           "frequencies.";
  }
  for (int c = 0; c < columns; ++c) {
    const std::span<const double> values = tracks().Points(c, track);
    const bool finite =
        std::all_of(values.begin(), values.end(), [](double v) { return std::isfinite(v); });
    if (!finite) return "The track holds values that are no numbers.";
  }
  return {};
}

void frmFFTFilter::Transform() {
  const int track = Source();
  const int columns = TransformedColumns(tracks().Record(track).Mode);
  columns_ = 0;
  df_ = 0;
  points_ = {};
  spectra_ = {};
  if (const std::string why = Refusal(columns); !why.empty()) return lblNote.SetText(why);
  columns_ = columns;
  time_ = TrackTime(tracks(), track);
  points_.Keep(tracks(), track, columns_);
  for (int c = 0; c < columns_; ++c) {
    spectra_[static_cast<std::size_t>(c)] = SpectrumOf(points_.Column(c));
  }
  const auto length = static_cast<double>(spectra_[0].Length());
  const double dt = time_ / tracks().PointCount(track) / 1000;
  df_ = 1 / (length * dt);
  const bool recorded = tracks().Record(track).MaxTime > 0;
  const double by_x = TrackTimeByX(tracks(), track);
  lblNote.SetText(PlainNumber(tracks().PointCount(track)) + " points, one every " +
                  PlainNumber(dt, kDigits) + " s" + (recorded ? "" : " by x and scan rate") +
                  ": frequencies up to " + Hertz(length * df_ / 2) + " in steps of " + Hertz(df_) +
                  ".");
  if (by_x > 0 && std::fabs(by_x - time_) > kTimesAgree * time_) {
    lblNote.SetText(lblNote.text() + " CHECK THE TIME: the record says " +
                    PlainNumber(time_ / 1000, kDigits) + " s, its x and scan rate " +
                    PlainNumber(by_x / 1000, kDigits) + " s. Was it stopped early?");
  }
}

bool frmFFTFilter::SourceChanged() const {
  const int track = Source();
  if (columns_ == 0) return Refusal(0).empty();
  const TrackRecord& record = tracks().Record(track);
  return TrackTime(tracks(), track) != time_ || TransformedColumns(record.Mode) != columns_ ||
         !points_.AreStill(tracks(), track);
}

void frmFFTFilter::ForgetFiltered() {
  if (filtered_ready_) {
    filtered_ready_ = false;
    DrawPreview();
  }
  EnableWriting(false, false);
}

void frmFFTFilter::LeaveFrequency(TextBox& box, double& setting) {
  const double typed = ParseLenient(box.text());
  const double frequency = typed > 0 ? typed : kLeastFrequency;
  box.SetText(PlainNumber(frequency));
  if (frequency == setting) return;
  setting = frequency;
  ForgetFiltered();
}

void frmFFTFilter::DrawPreview() {
  const int track = Source();
  const auto style = static_cast<PreviewStyle>(workstation().settings.PrevGraphDrawSetting);
  DrawTrack(PrevGraph, tracks(), track, RangeOf(tracks(), track), style);
  PrevGraph.SetAxisTitles("Potential /V", "Current /A");
  if (!filtered_ready_) return;
  PrevGraph.Polyline(filtered_[0], filtered_[1], kLightRed);
}

int frmFFTFilter::FirstShown() const {
  return chkXSpectrum.value() == 1 ? 0 : 1;
}

// Makes the graph as high as its highest line.
void frmFFTFilter::FitSpectra() {
  y_maximum_ = kLeastMaximum;
  for (int c = FirstShown(); c < columns_; ++c) {
    const std::vector<double>& magnitude = spectra_[static_cast<std::size_t>(c)].magnitude;
    y_maximum_ = std::max(y_maximum_, *std::max_element(magnitude.begin(), magnitude.end()));
  }
}

void frmFFTFilter::DrawSpectra() {
  FrequencyGraph.Clear();
  if (columns_ == 0) return;
  const double highest = static_cast<double>(spectra_[0].Length()) * df_ / 2;
  const PlotRange range = WithMargin({0, 0, highest, y_maximum_});
  FrequencyGraph.SetFormats("0.0", "0.0e+0");
  FrequencyGraph.SetRange(-0.2 * range.x2, -0.2 * range.y2, range.x2, range.y2);
  FrequencyGraph.SetSteps(TickStep(range.x1, range.x2), TickStep(range.y1, range.y2));
  FrequencyGraph.SetAxisTitles("Frequency /Hz", "");
  for (int c = FirstShown(); c < columns_; ++c) DrawSpectrum(c);
}

// All lines as one that goes up and down: where many share a pixel it costs no more than a few.
void frmFFTFilter::DrawSpectrum(int column) {
  const Spectrum& spectrum = spectra_[static_cast<std::size_t>(column)];
  const double top = WithMargin({0, 0, 1, y_maximum_}).y2;
  std::vector<Point> line;
  line.reserve(3 * (spectrum.Length() / 2 + 1));
  for (std::size_t k = 0; k <= spectrum.Length() / 2; ++k) {
    const double x = static_cast<double>(k) * df_;
    line.push_back({x, 0});
    line.push_back({x, std::min(spectrum.magnitude[k], top)});
    line.push_back({x, 0});
  }
  FrequencyGraph.Polyline(line, kColumnColours[static_cast<std::size_t>(column)]);
}

void frmFFTFilter::ScaleGraph(double factor) {
  const double scaled = y_maximum_ * factor;
  if (columns_ == 0 || !(scaled > std::numeric_limits<float>::min()) ||
      !(scaled < std::numeric_limits<float>::max())) {
    return;
  }
  y_maximum_ = scaled;
  const WorldWindow before = FrequencyGraph.shown();
  const bool zoomed = FrequencyGraph.Zoomed();
  DrawSpectra();
  if (!zoomed) return;
  // The frequencies that a person chose stay.
  WorldWindow window = FrequencyGraph.shown();
  window.x1 = before.x1;
  window.x2 = before.x2;
  FrequencyGraph.ShowWindow(window);
}

void frmFFTFilter::Calculate() {
  if (!HoldsTrack(tracks(), Source())) return;
  LeaveFrequency(txtXMaxFrequency, workstation().settings.FFTFxmax);
  LeaveFrequency(txtYMaxFrequency, workstation().settings.FFTFymax);
  if (SourceChanged()) ShowSource();
  if (columns_ == 0) return host().dialogs.Message(lblNote.text());

  cmdCalc.SetEnabled(false);
  const Settings& settings = workstation().settings;
  for (int c = 0; c < columns_; ++c) {
    const auto at = static_cast<std::size_t>(c);
    const double x_cut_off = opnXFilter.selected() == 1 ? settings.FFTFxmax : kNoCutOff;
    filtered_[at] = LowPass(spectra_[at], df_, c == 0 ? x_cut_off : settings.FFTFymax,
                            points_.Column(c).size());
  }
  filtered_ready_ = true;
  DrawPreview();
  txtDestTitle.SetText("FFT_" + tracks().Record(Source()).Title);
  EnableWriting(true, true);
  cmdCalc.SetEnabled(true);
}

void frmFFTFilter::WriteFiltered(int track) {
  for (int c = 0; c < columns_; ++c) {
    PutPoints(tracks(), c, track, filtered_[static_cast<std::size_t>(c)]);
  }
}

void frmFFTFilter::UpdateData() {
  if (!filtered_ready_) return;
  if (SourceChanged()) return ShowSource();
  const int track = Source();
  {
    const TrackChange change(workstation(), "FFT filter", {track});
    WriteFiltered(track);
  }
  AfterWriting({track});
}

void frmFFTFilter::RecordAnotherTrack() {
  if (!filtered_ready_) return;
  if (SourceChanged()) return ShowSource();
  const int from = Source();
  const int to = Destination();
  {
    const TrackChange change(workstation(), "FFT filter into track " + PlainNumber(to), {to});
    CopyTimeColumn(tracks(), from, to);
    tracks().CopyTrackHeader(from, to);
    tracks().Record(to).Title = txtDestTitle.text();
    WriteFiltered(to);
  }
  AfterWriting({to});
}

LayoutNode frmFFTFilter::Layout() {
  using namespace layout;
  return Rows({
      Columns(
          {
              Rows({
                  SourceGroup(),
                  Group("X filter", {Item(opnXFilter),
                                     Fields({Field("Max. frequency /Hz", txtXMaxFrequency)})}),
                  Group("Y filter", {Item(opnYFilter),
                                     Fields({Field("Max. frequency /Hz", txtYMaxFrequency)})}),
                  Item(cmdCalc),
                  Item(cmdUpdate),
                  DestinationGroup(),
                  Stretch(),
              }),
              Rows({Item(PrevGraph, 1),
                    Columns({Text("Spectrum"), Stretch(), Item(chkXSpectrum), Text("Scale"),
                             Item(updGraphScale)}),
                    Item(FrequencyGraph, 1)},
                   3),
          },
          1),
      Item(lblNote),
  });
}

}  // namespace zento
