// What stands in the multichannel monitor's boxes: inputs and scales of the channels, the rates,
// and the layout.

#include <algorithm>

#include "measure/entries.h"
#include "measure/multi_form.h"
#include "text/number.h"

namespace zento {
namespace {

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

void frmMultipotentiostat::WireBoxes() {
  for (std::size_t channel = 0; channel < kChannels; ++channel) {
    cbxADCh[channel].on_select = [this, channel](int input) { MapInput(channel, input); };
    txtScale[channel].on_commit = [this, channel] { TakeScale(channel); };
  }
  for (TextBox* box : {&txtAccum, &txtMaxTime}) box->on_commit = [this] { StoreEntries(); };
  txtSamplingrate.on_commit = [this] { LeaveSamplingRate(); };
}

void frmMultipotentiostat::RestoreEntries() {
  Settings& settings = workstation().settings;
  // Lists that a file cut short, and inputs that do not exist, get what they were made with.
  const std::size_t known = std::min(settings.MMScale.size(), kChannels);
  settings.MMScale.resize(std::max(settings.MMScale.size(), kChannels));
  for (std::size_t i = known; i < kChannels; ++i) settings.MMScale[i] = i % 2 == 0 ? 1.0 : 0.005;
  settings.MMAdch.resize(std::max(settings.MMAdch.size(), kChannels), -1);
  const std::vector<std::string> names = InputNames();
  for (std::size_t i = 0; i < kChannels; ++i) {
    if (!IsInput(settings.MMAdch[i])) settings.MMAdch[i] = static_cast<std::int16_t>(i);
    cbxADCh[i].SetItems(names);
    cbxADCh[i].Select(settings.MMAdch[i]);
    txtScale[i].SetText(PlainNumber(settings.MMScale[i]));
  }
  txtSamplingrate.SetText(PlainNumber(settings.MMSamplingRate));
  txtAccum.SetText(PlainNumber(settings.MMAccum));
  txtMaxTime.SetText(PlainNumber(settings.MMMaxTime));
  LeaveSamplingRate();
  UpdateWiring();
}

void frmMultipotentiostat::StoreEntries() {
  Settings& settings = workstation().settings;
  LimitToSomeRate(txtSamplingrate);
  settings.MMSamplingRate = NumberIn(txtSamplingrate);
  settings.MMAccum = NumberIn(txtAccum);
  settings.MMMaxTime = NumberIn(txtMaxTime);
  for (std::size_t i = 0; i < kChannels; ++i) TakeScale(i);
}

void frmMultipotentiostat::LeaveSamplingRate() {
  StoreEntries();
  if (!Measuring()) MMTimer.SetInterval(PeriodRounded(settings().MMSamplingRate));
}

void frmMultipotentiostat::MapInput(std::size_t channel, int input) {
  if (!IsInput(input)) return;
  workstation().settings.MMAdch[channel] = static_cast<std::int16_t>(input);
  UpdateWiring();
}

void frmMultipotentiostat::TakeScale(std::size_t channel) {
  const double scale = NumberIn(txtScale[channel]);
  workstation().settings.MMScale[channel] = scale;
  wiring_.scale[channel] = scale;
}

void frmMultipotentiostat::UpdateWiring() {
  std::array<bool, AnalogInput::kChannels> used{};
  for (std::size_t i = 0; i < kChannels; ++i) {
    wiring_.input[i] = static_cast<std::uint8_t>(settings().MMAdch[i]);
    wiring_.scale[i] = settings().MMScale[i];
    used[wiring_.input[i]] = true;
  }
  wiring_.inputs.clear();
  std::array<std::size_t, AnalogInput::kChannels> places{};
  for (std::size_t input = 0; input < used.size(); ++input) {
    if (!used[input]) continue;
    places[input] = wiring_.inputs.size();
    wiring_.inputs.push_back(static_cast<std::uint8_t>(input));
  }
  for (std::size_t i = 0; i < kChannels; ++i) wiring_.place[i] = places[wiring_.input[i]];
}

// 0 when nothing is to be read.
std::int32_t frmMultipotentiostat::Rounds() const {
  const double accumulation = settings().MMAccum;
  return ToLong(accumulation) < 1 ? 0 : AccumulationRounds(accumulation);
}

std::vector<RunParameter> frmMultipotentiostat::Parameters() const {
  const Wiring& wiring = plan_.wiring;
  const std::array<std::string, 3> methods = {"by time, " + FormatDuration(plan_.limit),
                                              "until stopped", "points kept by button"};
  std::vector<RunParameter> parameters = {
      {"Target tracks", "0 to 9"},
      {"Method", methods[static_cast<std::size_t>(std::max(opnMMMeas.selected(), 0))]},
      {"Sampling", PlainNumber(plan_.sampling_rate) + " Hz, " + PlainNumber(plan_.rounds) +
                       " readings a point"},
  };
  for (std::size_t i = 0; i < kElectrodes; ++i) {
    const auto channel = [&wiring](std::size_t c, const char* unit) {
      return "input " + PlainNumber(wiring.input[c]) + " x " + PlainNumber(wiring.scale[c]) + unit;
    };
    const std::string& title = txtTitle[i].text();
    parameters.push_back({"Electrode " + PlainNumber(i),
                          (title.empty() ? "" : title + ", ") + "potential " +
                              channel(2 * i, " V/V") + ", current " + channel(2 * i + 1, " A/V")});
  }
  return parameters;
}

void frmMultipotentiostat::SetSize(std::int16_t left, std::int16_t top, std::int16_t width,
                                   std::int16_t height) {
  RequestGeometry({true, left, top, width, height});
}

void frmMultipotentiostat::QuitMMMeasurement() {
  host().desktop.Unload(name());
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
