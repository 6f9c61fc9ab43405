#include "ui/main/search_form.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/tables.h"
#include "core/track_store.h"
#include "host/desktop.h"
#include "host/dialogs.h"
#include "host/host.h"
#include "host/path_text.h"
#include "text/number.h"
#include "ui/main/file_lists.h"
#include "ui/main/recent_files.h"

namespace zento {
namespace {

constexpr char kName[] = "frmSearchTrack";
constexpr int kColumnCount = 6;
constexpr int kDigits = 15;
constexpr int kProgressSteps = 1000;

std::vector<std::string> ModeNames() {
  return {ModeName.begin(), ModeName.end()};
}

// In characters, not bytes.
std::string LastCharacters(const std::string& text, int count) {
  std::size_t at = text.size();
  while (at > 0 && count > 0) {
    --at;
    const bool begins = (static_cast<unsigned char>(text[at]) & 0xC0U) != 0x80U;
    if (begins) --count;
  }
  return text.substr(at);
}

std::string Counted(std::size_t count, const char* what) {
  return PlainNumber(count) + " " + what + (count == 1 ? "" : "s");
}

}  // namespace

frmSearchTrack::frmSearchTrack(Workstation& workstation, Host& host, LastFolder last)
    : Form(host, kName, "Search Track"),
      lists(*this, std::move(last), StartFolder(host.files, workstation.home)),
      SearchResult(*this, "SearchResult", 0, kColumnCount),
      workstation_(workstation) {
  ConnectSearch();
  ConnectImport();
}

void frmSearchTrack::ConnectSearch() {
  KeyWords.SetTip(
      "Words apart by blanks; all of them must stand in the title, upper and lower case "
      "as typed");
  txtRPM.SetTip("In rpm, exactly");
  txtScanrate.SetTip("In mV/s, exactly");
  cbxMeasurement.SetItems(ModeNames());
  cbxMeasurement.Select(kModeCV);
  cmdSearch.is_default = true;
  cmdCancel.SetEnabled(false);
  SearchProgress.SetRange(kProgressSteps);
  SearchResult.headings = {"Filename", "Track", "Title", "Method", "RPM", "Scanrate"};
  SearchResult.column_widths = {220, 50, -1, 70, 70, 70};
  SearchTimer.SetInterval(1);
  SearchTimer.on_tick = [this] { Work(); };
  cmdSearch.on_click = [this] { cmdSearch_Click(); };
  cmdCancel.on_click = [this] {
    if (searching()) Finish(true);
  };
}

void frmSearchTrack::ConnectImport() {
  SearchResult.on_click = [this](int row, int) { SelectResult(row); };
  txtTrack.SetTip("The track to import into, 0 to 20");
  UpDown1.on_up = [this] { SetTargetTrack((target_ + 1) % kTracks); };
  UpDown1.on_down = [this] { SetTargetTrack((target_ + kTracks - 1) % kTracks); };
  txtTrack.on_commit = [this] { StoreTypedTrack(); };
  cmdImport.on_click = [this] { cmdImport_Click(); };
  cmdClose.on_click = [&desktop = host().desktop] { desktop.Unload(kName); };
}

bool frmSearchTrack::Load() {
  lists.Begin();
  ClearFilePreview(PrevGraph);
  SetTargetTrack(workstation_.shown_track);
  return true;
}

void frmSearchTrack::Activate() {
  lists.Refresh();
  SetTargetTrack(target_);
}

LayoutNode frmSearchTrack::Layout() {
  using namespace layout;
  return Columns(
      {Rows({lists.Layout(), Item(chkSubfolders)}, 1),
       Rows({Columns({Group("Criteria",
                            {Table({Columns({Item(opnTitle), Item(KeyWords)}),
                                    Columns({Item(opnMeasurement), Item(cbxMeasurement)}),
                                    Columns({Item(opnRPM), Item(txtRPM)}),
                                    Columns({Item(opnScanrate), Item(txtScanrate)})})},
                            1),
                      Rows({Item(cmdSearch), Item(cmdCancel), Stretch()})}),
             Item(SearchProgress), Item(lblState), Item(SearchResult, 1), Item(PrevGraph, 1),
             Columns({Fields({Field("Import into track", txtTrack, &UpDown1)}),
                      Item(lblTrackTitle, 1), Item(cmdImport), Item(cmdClose)})},
            3)});
}

void frmSearchTrack::SetTargetTrack(int track) {
  target_ = std::clamp(track, 0, kTracks - 1);
  txtTrack.SetText(PlainNumber(target_));
  lblTrackTitle.SetText(workstation_.tracks.Record(target_).Title);
}

void frmSearchTrack::StoreTypedTrack() {
  SetTargetTrack(ToLong(ParseLenient(txtTrack.text())));
}

TypedCriteria frmSearchTrack::Criteria() const {
  TypedCriteria criteria;
  if (opnMeasurement.value() == 1) criteria.mode = cbxMeasurement.selected();
  if (opnScanrate.value() == 1) criteria.scanrate = txtScanrate.text();
  if (opnRPM.value() == 1) criteria.rpm = txtRPM.text();
  if (opnTitle.value() == 1) criteria.keywords = KeyWords.text();
  return criteria;
}

void frmSearchTrack::cmdSearch_Click() {
  const auto criteria = ParseCriteria(Criteria());
  if (!criteria.ok()) return host().dialogs.Message(criteria.why());
  lists.Refresh();
  search_ = std::make_unique<TrackSearch>(host().files, host().clock, criteria.value(),
                                          lists.folder(), chkSubfolders.value() == 1);
  shown_hits_ = 0;
  selected_ = -1;
  SearchResult.SelectRow(-1);
  SearchResult.Resize(0, kColumnCount);
  ClearFilePreview(PrevGraph);
  cmdSearch.SetEnabled(false);
  cmdCancel.SetEnabled(true);
  SearchTimer.SetEnabled(true);
  ShowProgress();
}

void frmSearchTrack::Work() {
  const bool more = search_->Work();
  ShowHits();
  if (more) {
    ShowProgress();
  } else {
    Finish(false);
  }
}

void frmSearchTrack::Finish(bool cancelled) {
  SearchTimer.SetEnabled(false);
  cmdSearch.SetEnabled(true);
  cmdCancel.SetEnabled(false);
  SearchProgress.SetPosition(cancelled ? 0 : kProgressSteps);
  lblState.SetText((cancelled ? "Cancelled: " : "") + search_->Summary());
}

// Those found since the last time.
void frmSearchTrack::ShowHits() {
  const std::vector<SearchHit>& hits = search_->hits();
  if (hits.size() == shown_hits_) return;
  constexpr int kPathCharacters = 30;
  SearchResult.SetRedraw(false);
  SearchResult.Resize(static_cast<int>(hits.size()), kColumnCount);
  for (; shown_hits_ < hits.size(); ++shown_hits_) {
    const SearchHit& hit = hits[shown_hits_];
    const int row = static_cast<int>(shown_hits_);
    SearchResult.SetCell(row, 0, LastCharacters(TextFromPath(hit.path), kPathCharacters));
    SearchResult.SetCell(row, 1, PlainNumber(hit.track));
    SearchResult.SetCell(row, 2, hit.title);
    SearchResult.SetCell(row, 3, std::string(AtOrNone(ModeName, hit.mode)));
    SearchResult.SetCell(row, 4, PlainNumber(hit.rpm, kDigits));
    SearchResult.SetCell(row, 5, PlainNumber(hit.scanrate, kDigits));
  }
  SearchResult.SetRedraw(true);
}

void frmSearchTrack::ShowProgress() {
  const auto position = static_cast<int>(search_->Done() * kProgressSteps);
  if (position != SearchProgress.position()) SearchProgress.SetPosition(position);
  if (!search_->counted()) {
    lblState.SetText("Looking into folders: " + Counted(search_->file_count(), "file"));
    return;
  }
  lblState.SetText(PlainNumber(search_->files_done()) + " of " +
                   Counted(search_->file_count(), "file") + ", " +
                   Counted(search_->hits().size(), "track") + " found");
}

void frmSearchTrack::SelectResult(int row) {
  selected_ = row;
  const SearchHit& hit = search_->hits()[static_cast<std::size_t>(row)];
  PreviewFileTrack(PrevGraph, workstation_, host().files, hit.path, hit.track);
}

void frmSearchTrack::cmdImport_Click() {
  if (selected_ < 0) {
    host().dialogs.Message("Please Select a Track!");
    return;
  }
  StoreTypedTrack();
  const SearchHit& hit = search_->hits()[static_cast<std::size_t>(selected_)];
  const Status imported = ImportFileTrack(workstation_, host().files, hit.path, hit.track, target_);
  SetTargetTrack(target_);
  if (!imported.ok()) {
    host().dialogs.Message("Import track: " + imported.why());
    return;
  }
  lblState.SetText("Imported into track " + PlainNumber(target_));
}

}  // namespace zento
