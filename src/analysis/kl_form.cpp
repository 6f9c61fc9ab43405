#include "analysis/kl_form.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <utility>

#include "analysis/track_points.h"
#include "core/palette.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr int kLightBlue = 9;
constexpr int kLightGreen = 10;
constexpr int kLightRed = 12;

constexpr int kGreyed = 2;
constexpr int kUseBaseTrack = 2;

// A box that writes its setting at every change.
void Bind(TextBox& box, double& setting) {
  box.on_change = [&box, &setting] { setting = ParseLenient(box.text()); };
}

}  // namespace

frmKoutecky_Levich::frmKoutecky_Levich(Workstation& workstation, Host& host)
    : AnalysisForm(workstation, host, kName, "Koutecky-Levich Analysis"),
      start_(txtStart, updStart, lblStartPoint),
      end_(txtEnd, updEnd, lblEndPoint),
      base_end_(txtBaseEnd, updBaseEnd, lblBaseEndPoint),
      graph_(host, kGraphName) {
  for (TextBox* box : {&txtTitle, &txtRPM, &txtBaseTitle, &txtBaseRPM, &txtBaseTrack}) {
    box->read_only = true;
  }
  WireBoxes();
  WireTrack();
  cmdKLCalc.on_click = [this] { Calculate(); };
}

void frmKoutecky_Levich::WireBoxes() {
  txtUseVoltage.on_commit = [this] { LeaveWindow(); };
  txtKLVrange.on_commit = [this] { LeaveWindow(); };
  Settings& s = settings();
  txtArea.on_change = [this, &s] { s.KLElectrodeArea = std::abs(ParseLenient(txtArea.text())); };
  Bind(txtKLViscosity, s.KLViscosity);
  Bind(txtDm, s.KLDm);
  Bind(txtConc, s.KLConc);
  Bind(txtne, s.KLne);
  opnMethod.on_select = [&s](int method) { s.KLMethod = static_cast<std::int16_t>(method); };
  opnVariable.on_select = [&s](int unknown) { s.KLVariable = static_cast<std::int16_t>(unknown); };
  txtKLVrange.SetTip("Half the width of the potential window, V");
  txtArea.SetTip("cm2");
  cmdKLCalc.SetTip(
      "Plots the used tracks, or the points of a rotation-rate sweep, and fits a line");
}

void frmKoutecky_Levich::WireTrack() {
  chkUse.on_click = [this](int value) {
    tracks().kl.KLUseFlag[Current()] = static_cast<std::int16_t>(value == 1 ? 1 : 0);
  };
  const auto count = [this] { return tracks().PointCount(Track()); };
  start_.limits = [count] { return PointIndex::Limits{0, count() - 2, 0, count() - 2}; };
  end_.limits = [count] { return PointIndex::Limits{1, count() - 1, 1, count() - 1}; };
  base_end_.limits = [this] {
    const std::int32_t last = tracks().PointCount(BaseTrack()) - 1;
    return PointIndex::Limits{1, last, 0, last};
  };
  start_.on_change = [this] {
    tracks().kl.KLNStart[Current()] = start_.index();
    Redraw();
  };
  end_.on_change = [this] {
    tracks().kl.KLNEnd[Current()] = end_.index();
    Redraw();
  };
  base_end_.on_change = [this] {
    tracks().kl.KLBaseNEnd[Current()] = base_end_.index();
    Redraw();
  };
  txtSubVal.on_commit = [this] {
    tracks().kl.KLSubVal[Current()] = ParseLenient(txtSubVal.text());
  };
  opnBaseLine.on_select = [this](int mode) { ChooseBaseLine(mode); };
  updBase.on_up = [this] { ChooseBaseTrack((BaseTrack() + 1) % kTracks); };
  updBase.on_down = [this] { ChooseBaseTrack((BaseTrack() + kTracks - 1) % kTracks); };
}

void frmKoutecky_Levich::Activate() {
  AnalysisForm::Activate();
  if (Outdated()) ShowTrackAgain();
}

bool frmKoutecky_Levich::Outdated() const {
  if (Record() != shown_record_ || tracks().Record(BaseTrack()) != shown_base_) return true;
  const Ends ends = EndsOf(Track());
  return !start_.empty() && (start_.index() != ends.first || end_.index() != ends.last);
}

void frmKoutecky_Levich::ShowSettings() {
  InitializeParameters();
  const Settings& s = settings();
  txtUseVoltage.SetText(PlainNumber(s.KLVuse));
  txtKLVrange.SetText(PlainNumber(std::abs(s.KLVrange)));
  txtArea.SetText(PlainNumber(std::abs(s.KLElectrodeArea)));
  ShowQuantities();
  opnMethod.Select(s.KLMethod == 1 ? 1 : 0);
  opnVariable.Select(s.KLVariable >= 0 && s.KLVariable <= 3 ? s.KLVariable : 0);
}

void frmKoutecky_Levich::ShowQuantities() {
  const Settings& s = settings();
  txtKLViscosity.SetText(PlainNumber(s.KLViscosity));
  txtDm.SetText(PlainNumber(s.KLDm));
  txtConc.SetText(PlainNumber(s.KLConc));
  txtne.SetText(PlainNumber(s.KLne));
}

bool frmKoutecky_Levich::Usable(int track) const {
  return HoldsTrack(tracks(), track) && tracks().Record(track).Mode != kModePS;
}

int frmKoutecky_Levich::BaseTrack() const {
  return std::clamp<int>(tracks().kl.KLBaseTrack[Current()], 0, kTracks - 1);
}

frmKoutecky_Levich::Ends frmKoutecky_Levich::EndsOf(int track) const {
  const auto at = static_cast<std::size_t>(track);
  const std::int32_t last = std::max(tracks().PointCount(track) - 1, 0);
  const std::int32_t end = tracks().kl.KLNEnd[at];
  return {std::clamp(tracks().kl.KLNStart[at], 0, last),
          end == 0 ? last : std::clamp(end, 0, last)};
}

PotentialWindow frmKoutecky_Levich::Window() const {
  const double half = std::abs(settings().KLVrange);
  return {settings().KLVuse - half, settings().KLVuse + half};
}

void frmKoutecky_Levich::ShowTrack() {
  const int track = Track();
  const KouteckyLevichLists& kl = tracks().kl;
  shown_record_ = tracks().Record(track);
  txtTitle.SetText(tracks().Record(track).Title);
  const bool usable = Usable(track);
  chkUse.SetEnabled(usable);
  if (usable) {
    txtRPM.SetText(PlainNumber(tracks().Record(track).RPM));
    lblpnum.SetText("Data Num: " + PlainNumber(tracks().PointCount(track)));
    const Ends ends = EndsOf(track);
    start_.Show(ends.first);
    end_.Show(ends.last);
    chkUse.SetValue(kl.KLUseFlag[Current()] == 1 ? 1 : 0);
  } else {
    txtRPM.SetText({});
    lblpnum.SetText("None");
    start_.Empty();
    end_.Empty();
    chkUse.SetValue(kGreyed);
  }
  txtSubVal.SetText(PlainNumber(kl.KLSubVal[Current()]));
  opnBaseLine.Select(kl.KLBaseMode[Current()]);
  ShowBaseTrack();
}

void frmKoutecky_Levich::ShowBaseTrack() {
  const int base = BaseTrack();
  shown_base_ = tracks().Record(base);
  txtBaseTrack.SetText(PlainNumber(base));
  txtBaseTitle.SetText(tracks().Record(base).Title);
  if (Usable(base)) {
    txtBaseRPM.SetText(PlainNumber(tracks().Record(base).RPM));
    lblbasepnum.SetText("Data Num: " + PlainNumber(tracks().PointCount(base)));
    const std::int32_t last = std::max(tracks().PointCount(base) - 1, 0);
    base_end_.Show(std::clamp(tracks().kl.KLBaseNEnd[Current()], 0, last));
  } else {
    txtBaseRPM.SetText({});
    lblbasepnum.SetText("None");
    base_end_.Empty();
  }
  Redraw();
}

void frmKoutecky_Levich::Redraw() {
  if (!start_.empty()) {
    start_.SetLabel(PointText(tracks(), Track(), start_.index()));
    end_.SetLabel(PointText(tracks(), Track(), end_.index()));
  }
  if (!base_end_.empty()) {
    base_end_.SetLabel(PointText(tracks(), BaseTrack(), base_end_.index()));
  }
  DrawPreview();
}

void frmKoutecky_Levich::DrawPreview() {
  const int track = Track();
  if (!Usable(track)) return PrevGraph.Clear();
  PrepareTrackPlot(PrevGraph, tracks(), track);
  const bool sweep = OneTrack();
  DrawChosenPoints(PrevGraph, tracks(), track, start_.index(), end_.index(),
                   [window = Window(), sweep](std::int32_t, double x) {
                     return QBColor(!sweep && window.Holds(x) ? kLightRed : kLightBlue);
                   });
  if (tracks().kl.KLBaseMode[Current()] != kUseBaseTrack || !Usable(BaseTrack())) return;
  DrawChosenPoints(PrevGraph, tracks(), BaseTrack(), 0, base_end_.index(),
                   [](std::int32_t, double) { return QBColor(kLightGreen); });
}

void frmKoutecky_Levich::LeaveWindow() {
  settings().KLVuse = ParseLenient(txtUseVoltage.text());
  settings().KLVrange = std::abs(ParseLenient(txtKLVrange.text()));
  DrawPreview();
}

void frmKoutecky_Levich::ChooseBaseLine(int mode) {
  tracks().kl.KLBaseMode[Current()] = static_cast<std::int16_t>(mode);
  UseWholeBaseTrack();
  ShowBaseTrack();
}

void frmKoutecky_Levich::ChooseBaseTrack(int track) {
  std::int32_t& end = tracks().kl.KLBaseNEnd[Current()];
  // Tracks differ in length: all of one is not all of the next.
  if (end == tracks().PointCount(BaseTrack()) - 1) end = 0;
  tracks().kl.KLBaseTrack[Current()] = static_cast<std::int16_t>(track);
  UseWholeBaseTrack();
  ShowBaseTrack();
}

void frmKoutecky_Levich::UseWholeBaseTrack() {
  if (tracks().kl.KLBaseMode[Current()] != kUseBaseTrack) return;
  std::int32_t& end = tracks().kl.KLBaseNEnd[Current()];
  if (end == 0) end = std::max(tracks().PointCount(BaseTrack()) - 1, 0);
}

LayoutNode frmKoutecky_Levich::Layout() {
  using namespace layout;
  return Columns({
      Rows(
          {
              Group("Track",
                    {Columns({Fields({Field("Track", txtDataNum, &UpDown1), Field("RPM", txtRPM),
                                      Field("Start", txtStart, &updStart),
                                      Field("End", txtEnd, &updEnd)}),
                              Rows({Columns({Item(chkUse), Item(lblpnum)}), Item(txtTitle),
                                    Item(lblStartPoint), Item(lblEndPoint)},
                                   1)})}),
              Item(PrevGraph, 1),
              Group("Base Line",
                    {Columns({Rows({Item(opnBaseLine), Fields({Field("Value /A", txtSubVal)})}),
                              Rows({Fields({Field("Base track", txtBaseTrack, &updBase),
                                            Field("Title", txtBaseTitle), Field("RPM", txtBaseRPM),
                                            Field("End", txtBaseEnd, &updBaseEnd)}),
                                    Columns({Item(lblbasepnum), Item(lblBaseEndPoint)})},
                                   1)})}),
          },
          1),
      Rows(
          {
              Columns(
                  {Group("Analysis",
                         {Fields({Field("Use Voltage", txtUseVoltage), Field("±", txtKLVrange),
                                  Field("Electrode Area /cm2", txtArea),
                                  Field("ν /cm2s-1", txtKLViscosity), Field("Dm /cm2s-1", txtDm),
                                  Field("Conc /molcm-3", txtConc), Field("n", txtne)})}),
                   Rows({Group("Method", {Item(opnMethod)}),
                         Group("Calculate", {Item(opnVariable)}), Item(cmdKLCalc)})}),
              ReportPanel(),
          },
          1),
  });
}

}  // namespace zento
