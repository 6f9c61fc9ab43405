#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/workstation.h"
#include "host/controls.h"
#include "host/form.h"
#include "ui/main/clipboard_copy.h"
#include "ui/main/table_text.h"
#include "ui/main/thinning.h"

namespace zento {

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

  Label lblTrack;
  OptionGroup opnDiskUnit;  // A, mA, uA, nA from 0 on
  OptionGroup opnRingUnit;
  OptionGroup opnNormalisation;
  CheckBox chkLog;
  CheckBox chkAbsolute;
  CheckBox chkH2O;
  TextBox txtCE;  // N, the setting of the oxygen analysis
  OptionGroup opnPolarity;
  OptionGroup opnCycles;
  TextBox txtCycle;  // from 1 on
  UpDown updCycle;
  Label lblCycles;
  CheckBox chkHeader;
  TextBox txtAngle;     // degrees
  TextBox txtDistance;  // fractions of the display range
  TextBox txtOrder;
  Button cmdCopy;
  Button cmdClose;
  Label lblNotice;

 private:
  void SetTips();
  void ShowTrack();
  const TrackRecord& Record() const { return workstation_.tracks.Record(track_); }
  // The first and last points of the cycles, one after another.
  std::vector<std::int32_t> CycleEnds() const;
  int Cycles() const;
  int ChosenCycle() const;
  void StepCycle(int direction);
  // Why the options cannot be followed; empty when they can.
  std::string Hindrance() const;
  TableOptions Options();
  std::vector<std::int32_t> ChosenPoints();
  Thinning ChosenThinning() const;

  Workstation& workstation_;
  ClipboardCopy copy_;
  int track_ = 0;
};

}  // namespace zento
