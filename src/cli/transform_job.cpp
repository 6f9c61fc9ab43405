#include "cli/transform_job.h"

#include <string_view>
#include <utility>

#include "cli/track_session.h"
#include "cli/window_options.h"
#include "host/controls.h"
#include "host/path_text.h"
#include "text/number.h"

namespace zento {
namespace {

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

}  // namespace

Result<JobReport> Transform(const TransformRequest& request, Files& files) {
  TrackSession session(files, request.home);
  JobReport report;
  Status begun = BeginTrackJob(session, request.file, request.save, files, report.notes);
  if (!begun.ok()) return begun;
  const auto shown = session.Show(request.command->window.form);
  if (!shown.ok()) return shown.status();
  Form& form = *shown.value();
  if (Status entered = EnterInto(session, form, request, report.notes); !entered.ok()) {
    return entered;
  }
  if (Status clicked = session.Click(form, "cmdCalc"); !clicked.ok()) return clicked;
  report.messages = session.TakeMessages();
  if (!report.messages.empty()) return report;
  if (const std::string note = NoteOf(form); !note.empty()) report.notes.push_back(note);
  if (Status written = Write(session, form, request); !written.ok()) return written;
  report.messages = session.TakeMessages();
  if (!report.messages.empty()) return report;
  if (session.workstation().history.UndoName().empty()) {
    report.notes.push_back("the window changed nothing");
  }
  if (Status saved = session.Save(request.save.path); !saved.ok()) return saved;
  return report;
}

}  // namespace zento
