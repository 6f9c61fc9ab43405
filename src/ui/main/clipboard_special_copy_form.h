#pragma once

#include "core/workstation.h"
#include "exchange/exporters.h"
#include "host/controls.h"
#include "host/form.h"
#include "ui/main/clipboard_copy.h"

namespace zento {

struct TrackRecord;

// frmSpecialCopy: the track that the main window shows as a table on the clipboard, in the units
// and with the points that are wanted.
class frmSpecialCopy : public Form {
 public:
  static constexpr const char* kName = "frmSpecialCopy";

  frmSpecialCopy(Workstation& workstation, Host& host);

  bool Load() override;
  void Unload() override;
  // Shows the main window's track of now.
  void Activate() override;
  LayoutNode Layout() override;

  // What the button does: refuses with a message what cannot be calculated.
  void Copy();

  Label lblTrack{*this, "lblTrack"};
  OptionGroup opnDiskUnit;  // A, mA, uA, nA from 0 on
  OptionGroup opnRingUnit;
  OptionGroup opnNormalisation{*this, "opnNormalisation", {"None", "Per area", "Per weight"}, 0};
  CheckBox chkLog{*this, "chkLog", "Logarithm"};
  CheckBox chkAbsolute{*this, "chkAbsolute", "Absolute values"};
  CheckBox chkH2O{*this, "chkH2O", "%H2O"};
  TextBox txtCE{*this, "txtCE"};  // N, the setting of the oxygen analysis
  OptionGroup opnPolarity{
      *this, "opnPolarity", {"All points", "Disk current > 0", "Disk current < 0"}, 0};
  OptionGroup opnCycles;
  TextBox txtCycle{*this, "txtCycle", "1"};  // from 1 on
  UpDown updCycle{*this, "updCycle"};
  Label lblCycles{*this, "lblCycles"};
  CheckBox chkHeader{*this, "chkHeader", "Header block"};
  TextBox txtAngle{*this, "txtAngle", "0"};        // degrees
  TextBox txtDistance{*this, "txtDistance", "0"};  // fractions of the display range
  TextBox txtOrder{*this, "txtOrder", "0"};
  Button cmdCopy{*this, "cmdCopy", "Copy"};
  Button cmdClose{*this, "cmdClose", "Close"};
  Label lblNotice{*this, "lblNotice"};

 private:
  void SetTips();
  void ShowTrack();
  const TrackRecord& Record() const { return workstation_.tracks.Record(track_); }
  int Cycles() const;
  int ChosenCycle() const;
  void StepCycle(int direction);
  ExportOptions Options() const;

  Workstation& workstation_;
  ClipboardCopy copy_;
  int track_ = 0;
};

}  // namespace zento
