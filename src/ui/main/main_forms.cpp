#include "ui/main/main_forms.h"

#include <memory>

#include "ui/main/control_panel.h"
#include "ui/main/settings_form.h"

namespace zento {

void RegisterMainForms(Desktop& desktop, Workstation& workstation, Host& host,
                       Instruments& instruments) {
  desktop.Register("frmControlPanel", [&workstation, &host, &instruments] {
    return std::make_unique<frmControlPanel>(workstation, host, instruments);
  });
  desktop.Register("frmSettings", [&workstation, &host] {
    return std::make_unique<frmSettings>(workstation, host);
  });
}

}  // namespace zento
