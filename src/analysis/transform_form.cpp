#include "analysis/transform_form.h"

#include <algorithm>

#include "analysis/track_points.h"
#include "core/tables.h"
#include "core/track_store.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr int kFirstDestination = 10;

}  // namespace

TransformForm::TransformForm(Workstation& workstation, Host& host, const std::string& name,
                             const std::string& caption)
    : Form(host, name, caption),
      workstation_(workstation),
      source_(txtDataNum, UpDown1),
      destination_(txtDesNum, UpDown2) {
  txtTitle.read_only = true;
  txtRPM.read_only = true;
  txtDestTitle.SetTip("The title that Record Another Track gives the destination");
  source_.on_change = [this] { ShowSource(); };
  destination_.on_change = [this] { ShowDestination(); };
  cmdCalc.on_click = [this] { Calculate(); };
  cmdUpdate.on_click = [this] { UpdateData(); };
  cmdRecordAnotherTrack.on_click = [this] { RecordAnotherTrack(); };
}

bool TransformForm::Load() {
  generation_ = workstation_.DataGeneration;
  source_.Show(0);
  destination_.Show(kFirstDestination);
  ShowSettings();
  ShowSource();
  ShowDestination();
  return true;
}

void TransformForm::Activate() {
  ShowDestination();
  if (generation_ == workstation_.DataGeneration && !SourceChanged()) return ShowHeader();
  generation_ = workstation_.DataGeneration;
  ShowSource();
}

void TransformForm::ShowSource() {
  ShowHeader();
  TakeSource();
}

void TransformForm::ShowHeader() {
  ShowTrackHeader(tracks(), Source(), lblMode, txtTitle, txtRPM);
}

void TransformForm::ShowDestination() {
  const TrackRecord& record = tracks().Record(Destination());
  lblDestMode.SetText(std::string(AtOrNone(ModeName, record.Mode)));
  lblDestHolds.SetText(HoldsTrack(tracks(), Destination()) ? record.Title : "");
}

void TransformForm::EnableWriting(bool update, bool record) {
  cmdUpdate.SetEnabled(update);
  cmdRecordAnotherTrack.SetEnabled(record);
}

void TransformForm::AfterWriting(const std::vector<int>& written) {
  const auto among = [&](int track) { return std::ranges::find(written, track) != written.end(); };
  ShowDestination();
  if (among(Source())) ShowSource();
  if (among(workstation_.shown_track)) workstation_.ShowTrack(workstation_.shown_track);
}

LayoutNode TransformForm::SourceGroup() {
  using namespace layout;
  return Group("Track", {Fields({Field("Track", txtDataNum, &UpDown1), Field("Mode", lblMode),
                                 Field("Title", txtTitle), Field("RPM", txtRPM)})});
}

LayoutNode TransformForm::DestinationGroup() {
  using namespace layout;
  return Group("Destination",
               {Fields({Field("Track", txtDesNum, &UpDown2), Field("Mode", lblDestMode),
                        Field("Holds", lblDestHolds), Field("New title", txtDestTitle)}),
                Item(cmdRecordAnotherTrack)});
}

}  // namespace zento
