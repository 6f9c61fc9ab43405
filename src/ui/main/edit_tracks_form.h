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

  TextBox txtSourceTrack;
  UpDown updSource;
  Label lblSourceTrack;  // the track's record
  TextBox txtDestinationTrack;
  UpDown updDestination;
  Label lblDestinationTrack;
  Button cmdCopy;
  Button cmdMove;
  Button cmdSwap;
  Button cmdClose;

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

}  // namespace zento
