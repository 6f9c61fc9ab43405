#pragma once

#include "core/workstation.h"
#include "host/controls.h"
#include "host/form.h"

namespace zento {

// frmEditTracks: copies, moves or swaps whole tracks.
class frmEditTracks : public Form {
 public:
  static constexpr const char* kName = "frmEditTracks";

  frmEditTracks(Workstation& workstation, Host& host);

  TextBox txtSourceTrack{*this, "txtSourceTrack", "0"};
  UpDown updSource{*this, "updSource"};
  Label lblSourceTrack{*this, "lblSourceTrack"};  // the track's record
  TextBox txtDestinationTrack{*this, "txtDestinationTrack", "0"};
  UpDown updDestination{*this, "updDestination"};
  Label lblDestinationTrack{*this, "lblDestinationTrack"};
  Button cmdCopy{*this, "cmdCopy", "Copy"};
  Button cmdMove{*this, "cmdMove", "Move"};
  Button cmdSwap{*this, "cmdSwap", "Swap"};
  Button cmdClose{*this, "cmdClose", "Close"};

  bool Load() override;
  void Activate() override;
  LayoutNode Layout() override;

 private:
  void Wire(TextBox& box, UpDown& arrows, int& track);
  void Choose(TextBox& box, int& track, int wanted);
  void ShowTracks();
  bool Refused(const char* doing);
  void CopyTrack(int from, int to);
  void cmdCopy_Click();
  void cmdMove_Click();
  void cmdSwap_Click();
  // The main window shows what its track has become.
  void AfterChange();

  Workstation& workstation_;
  int source_ = 0;
  int destination_ = 0;
};

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
