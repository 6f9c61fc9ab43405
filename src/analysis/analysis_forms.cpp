#include "analysis/analysis_forms.h"

#include <memory>

namespace zento {
namespace {

template <typename F>
void Register(Desktop& desktop, Workstation& workstation, Host& host) {
  desktop.Register(F::kName,
                   [&workstation, &host] { return std::make_unique<F>(workstation, host); });
}

}  // namespace

void RegisterAnalysisForms(Desktop& desktop, Workstation& workstation, Host& host) {
  static_cast<void>(desktop);
  static_cast<void>(workstation);
  static_cast<void>(host);
}

}  // namespace zento
