#include "measure/sweep_form.h"

#include "core/tables.h"
#include "text/number.h"

namespace zento {

bool SweepForm::Load() {
  cbxReference.SetItems({RefName.begin(), RefName.end()});
  cbxReference.on_select = [this](int) { StoreSettings(); };
  return MeasureForm::Load();
}

void SweepForm::SetVoltage(double first, double second, double third) {
  ShowNumber(txtVoltSetting[0], first);
  ShowNumber(txtVoltSetting[1], second);
  ShowNumber(txtVoltSetting[2], third);
}

void SweepForm::scanrate(double millivolts_per_second) {
  ShowNumber(txtScanrate, millivolts_per_second < 0 ? 0.001 : millivolts_per_second);
}

void SweepForm::Accumlation(std::int32_t readings) {
  ShowNumber(txtAccum, readings);
  LimitBox(txtAccum, AtLeastOne);
}

SweepValues SweepForm::Values() const {
  SweepValues values;
  for (std::size_t i = 0; i < values.v.size(); ++i) values.v[i] = NumberIn(txtVoltSetting[i]);
  values.scan_rate = NumberIn(txtScanrate);
  values.cycles = NumberIn(txtCycleNum);
  values.retain_seconds = NumberIn(txtRetainTime);
  values.rpm = NumberIn(txtRPM);
  values.sampling_rate = NumberIn(txtSamplingrate);
  values.accumulation = NumberIn(txtAccum);
  values.generator = HasGenerator();
  return values;
}

std::int32_t SweepForm::ChosenReference(std::int32_t kept) const {
  return cbxReference.selected() >= 0 ? cbxReference.selected() : kept;
}

std::optional<std::int32_t> SweepForm::Remaining(const RunState& state) const {
  if (!run().Recording() || !state.planned) return std::nullopt;
  return ToLong(static_cast<double>(*state.planned - state.elapsed) / 1000);
}

void SweepForm::ShowStart(const Technique&) {
  lblTimeRemain.SetText("");
  lblMode.SetText("Waiting for the sweep");
}

}  // namespace zento
