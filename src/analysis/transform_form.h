#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "analysis/track_selection.h"
#include "core/workstation.h"
#include "host/controls.h"
#include "host/form.h"

namespace zento {

// What the windows share that make new points out of a track's and write them into the same track
// or into another one: the choice of both tracks, and the three buttons. What was calculated counts
// as long as the source, its points and the settings are the ones it was calculated with.
class TransformForm : public Form {
 public:
  TransformForm(Workstation& workstation, Host& host, const std::string& name,
                const std::string& caption);

  TextBox txtDataNum{*this, "txtDataNum"};  // source track
  UpDown UpDown1{*this, "UpDown1"};
  Label lblMode{*this, "lblMode"};
  TextBox txtTitle{*this, "txtTitle"};
  TextBox txtRPM{*this, "txtRPM"};
  Button cmdCalc{*this, "cmdCalc", "Calculation"};
  Button cmdUpdate{*this, "cmdUpdate", "Update Data"};
  TextBox txtDesNum{*this, "txtDesNum"};  // destination track
  UpDown UpDown2{*this, "UpDown2"};
  Label lblDestMode{*this, "lblDestMode"};
  Label lblDestHolds{*this, "lblDestHolds"};    // the title that the destination has now
  TextBox txtDestTitle{*this, "txtDestTitle"};  // the title that it is given
  Button cmdRecordAnotherTrack{*this, "cmdRecordAnotherTrack", "Record Another Track"};
  Label lblNote{*this, "lblNote"};  // what was done, or why nothing was

  // Shows the settings, and tracks 0 and 10.
  bool Load() override;
  // Shows the source anew when its points were changed or another track file was opened.
  void Activate() override;

  // What cmdCalc does. Nothing for an empty source.
  virtual void Calculate() = 0;
  // Write what Calculate() has found; nothing when that no longer counts.
  virtual void UpdateData() = 0;
  virtual void RecordAnotherTrack() = 0;

 protected:
  virtual void ShowSettings() = 0;
  // Takes the source track as it is now and shows it.
  virtual void TakeSource() = 0;
  // The source is no longer the one that was taken.
  virtual bool SourceChanged() const = 0;

  void ShowSource();
  // Mode, title and rotation rate of the source.
  void ShowHeader();
  void ShowDestination();
  void EnableWriting(bool update, bool record);
  // Shows what the tracks have become, here and in the main window.
  void AfterWriting(const std::vector<int>& written);

  int Source() const { return source_.track(); }
  int Destination() const { return destination_.track(); }
  Workstation& workstation() const { return workstation_; }
  TrackStore& tracks() const { return workstation_.tracks; }
  LayoutNode SourceGroup();
  LayoutNode DestinationGroup();

 private:
  Workstation& workstation_;
  TrackSelector source_;
  TrackSelector destination_;
  std::int32_t generation_ = 0;  // of the track files
};

}  // namespace zento
