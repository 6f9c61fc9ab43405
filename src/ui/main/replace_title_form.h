#pragma once

#include "core/workstation.h"
#include "host/controls.h"
#include "host/form.h"

namespace zento {

// frmReplaceTitle: replaces a text in the titles of all tracks.
class frmReplaceTitle : public Form {
 public:
  static constexpr const char* kName = "frmReplaceTitle";

  frmReplaceTitle(Workstation& workstation, Host& host);

  TextBox txtBefore{*this, "txtBefore"};
  TextBox txtAfter{*this, "txtAfter"};
  Button cmdGo{*this, "cmdGo", "Go"};
  Button cmdClose{*this, "cmdClose", "Close"};
  Label lblNotice{*this, "lblNotice"};  // in how many titles it was

  LayoutNode Layout() override;

 private:
  void cmdGo_Click();

  Workstation& workstation_;
};

}  // namespace zento
