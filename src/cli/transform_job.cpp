#include "cli/transform_job.h"

#include <string_view>
#include <utility>

#include "cli/track_jobs.h"
#include "cli/window_options.h"
#include "core/track_history.h"
#include "host/controls.h"
#include "host/path_text.h"
#include "text/number.h"

namespace zento {
namespace {

using enum OptionKind;

constexpr std::string_view kMethods[] = {"average", "savitzky-golay", "spikes"};
constexpr std::string_view kOperators[] = {"plus", "minus"};

constexpr WindowOption kFilterOptions[] = {
    {"--track", kShownTrack, "txtDataNum", "N", "the track; without it the file's first one"},
    {"--cut-off", kNumber, "txtYMaxFrequency", "HZ",
     "what is as fast or faster is removed from the currents; else the setting"},
    {.name = "--x-cut-off",
     .kind = kNumber,
     .control = "txtXMaxFrequency",
     .value = "HZ",
     .help = "the same for the x column, which is left alone without it",
     .switch_index = 1,
     .switch_control = "opnXFilter"},
};

// The method first: choosing it sets the number of points to its least one.
constexpr WindowOption kSmoothOptions[] = {
    {"--track", kShownTrack, "txtDataNum", "N", "the track; without it the file's first one"},
    {"--method", kChoice, "opnYFilter", "METHOD", "how; else average", kMethods},
    {"--points",
     kIndex,
     "txtPointNum",
     "N",
     "length of the window, odd, up to 15; else the method's least one, 3 or 5",
     {},
     "UpDown3"},
    {"--x", kCheck, "chkXAxis", "", "smooth the x column, too"},
    {.name = "--skip",
     .kind = kNumber,
     .control = "txtSkipNum",
     .value = "N",
     .help = "leave N points and one more at each end of a sweep as they are",
     .switch_index = 1,
     .switch_control = "chkSkipatEdge"},
    {"--all", kCheck, "chkApplyAllTrack", "", "all tracks of the file; not with --into"},
};

constexpr WindowOption kCalcOptions[] = {
    {.name = "--a",
     .kind = kShownTrack,
     .control = "txtOpeA",
     .value = "N",
     .help = "number of track A, whose x the result has",
     .required = true},
    {.name = "--b",
     .kind = kIndex,
     .control = "txtOpeB",
     .value = "N",
     .help = "number of track B",
     .arrows = "updOpeB",
     .required = true},
    {"--operator", kChoice, "opnOperator", "SIGN", "what is done with B; else plus", kOperators},
    {"--factor-a", kNumber, "txta", "NUMBER", "factor of A; else 1"},
    {"--factor-b", kNumber, "txtb", "NUMBER", "factor of B; else 1"},
    {"--offset", kNumber, "txtc", "A", "added to the current; else 0"},
    {"--shift", kNumber, "txtXBShift", "X", "added to every x of B, in its unit; else 0"},
};

constexpr TransformCommand kCommands[] = {
    {{"filter", "frmFFTFilter", "take high frequencies out of a track", kFilterOptions},
     "cmdUpdate",
     "cmdRecordAnotherTrack",
     "txtDesNum",
     "txtDestTitle",
     "the track that gets the result; without it the track itself"},
    {{"smooth", "frmSmoothing", "smooth a track, sweep by sweep", kSmoothOptions},
     "cmdUpdate",
     "cmdRecordAnotherTrack",
     "txtDesNum",
     "txtDestTitle",
     "the track that gets the result; without it the track itself"},
    {{"calc", "frmCalculation", "add tracks or subtract them: aA(x) + c +- bB(x)", kCalcOptions},
     "",
     "cmdUpdate",
     "txtOpeC",
     "txtOpeCTitle",
     "the track that gets the result"},
};

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

std::span<const TransformCommand> TransformCommands() {
  return kCommands;
}

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
