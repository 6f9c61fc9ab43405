#pragma once

#include "core/workstation.h"
#include "host/controls.h"
#include "host/form.h"

namespace zento {

// frmBasicOperations: adds a number to columns of the track in frmEditATrack, or subtracts,
// multiplies, divides by it.
class frmBasicOperations : public Form {
 public:
  static constexpr const char* kName = "frmBasicOperations";

  explicit frmBasicOperations(Host& host);

  OptionGroup opnOperation{*this, "opnOperation", {"+", "-", "*", "/"}, 0};  // as in BasicOperation
  TextBox txtOperand{*this, "txtOperand", "0"};
  ControlArray<CheckBox, 3> chkCh{*this, "chkCh", {"ch 0", "ch 1", "ch 2"}};
  Button cmdPreview{*this, "cmdPreview", "Preview"};
  Button cmdUpdate{*this, "cmdUpdate", "Update"};  // once there is a preview of what is chosen
  Button cmdClose{*this, "cmdClose", "Close"};

  bool Load() override;
  void Activate() override;
  LayoutNode Layout() override;

 private:
  void OfferColumns();
  void cmdPreview_Click();
  void cmdUpdate_Click();
};

}  // namespace zento
