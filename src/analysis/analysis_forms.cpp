#include "analysis/analysis_forms.h"

#include <memory>

#include "analysis/calculation_form.h"
#include "analysis/cottrell_form.h"
#include "analysis/coulomb_form.h"
#include "analysis/fft_form.h"
#include "analysis/kl_form.h"
#include "analysis/oxygen_form.h"
#include "analysis/smoothing_form.h"
#include "analysis/tafel_form.h"
#include "host/desktop.h"

namespace zento {
namespace {

template <typename F>
void Register(Desktop& desktop, Workstation& workstation, Host& host) {
  desktop.Register(F::kName,
                   [&workstation, &host] { return std::make_unique<F>(workstation, host); });
}

}  // namespace

void RegisterAnalysisForms(Desktop& desktop, Workstation& workstation, Host& host,
                           const std::vector<std::filesystem::path>& data_folders) {
  desktop.Register(frmSmoothing::kName, [&workstation, &host, data_folders] {
    return std::make_unique<frmSmoothing>(workstation, host, data_folders);
  });
  Register<frmKoutecky_Levich>(desktop, workstation, host);
  Register<frmCottrellEquation>(desktop, workstation, host);
  Register<frmCoulombCalculator>(desktop, workstation, host);
  Register<frmTafelAnalyzer>(desktop, workstation, host);
  Register<frmO2Reduction>(desktop, workstation, host);
  Register<frmFFTFilter>(desktop, workstation, host);
  Register<frmCalculation>(desktop, workstation, host);
}

}  // namespace zento
