#include "ui/main/main_forms.h"

#include <filesystem>
#include <memory>

#include "host/desktop.h"
#include "ui/main/basic_operations_form.h"
#include "ui/main/clipboard_copy.h"
#include "ui/main/clipboard_special_copy_form.h"
#include "ui/main/control_panel.h"
#include "ui/main/edit_a_track_form.h"
#include "ui/main/edit_tracks_form.h"
#include "ui/main/import_form.h"
#include "ui/main/search_form.h"
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
  desktop.Register(frmProgressWindow::kName,
                   [&host] { return std::make_unique<frmProgressWindow>(host); });
  desktop.Register(frmSpecialCopy::kName, [&workstation, &host] {
    return std::make_unique<frmSpecialCopy>(workstation, host);
  });
  desktop.Register(frmEditTracks::kName, [&workstation, &host] {
    return std::make_unique<frmEditTracks>(workstation, host);
  });
  desktop.Register(frmReplaceTitle::kName, [&workstation, &host] {
    return std::make_unique<frmReplaceTitle>(workstation, host);
  });
  desktop.Register(frmEditATrack::kName, [&workstation, &host] {
    return std::make_unique<frmEditATrack>(workstation, host);
  });
  desktop.Register(frmBasicOperations::kName,
                   [&host] { return std::make_unique<frmBasicOperations>(host); });
  const auto last_folder = std::make_shared<std::filesystem::path>();
  desktop.Register("frmImportTrack", [&workstation, &host, last_folder] {
    return std::make_unique<frmImportTrack>(workstation, host, last_folder);
  });
  desktop.Register("frmSearchTrack", [&workstation, &host, last_folder] {
    return std::make_unique<frmSearchTrack>(workstation, host, last_folder);
  });
}

}  // namespace zento
