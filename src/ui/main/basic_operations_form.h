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

  OptionGroup opnOperation;  // as in BasicOperation
  TextBox txtOperand;
  ControlArray<CheckBox, 3> chkCh;
  Button cmdPreview;
  Button cmdUpdate;  // once there is a preview of what is chosen
  Button cmdClose;

  bool Load() override;
  void Activate() override;
  LayoutNode Layout() override;

 private:
  void OfferColumns();
  void cmdPreview_Click();
  void cmdUpdate_Click();
};

}  // namespace zento
