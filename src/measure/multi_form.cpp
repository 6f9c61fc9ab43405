#include "measure/multi_form.h"

#include <algorithm>

#include "core/palette.h"
#include "host/dialogs.h"
#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr Colour kMonitorColour = kLightRed;

constexpr MeasureWindow kWindow = {.name = "frmMultipotentiostat",
                                   .caption = "Multipotentiostat",
                                   .timer = "MMTimer",
                                   .board_message = "AD Board不良です",
                                   .bus_message = "",
                                   .output_message = "",
                                   .draws_below = 20,
                                   .ticks_follow_box = false};

constexpr char kNothingRead[] = "Accumulation 0: nothing is read";

const AxisLook kLook{"0.0", "0.0#e+00", "/V"};

// Columns of a point: the time, then two for each electrode.
constexpr std::size_t CurrentColumn(std::size_t electrode) {
  return 2 * electrode + 2;
}

std::vector<std::string> InputNames() {
  std::vector<std::string> names;
  names.reserve(AnalogInput::kChannels);
  for (int input = 0; input < AnalogInput::kChannels; ++input) {
    names.push_back("Ch" + PlainNumber(input));
  }
  return names;
}

bool IsInput(int input) {
  return input >= 0 && input < AnalogInput::kChannels;
}

}  // namespace

frmMultipotentiostat::frmMultipotentiostat(Workstation& workstation, Host& host,
                                           Instruments& instruments)
    : MeasureForm(workstation, host, instruments, kWindow),
      monitor_(picVMon, kMonitorColour),
      plot_(host.desktop, "Graph1") {
  for (std::size_t channel = 0; channel < kDisplayChannels; ++channel) {
    cbxADCh[channel].on_select = [this, channel](int input) { MapInput(channel, input); };
    txtScale[channel].on_commit = [this, channel] { TakeScale(channel); };
  }
  for (TextBox* box : {&txtAccum, &txtMaxTime}) box->on_commit = [this] { StoreBoxes(); };
  txtSamplingrate.on_commit = [this] { LeaveSamplingRate(); };
  for (std::size_t i = 0; i < kElectrodes; ++i) {
    txtTitle[i].on_change = [this] { HandDownChoices(); };
  }
  opnMMMeas.on_select = [this](int) { HandDownChoices(); };
  cmdStop.on_click = [this] { ClickStop(); };
  cmdSampling.on_click = [this] { ClickSampling(); };
  LetClearMonitor(cmdClearVMon);
}

bool frmMultipotentiostat::Load() {
  host().dialogs.Message("Once you push 'Start' button, Track 0 to 11's data will be lost!");
  return MeasureForm::Load();
}

// The monitor shows the board's own volts, so that electrodes of any scale share one picture and a
// channel at the board's limit is seen.
void frmMultipotentiostat::MonitorTick() {
  const std::int32_t rounds = MultichannelMonitor::Rounds(settings().MMAccum);
  if (rounds == 0) {
    lblMode.SetText(kNothingRead);
    return;
  }
  DisplayValues values{};
  if (!wiring_.Read(instruments().analog_input, rounds, values)) {
    lblMode.SetText("no reading");
    return;
  }
  ShowIdle();
  for (std::size_t i = 0; i < kElectrodes; ++i) {
    monitor_.Add(values[2 * i], values[2 * i + 1], TrackColor(static_cast<int>(i)));
  }
  static_cast<void>(wiring_.Scale(values));
  ShowCurrents(values);
}

void frmMultipotentiostat::ShowCurrents(const DisplayValues& values) {
  if (chkiMon.value() != 1) return;
  for (std::size_t i = 0; i < kElectrodes; ++i) {
    lblCurrent[i].SetText(Format(values[2 * i + 1], "0.00e+0"));
  }
}

// Tracks 0 to 9 are about to be replaced.
bool frmMultipotentiostat::MayStart() {
  const auto kept = KeepOldTracks(workstation(), host().files);
  lblNotice.SetText(kept.ok() ? kept.value() : "");
  if (!kept.ok()) host().dialogs.Message(kept.why());
  return kept.ok();
}

std::unique_ptr<Technique> frmMultipotentiostat::MakeTechnique() const {
  MultichannelMonitor::Values values;
  values.wiring = wiring_;
  values.sampling_rate = NumberIn(txtSamplingrate);
  values.accumulation = NumberIn(txtAccum);
  values.seconds = NumberIn(txtMaxTime);
  values.empty_scale = settings().PSYScale;
  values.notice = lblNotice.text();
  return std::make_unique<MultichannelMonitor>(std::move(values));
}

RunChoices frmMultipotentiostat::Choices() const {
  RunChoices choices;
  for (std::size_t i = 0; i < kElectrodes; ++i) choices.titles.push_back(txtTitle[i].text());
  choices.method = opnMMMeas.selected();
  return choices;
}

void frmMultipotentiostat::ShowStart(const Technique& technique) {
  reads_nothing_ = MultichannelMonitor::Rounds(settings().MMAccum) == 0;
  plot_.Begin("I-t Graph", technique.Range(), kLook);
}

void frmMultipotentiostat::ShowRecording() {
  lblMode.SetText(reads_nothing_ ? kNothingRead : "Recording");
}

void frmMultipotentiostat::ShowIdle() {
  lblMode.SetText("Voltage Monitor");
}

void frmMultipotentiostat::ShowState(const RunState& state) {
  if (points().Readings() == 0 && state.gaps == 0) return;
  lblMode.SetText("Recording: " + PlainNumber(state.points) + " points, " +
                  FormatDuration(state.elapsed));
}

void frmMultipotentiostat::PointsStored() {
  if (!run().state().notice.empty()) lblNotice.SetText(run().state().notice);
}

void frmMultipotentiostat::DrawPoint(std::int32_t index) {
  const double time = points().At(0, index);
  DisplayValues values{};
  bool changed = false;
  for (std::size_t channel = 0; channel < kDisplayChannels; ++channel) {
    values[channel] = points().At(1 + channel, index);
  }
  ShowCurrents(values);
  for (std::size_t i = 0; i < kElectrodes; ++i) {
    changed = plot_.Include(time, values[2 * i + 1]) || changed;
  }
  if (!DrawsLive()) return;
  if (changed) {
    DrawCurves(index + 1);
    return;
  }
  for (std::size_t i = 0; i < kElectrodes; ++i) {
    plot_.Point(time, values[2 * i + 1], TrackColor(static_cast<int>(i)));
  }
}

void frmMultipotentiostat::DrawCurves(std::int32_t count) {
  plot_.Redraw(kLook);
  for (std::size_t i = 0; i < kElectrodes; ++i) {
    plot_.Curve(points().Column(0, count), points().Column(CurrentColumn(i), count),
                TrackColor(static_cast<int>(i)));
  }
}

// Keeps the reading that is on display. It is kept once, however often the button is pressed
// before the next one.
void frmMultipotentiostat::ClickSampling() {
  if (opnMMMeas.selected() == MultichannelMonitor::kByHand) run().KeepReading();
}

// Ticks that do nothing would never act on the request.
void frmMultipotentiostat::ClickStop() {
  run().Stop();
  if (reads_nothing_) run().EndNow();
}

void frmMultipotentiostat::ShowSettings() {
  Settings& settings = workstation().settings;
  // Lists that a file cut short, and inputs that do not exist, get what they were made with.
  const std::size_t known = std::min(settings.MMScale.size(), kDisplayChannels);
  settings.MMScale.resize(std::max(settings.MMScale.size(), kDisplayChannels));
  for (std::size_t i = known; i < kDisplayChannels; ++i) {
    settings.MMScale[i] = i % 2 == 0 ? 1.0 : 0.005;
  }
  settings.MMAdch.resize(std::max(settings.MMAdch.size(), kDisplayChannels), -1);
  const std::vector<std::string> names = InputNames();
  for (std::size_t i = 0; i < kDisplayChannels; ++i) {
    if (!IsInput(settings.MMAdch[i])) settings.MMAdch[i] = static_cast<std::int16_t>(i);
    cbxADCh[i].SetItems(names);
    cbxADCh[i].Select(settings.MMAdch[i]);
    ShowNumber(txtScale[i], settings.MMScale[i]);
  }
  ShowNumber(txtSamplingrate, settings.MMSamplingRate);
  ShowNumber(txtAccum, settings.MMAccum);
  ShowNumber(txtMaxTime, settings.MMMaxTime);
  LeaveSamplingRate();
  UpdateWiring();
}

void frmMultipotentiostat::StoreBoxes() {
  Settings& settings = workstation().settings;
  LimitBox(txtSamplingrate, SomeRate);
  settings.MMSamplingRate = NumberIn(txtSamplingrate);
  settings.MMAccum = NumberIn(txtAccum);
  settings.MMMaxTime = NumberIn(txtMaxTime);
  for (std::size_t i = 0; i < kDisplayChannels; ++i) TakeScale(i);
}

void frmMultipotentiostat::LeaveSamplingRate() {
  StoreBoxes();
  if (!Measuring()) timer.SetInterval(MonitorInterval());
}

void frmMultipotentiostat::MapInput(std::size_t channel, int input) {
  if (!IsInput(input)) return;
  workstation().settings.MMAdch[channel] = static_cast<std::int16_t>(input);
  UpdateWiring();
}

void frmMultipotentiostat::TakeScale(std::size_t channel) {
  const double scale = NumberIn(txtScale[channel]);
  workstation().settings.MMScale[channel] = scale;
  wiring_.SetScale(channel, scale);
}

void frmMultipotentiostat::UpdateWiring() {
  std::array<std::uint8_t, kDisplayChannels> input{};
  for (std::size_t i = 0; i < kDisplayChannels; ++i) {
    input[i] = static_cast<std::uint8_t>(settings().MMAdch[i]);
    wiring_.SetScale(i, settings().MMScale[i]);
  }
  wiring_.Connect(input);
}

LayoutNode frmMultipotentiostat::Layout() {
  using namespace layout;
  std::vector<LayoutNode> rows = {
      Columns({Text(""), Text("Title"), Text("Potential"), Text("Scale V/V"), Text("Current"),
               Text("Scale A/V"), Text("Current /A")})};
  for (std::size_t i = 0; i < kElectrodes; ++i) {
    rows.push_back(Columns({Text(PlainNumber(i)), Item(txtTitle[i], 2), Item(cbxADCh[2 * i]),
                            Item(txtScale[2 * i]), Item(cbxADCh[2 * i + 1]),
                            Item(txtScale[2 * i + 1]), Item(lblCurrent[i])}));
  }
  return Columns({
      Rows({
          Group("Electrodes (electrode i is stored in track i)", {Table(std::move(rows))}),
          Columns({
              Group("Sampling", {Fields({Field("Sampling Rate/Hz", txtSamplingrate),
                                         Field("Accumlation  x", txtAccum),
                                         Field("Measure Time /s", txtMaxTime)})}),
              Group("Measurement Method",
                    {Item(opnMMMeas), Columns({Item(cmdSampling), Stretch()})}),
          }),
          Stretch(),
      }),
      Rows(
          {
              Group("Voltage Monitor /V",
                    {Item(picVMon, 1), Columns({Item(chkiMon), Stretch(), Item(cmdClearVMon)})}, 1),
              Item(lblMode),
              Item(lblNotice),
              Columns({Item(cmdStart), Item(cmdStop)}),
          },
          1),
  });
}

}  // namespace zento
