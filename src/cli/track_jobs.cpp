#include "cli/track_jobs.h"

#include <algorithm>
#include <cstdint>
#include <system_error>

#include "cli/track_session.h"
#include "core/tables.h"
#include "core/track_file.h"
#include "core/track_store.h"
#include "host/path_text.h"
#include "text/number.h"
#include "ui/main/import_form.h"
#include "ui/main/search_form.h"

namespace zento {
namespace {

constexpr std::int64_t kLongestSearch = std::int64_t{24} * 3600 * 1'000'000;  // of virtual time

// Before anything is done, so that no work is lost.
Status CheckSave(const SaveRequest& save, const std::filesystem::path& source, Files& files) {
  const std::filesystem::path file = TrackFileName(save.path);
  const std::filesystem::path folder = file.parent_path();
  if (!folder.empty() && !files.Exists(folder)) {
    return Status::Failure("there is no folder " + TextFromPath(folder));
  }
  if (!files.Exists(file)) return Status::Ok();
  std::error_code unknown;
  if (std::filesystem::equivalent(file, source, unknown)) {
    return Status::Failure(TextFromPath(file) + " is the file the tracks come from; it is never " +
                           "changed: save to another file");
  }
  if (save.overwrite) return Status::Ok();
  return Status::Failure(TextFromPath(file) +
                         " exists already: save to another file, or --overwrite it");
}

// A window's list of files stands under full paths.
std::filesystem::path Full(const std::filesystem::path& path) {
  std::error_code failed;
  const std::filesystem::path full = std::filesystem::absolute(path, failed);
  return (failed ? path : full).lexically_normal();
}

Result<std::string> ModeIndex(const std::string& mode) {
  std::string names;
  for (std::size_t i = 1; i < ModeName.size(); ++i) {
    if (ModeName[i] == mode) return PlainNumber(i);
    names += " " + std::string(ModeName[i]);
  }
  return Status::Failure("--mode: '" + mode + "' is not one of" + names);
}

// Checks a criterion and fills in its value.
Status Criterion(TrackSession& session, Form& form, const char* check, const char* control,
                 const std::optional<std::string>& value) {
  if (!value) return Status::Ok();
  if (Status checked = session.Set(form, check, "1"); !checked.ok()) return checked;
  return session.Set(form, control, *value);
}

Status CheckNumber(const char* option, const std::optional<std::string>& value) {
  if (!value || ParseStrict(*value)) return Status::Ok();
  return Status::Failure(std::string(option) + ": '" + *value + "' is not a number");
}

Status EnterCriteria(TrackSession& session, Form& form, const SearchRequest& request) {
  std::optional<std::string> mode;
  if (request.mode) {
    const auto index = ModeIndex(*request.mode);
    if (!index.ok()) return index.status();
    mode = index.value();
  }
  for (const Status& status :
       {CheckNumber("--rpm", request.rpm), CheckNumber("--scan-rate", request.scan_rate),
        session.Set(form, "chkSubfolders", request.subfolders ? "1" : "0"),
        Criterion(session, form, "opnTitle", "KeyWords", request.title),
        Criterion(session, form, "opnMeasurement", "cbxMeasurement", mode),
        Criterion(session, form, "opnRPM", "txtRPM", request.rpm),
        Criterion(session, form, "opnScanrate", "txtScanrate", request.scan_rate)}) {
    if (!status.ok()) return status;
  }
  return Status::Ok();
}

}  // namespace

Status BeginTrackJob(TrackSession& session, const std::filesystem::path& file,
                     const SaveRequest& save, Files& files, std::vector<std::string>& notes) {
  if (Status checked = CheckSave(save, file, files); !checked.ok()) return checked;
  if (Status started = session.Start(); !started.ok()) return started;
  return session.OpenFile(file, notes);
}

Result<JobTold> ImportIntoFile(const ImportRequest& request, Files& files) {
  TrackSession session(files, request.home);
  JobTold told;
  Status begun = BeginTrackJob(session, request.file, request.save, files, told.notes);
  if (!begun.ok()) return begun;
  session.panel().ShowDataInfo(request.track);
  const auto shown = session.Show("frmImportTrack");
  if (!shown.ok()) return shown.status();
  auto& form = dynamic_cast<frmImportTrack&>(*shown.value());
  if (Status chosen = form.ChooseFile(Full(request.from)); !chosen.ok()) return chosen;
  const auto remark = [&] {
    const std::string& text = form.lblNotice.text();
    const bool new_one = std::ranges::find(told.notes, text) == told.notes.end();
    if (!text.empty() && new_one) told.notes.push_back(text);
  };
  remark();
  if (Status row = form.fgcDataSheet.UserClickCell(request.source + 1, 0); !row.ok()) return row;
  remark();
  if (Status clicked = session.Click(form, "cmdImport"); !clicked.ok()) return clicked;
  told.messages = session.TakeMessages();
  if (!told.messages.empty()) return told;
  remark();
  if (Status saved = session.Save(request.save.path); !saved.ok()) return saved;
  return told;
}

Result<JobTold> PasteIntoFile(const PasteRequest& request, Files& files) {
  TrackSession session(files, request.home);
  JobTold told;
  Status begun = BeginTrackJob(session, request.file, request.save, files, told.notes);
  if (!begun.ok()) return begun;
  session.panel().ShowDataInfo(request.track);
  session.clipboard().SetText(request.text);
  Status clicked = session.Click(session.panel(), "mnuPastefromClip");
  if (!clicked.ok()) return clicked;
  told.messages = session.TakeMessages();
  if (!told.messages.empty()) return told;
  const TrackRecord& record = session.workstation().tracks.Record(request.track);
  if (record.Mode == kModeNone || record.pnum == 0) {
    return Status::Failure("the text holds no track: " + session.panel().lblNotice.text());
  }
  told.notes.push_back(session.panel().lblNotice.text());
  if (Status saved = session.Save(request.save.path); !saved.ok()) return saved;
  return told;
}

Result<SearchAnswer> SearchFolder(const SearchRequest& request, Files& files) {
  TrackSession session(files, {});
  if (Status started = session.Start(); !started.ok()) return started;
  const auto shown = session.Show("frmSearchTrack");
  if (!shown.ok()) return shown.status();
  auto& form = dynamic_cast<frmSearchTrack&>(*shown.value());
  if (Status there = form.lists.ShowFolder(Full(request.folder)); !there.ok()) return there;
  if (Status entered = EnterCriteria(session, form, request); !entered.ok()) return entered;
  if (Status clicked = session.Click(form, "cmdSearch"); !clicked.ok()) return clicked;
  session.loop().RunUntil([&] { return !form.searching(); }, kLongestSearch);
  SearchAnswer answer;
  answer.messages = session.TakeMessages();
  if (form.search() != nullptr) answer.hits = form.search()->hits();
  answer.state = form.lblState.text();
  return answer;
}

}  // namespace zento
