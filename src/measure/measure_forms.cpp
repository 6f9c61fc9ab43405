#include <memory>

#include "measure/cv_form.h"
#include "measure/measure_form.h"
#include "measure/multi_form.h"
#include "measure/rde_form.h"
#include "measure/rpm_form.h"
#include "measure/step_form.h"

namespace zento {

void RegisterMeasureForms(Desktop& desktop, Workstation& workstation, Host& host,
                          Instruments& instruments) {
  desktop.Register("frmMeasureCV",
                   [&] { return std::make_unique<frmMeasureCV>(workstation, host, instruments); });
  desktop.Register("frmMeasureRDE",
                   [&] { return std::make_unique<frmMeasureRDE>(workstation, host, instruments); });
  desktop.Register("frmMultipotentiostat", [&] {
    return std::make_unique<frmMultipotentiostat>(workstation, host, instruments);
  });
  desktop.Register("frmPotentialStep", [&] {
    return std::make_unique<frmPotentialStep>(workstation, host, instruments);
  });
  desktop.Register("frmMeasureRPMvsj", [&] {
    return std::make_unique<frmMeasureRPMvsj>(workstation, host, instruments);
  });
}

}  // namespace zento
