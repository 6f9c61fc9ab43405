#include "analysis/oxygen_form.h"

#include <array>
#include <cmath>
#include <numeric>
#include <vector>

#include "analysis/track_points.h"
#include "core/palette.h"
#include "core/settings.h"
#include "core/tables.h"
#include "core/track_store.h"
#include "graph/track_preview.h"
#include "text/format.h"
#include "text/number.h"
#include "text/status.h"

namespace zento {
namespace {

std::string ReportOf(const OxygenShares& shares) {
  std::string report = "Edisk/V\t%H2O\r\n";
  for (std::size_t i = 0; i < shares.size(); ++i) {
    report += ReportLine({Format(shares.potential[i], "0.###"), Format(shares.water[i], "##0.0")});
  }
  return report;
}

AnalysisResult ResultOf(const OxygenShares& shares) {
  AnalysisResult result;
  std::vector<double> electrons;
  for (const double share : shares.water) electrons.push_back(ElectronsOfShare(share));
  if (shares.size() > 0) {
    const double mean = std::accumulate(shares.water.begin(), shares.water.end(), 0.0) /
                        static_cast<double>(shares.size());
    result.quantities = {{"mean_H2O", "%", mean, {}}, {"mean_n", "", ElectronsOfShare(mean), {}}};
  }
  result.columns = {{"E", "V", shares.potential},
                    {"Idisk", "A", shares.disk},
                    {"Iring", "A", shares.ring},
                    {"H2O", "%", shares.water},
                    {"n", "", std::move(electrons)}};
  return result;
}

}  // namespace

frmO2Reduction::frmO2Reduction(Workstation& workstation, Host& host)
    : AnalysisForm(workstation, host, kName, "%H2O Graph") {
  txtTitle.read_only = true;
  txtRPM.read_only = true;
  txtCE.SetTip("Collection efficiency N of the ring, above 0");
  txtVstep.SetTip(
      "Distance between the evaluated potentials, V. A step that comes closer than the voltage "
      "range to the second vertex scans on to the end of the track, and the way back is then "
      "missing. Choose a step that stays further away from the vertex, or a voltage range larger "
      "than the step.");
  txtVrange.SetTip(
      "Half-width of the window that is averaged at each potential, V; points exactly on its ends "
      "do not count");
  cmdCalc.SetTip("Evaluates the track anew, which also happens whenever a track is chosen");
  for (TextBox* box : {&txtCE, &txtVstep, &txtVrange}) {
    box->on_change = [this] { StoreSettings(); };
    box->on_commit = [this] { LeaveBox(); };
  }
  cmdCalc.on_click = [this] { Calculate(); };
}

void frmO2Reduction::Calculate() {
  Evaluate(Asked::kForResult);
}

void frmO2Reduction::ShowHeader(Asked asked) {
  ShowTrackHeader(tracks(), Track(), lblMode, txtTitle, txtRPM);
  Evaluate(asked);
}

void frmO2Reduction::ShowSettings() {
  txtCE.SetText(PlainNumber(settings().O2CE));
  txtVstep.SetText(PlainNumber(std::fabs(settings().O2VStep)));
  txtVrange.SetText(PlainNumber(settings().O2Vrange));
}

void frmO2Reduction::StoreSettings() {
  settings().O2CE = ParseLenient(txtCE.text());
  settings().O2VStep = std::fabs(ParseLenient(txtVstep.text()));
  settings().O2Vrange = ParseLenient(txtVrange.text());
  settings_changed_ = true;
}

void frmO2Reduction::LeaveBox() {
  ShowSettings();  // what was read of the text
  if (settings_changed_) Evaluate(Asked::kNot);
}

void frmO2Reduction::Evaluate(Asked asked) {
  settings_changed_ = false;
  const int track = Track();
  const TrackRecord& record = tracks().Record(track);
  if (!HasRing(record.Mode)) {
    const bool empty = !HoldsTrack(tracks(), track);
    return Decline(
        "Track " + PlainNumber(track) + (empty ? " is empty." : " is no ring-disk voltammogram."),
        asked == Asked::kForResult);
  }
  const OxygenSettings how{settings().O2CE, settings().O2VStep, settings().O2Vrange};
  const Result<OxygenShares> shares =
      EvaluateOxygen(tracks().Points(0, track), tracks().Points(1, track),
                     tracks().Points(2, track), record.V, how);
  if (!shares.ok()) return Decline(shares.why(), asked != Asked::kNot);
  evaluated_track_ = track;
  ShowShares(shares.value());
}

void frmO2Reduction::Decline(const std::string& why, bool loudly) {
  std::string note = why;
  if (evaluated_track_ >= 0) {
    note += "\nReport and plot are those of track " + PlainNumber(evaluated_track_) + " as it was.";
  }
  lblNote.SetText(note);
  if (loudly) {
    Refuse(why);
  } else {
    RefuseQuietly(why);
  }
}

void frmO2Reduction::ShowShares(const OxygenShares& shares) {
  DrawShares(shares);
  ShowReport(ReportOf(shares), ResultOf(shares));
  lblNote.SetText(NoteOn(shares));
}

void frmO2Reduction::DrawShares(const OxygenShares& shares) {
  // As stored, or what the points take up where that is empty.
  const DisplayRange stored = RangeOf(tracks(), Track());
  H2OGraph.Clear();
  H2OGraph.SetFormats("0.0", "##0");
  H2OGraph.SetRange(stored.x_min, 0, stored.x_max, 100);
  H2OGraph.SetSteps(TickStep(stored.x_min, stored.x_max), TickStep(0, 100));
  H2OGraph.SetAxisTitles("Potential /V", "%H2O");
  for (std::size_t i = 0; i < shares.size(); ++i) {
    H2OGraph.Mark(shares.potential[i], shares.water[i], kLightBlue);
  }
}

std::string frmO2Reduction::NoteOn(const OxygenShares& shares) const {
  const std::array<double, 3>& vertices = tracks().Record(Track()).V;
  if (shares.size() == 0) {
    return "No point with current lies within the voltage range of a step between the track's "
           "vertices " +
           PlainNumber(vertices[0], 6) + ", " + PlainNumber(vertices[1], 6) + " and " +
           PlainNumber(vertices[2], 6) + " V.";
  }
  if (shares.second_segment_lost) {
    return "The way back is missing: a step close to the vertex at " + PlainNumber(vertices[1], 6) +
           " V scanned on to the end of the track.\nChoose a voltage step that keeps further "
           "away from it, or a voltage range larger than the step.";
  }
  return {};
}

LayoutNode frmO2Reduction::Layout() {
  using namespace layout;
  return Rows({
      Columns(
          {
              Rows({
                  Group("Track",
                        {Fields({Field("Track", txtDataNum, &UpDown1), Field("Mode", lblMode),
                                 Field("Title", txtTitle), Field("RPM", txtRPM)})}),
                  Group("Parameters", {Fields({Field("Collection Efficiency:", txtCE),
                                               Field("Voltage Step", txtVstep),
                                               Field("Voltage Range", txtVrange)}),
                                       Item(cmdCalc)}),
                  Stretch(),
              }),
              Rows({Item(H2OGraph, 1)}, 3),
              Rows({ReportPanel()}, 2),
          },
          1),
      Item(lblNote),
  });
}

}  // namespace zento
