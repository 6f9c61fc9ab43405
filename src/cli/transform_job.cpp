#include "cli/transform_job.h"

#include <string_view>
#include <utility>

#include "cli/track_session.h"
#include "cli/window_options.h"
#include "core/track_history.h"
#include "host/controls.h"
#include "host/path_text.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr std::int64_t kLongestCopy = std::int64_t{3600} * 1'000'000;  // of virtual time

// What the window's line for remarks says.
std::string NoteOf(const Form& form) {
  const Control* note = form.Find("lblNote");
  return note == nullptr ? std::string() : note->Value();
}

Status EnterInto(TrackSession& session, Form& form, const TransformRequest& request,
                 std::vector<std::string>& notes) {
  Status entered = EnterOptions(form, session.workstation().tracks, request.command->window,
                                request.given, notes);
  if (!entered.ok()) return entered.Within(TextFromPath(request.file));
  if (!request.into) return Status::Ok();
  return session.Set(form, request.command->destination, PlainNumber(*request.into));
}

Status Write(TrackSession& session, Form& form, const TransformRequest& request) {
  const TransformCommand& command = *request.command;
  const std::string_view button = request.into ? command.record_button : command.update_button;
  const Control* found = form.Find(button);
  if (found != nullptr && !found->Usable()) {
    const std::string note = NoteOf(form);
    return Status::Failure("the window has nothing to write" + (note.empty() ? "" : ": " + note));
  }
  if (request.title) {
    Status titled = session.Set(form, command.title, *request.title);
    if (!titled.ok()) return titled;
  }
  return session.Click(form, button);
}

std::string_view MenuOf(CopyKind kind) {
  switch (kind) {
    case CopyKind::kData:
      return "mnuCopyOnlyExpData";
    case CopyKind::kCurrentTime:
      return "mnuCopyI_ttable";
    case CopyKind::kPotentialCurrent:
      return "mnuCopyV_ITable";
    default:
      return "mnuCopyAll";
  }
}

Status PressCopy(TrackSession& session, const CopyRequest& request,
                 std::vector<std::string>& notes) {
  if (request.kind != CopyKind::kSpecial) {
    return session.Click(session.panel(), MenuOf(request.kind));
  }
  const WindowCommand& command = SpecialCopyCommand();
  const auto form = session.Show(command.form);
  if (!form.ok()) return form.status();
  Status entered =
      EnterOptions(*form.value(), session.workstation().tracks, command, request.given, notes);
  if (!entered.ok()) return entered;
  return session.Click(*form.value(), "cmdCopy");
}

}  // namespace

Result<JobTold> Transform(const TransformRequest& request, Files& files) {
  TrackSession session(files, request.home);
  JobTold told;
  Status begun = BeginTrackJob(session, request.file, request.save, files, told.notes);
  if (!begun.ok()) return begun;
  const auto shown = session.Show(request.command->window.form);
  if (!shown.ok()) return shown.status();
  Form& form = *shown.value();
  if (Status entered = EnterInto(session, form, request, told.notes); !entered.ok()) {
    return entered;
  }
  if (Status clicked = session.Click(form, "cmdCalc"); !clicked.ok()) return clicked;
  told.messages = session.TakeMessages();
  if (!told.messages.empty()) return told;
  if (const std::string note = NoteOf(form); !note.empty()) told.notes.push_back(note);
  if (Status written = Write(session, form, request); !written.ok()) return written;
  told.messages = session.TakeMessages();
  if (!told.messages.empty()) return told;
  if (session.workstation().history.UndoName().empty()) {
    told.notes.push_back("the window changed nothing");
  }
  if (Status saved = session.Save(request.save.path); !saved.ok()) return saved;
  return told;
}

Result<CopyAnswer> CopyFromFile(const CopyRequest& request, Files& files) {
  TrackSession session(files, request.home);
  CopyAnswer answer;
  if (Status started = session.Start(); !started.ok()) return started;
  Status opened = session.OpenFile(request.file, answer.told.notes);
  if (!opened.ok()) return opened;
  session.panel().ShowDataInfo(request.track);
  if (session.workstation().tracks.Record(request.track).Mode == kModeNone) {
    return Status::Failure("track " + PlainNumber(request.track) + " is empty")
        .Within(TextFromPath(request.file));
  }
  session.clipboard().SetText({});
  Status pressed = PressCopy(session, request, answer.told.notes);
  if (!pressed.ok()) return pressed;
  answer.told.messages = session.TakeMessages();
  if (!answer.told.messages.empty()) return answer;
  session.loop().RunUntil([&] { return !session.clipboard().Text().empty(); }, kLongestCopy);
  answer.text = session.clipboard().Text();
  if (answer.text.empty()) {
    return Status::Failure("track " + PlainNumber(request.track) +
                           " is not of the mode that this table is for");
  }
  return answer;
}

}  // namespace zento
