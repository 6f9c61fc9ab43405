#include "cli/macro_inspector.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "devices/calibration.h"
#include "devices/function_generator.h"
#include "host/mail_text.h"
#include "host/path_text.h"
#include "text/lines.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr int kOutlets = 5;

// A window's box and what it holds, at the start of a run.
struct Box {
  const char* form;
  const char* control;
  int index = -1;
};
constexpr Box kPotentials[] = {
    {"frmMeasureCV", "txtVoltSetting", 0},     {"frmMeasureCV", "txtVoltSetting", 1},
    {"frmMeasureCV", "txtVoltSetting", 2},     {"frmMeasureRDE", "txtVoltSetting", 0},
    {"frmMeasureRDE", "txtVoltSetting", 1},    {"frmMeasureRDE", "txtVoltSetting", 2},
    {"frmPotentialStep", "txtVoltSetting", 0}, {"frmPotentialStep", "txtVoltSetting", 1},
    {"frmMeasureRPMvsj", "txtDiskXValue"}};
constexpr Box kRates[] = {{"frmMeasureCV", "txtScanrate"}, {"frmMeasureRDE", "txtScanrate"}};
constexpr Box kRotations[] = {
    {"frmMeasureCV", "txtRPM"}, {"frmMeasureRDE", "txtRPM"}, {"frmPotentialStep", "txtRPM"}};
constexpr Box kRamp[] = {{"frmMeasureRPMvsj", "txtStartRPM"}, {"frmMeasureRPMvsj", "txtEndRPM"}};

// How each window is told to go on until somebody presses Stop: the option and its index.
struct ByButton {
  const char* form;
  const char* control;
  double index;
};
constexpr ByButton kByButton[] = {{"frmMeasureCV", "OpnCVMeas", 1},
                                  {"frmMeasureRDE", "opnRDEMeas", 1},
                                  {"frmPotentialStep", "opnPSMeas", 1},
                                  {"frmMeasureRPMvsj", "opnRPMvsj", 1}};
constexpr double kRampMode = 2;

bool IsNumber(Conversion conversion) {
  return conversion != Conversion::kWord && conversion != Conversion::kWords;
}

// The words of a line as its command takes them.
std::vector<std::string> Words(std::string_view line) {
  const std::size_t first = line.find_first_not_of(' ');
  std::vector<std::string> words;
  if (first == line.npos) return words;
  line = line.substr(first, line.find_last_not_of(' ') - first + 1);
  for (std::size_t blank = 0; blank != line.npos;) {
    blank = line.find(' ');
    words.emplace_back(line.substr(0, blank));
    if (blank != line.npos) line.remove_prefix(blank + 1);
  }
  return words;
}

}  // namespace

MacroInspector::MacroInspector(MainProgram& program, Host& host, std::string_view text,
                               std::string mail_problem, MacroCheck& check)
    : workstation_(program.workstation()),
      host_(host),
      check_(check),
      mail_problem_(std::move(mail_problem)),
      began_(host.clock.Micros()) {
  std::string_view line;
  for (LineReader lines(text); lines.Next(line);) lines_.emplace_back(line);
}

std::int64_t MacroInspector::Now() const {
  return (host_.clock.Micros() - began_ + 500) / 1000;
}

void MacroInspector::Problem(int line, std::string text) {
  check_.findings.push_back({line, true, std::move(text)});
}

void MacroInspector::Note(int line, std::string text) {
  check_.findings.push_back({line, false, std::move(text)});
}

Control* MacroInspector::ControlFor(const MacroEntry& entry, std::size_t argument) const {
  const char* const name = entry.controls.at(argument);
  const Form* form = host_.desktop.Find(entry.form);
  if (name == nullptr || form == nullptr) return nullptr;
  return form->Find(name, entry.array ? static_cast<int>(argument) : -1);
}

double MacroInspector::NumberIn(const char* form, const char* control, int index) const {
  const Form* window = host_.desktop.Find(form);
  const Control* box = window != nullptr ? window->Find(control, index) : nullptr;
  return box != nullptr ? ParseLenient(box->Value()) : 0;
}

void MacroInspector::LineBegun(int line, const MacroLine& what) {
  CloseWait();
  if (what.kind == MacroLine::Kind::kCommand && what.command->kind == CommandKind::kWait) {
    waiting_ = true;
    check_.steps.push_back({line, Now(), 0, false, false, "Wait"});
  }
}

void MacroInspector::CloseWait() {
  if (!std::exchange(waiting_, false)) return;
  check_.steps.back().takes = Now() - check_.steps.back().begins;
}

void MacroInspector::LineDone(int line, const MacroLine& what, MacroLineResult result) {
  using enum MacroLineResult;
  if (result != kCarriedOut) {
    // Messages tell the rest, where there are any.
    if (result == kIgnored) Problem(line, std::string(what.name) + " would fail");
    return;
  }
  CheckWords(line, what);
  if (const MacroEntry* entry = FindMacroEntry(what.name)) {
    CheckEntry(line, what, *entry);
  } else {
    CheckAction(line, what);
  }
}

// Numbers are read leniently, which a slip of the finger should not hide behind.
void MacroInspector::CheckWords(int line, const MacroLine& what) {
  const auto words = Words(lines_.at(static_cast<std::size_t>(line) - 1));
  for (std::size_t i = 0; i < what.command->arguments.size() && i + 1 < words.size(); ++i) {
    if (!IsNumber(what.command->arguments[i])) continue;
    const auto value = ParseStrict(words[i + 1]);
    const double counts = what.arguments[i].number;
    if (!value) {
      Problem(line, "\"" + words[i + 1] + "\" is no number: " + PlainNumber(counts) + " counts");
    } else if (*value != counts) {
      Note(line, words[i + 1] + " is rounded to " + PlainNumber(counts));
    }
  }
}

void MacroInspector::CheckEntry(int line, const MacroLine& what, const MacroEntry& entry) {
  form_ = entry.form;
  for (std::size_t i = 0; i < what.arguments.size() && i < entry.controls.size(); ++i) {
    const Control* control = ControlFor(entry, i);
    if (control == nullptr) return;
    const std::string became = control->Value();
    const double wanted = what.arguments[i].number;
    if (ParseLenient(became) != wanted) {
      Problem(line,
              std::string(what.name) + ": " + PlainNumber(wanted) + " is limited to " + became);
    }
    if (entry.moves_on) continue;
    asked_[{entry.form, control->Address()}] = {line, std::string(what.name), became};
  }
}

void MacroInspector::CheckAction(int line, const MacroLine& what) {
  const std::string_view name = what.name;
  if (name == "SetPotential") {
    if (workstation_.settings.GPIBControl <= 0) {
      Problem(line, "there is no function generator that could set a potential");
    }
    CheckPotential(line, what.arguments[0].number);
  } else if (name == "Motor.On") {
    CheckRotation(line, what.arguments[0].number);
  } else if (name == "Power") {
    const double channel = what.arguments[0].number;
    if (workstation_.settings.PowerControl <= 0) {
      Problem(line, "there are no outlets that could be switched");
    } else if (channel < 0 || channel >= kOutlets) {
      Problem(line, "there is no outlet " + PlainNumber(channel) + ": they are numbered 0 to 4");
    }
  } else if (name == "Sound") {
    if (!host_.files.Exists(PathFromText(what.arguments[0].text))) {
      Note(line, "there is no sound file " + what.arguments[0].text);
    }
  } else if (name == "Mail.Address") {
    mail_.address = what.arguments[0].text;
  } else if (name == "Mail.Send") {
    CheckMail(line);
  }
}

void MacroInspector::CheckMail(int line) {
  if (!IsMailAddress(mail_.address)) {
    Problem(line, "the mail would not be sent: \"" + mail_.address + "\" is no mail address");
  }
  if (!mail_problem_.empty()) Problem(line, "the mail would not be sent: " + mail_problem_);
}

void MacroInspector::MeasurementBegun(int line, const std::string& what) {
  measuring_ = true;
  check_.steps.push_back({line, Now(), 0, true, false, what});
  const auto command = Words(lines_.at(static_cast<std::size_t>(line) - 1)).front();
  // The window that the command is about, also when no line has set anything in it.
  for (const char* const prefix : {"CV.", "RDE.", "PS.", "RPMvsi."}) {
    if (command.rfind(prefix, 0) != 0) continue;
    form_ = FindMacroEntry(std::string(prefix) + "RecordTrack")->form;
  }
  CheckOverwritten(line, form_);
  CheckProgramme(line, form_);
  CheckMethod(line, form_);
}

// The values that lines have set must be those that the run begins with.
void MacroInspector::CheckOverwritten(int line, const std::string& form) {
  const Form* window = host_.desktop.Find(form);
  if (window == nullptr) return;
  for (auto& [place, asked] : asked_) {
    if (place.first != form) continue;
    for (const Control* control : window->controls()) {
      if (control->Address() != place.second || control->Value() == asked.became) continue;
      Problem(line, "the run begins with " + control->Value() + " where " + asked.command +
                        " of line " + std::to_string(asked.line) + " had set " + asked.became);
      asked.became = control->Value();
    }
  }
}

void MacroInspector::CheckProgramme(int line, const std::string& form) {
  if (workstation_.settings.GPIBControl <= 0 && form != "frmMeasureRPMvsj") {
    Note(line,
         "there is no function generator: the potentiostat's own programme decides when the "
         "measurement begins");
  }
  const auto here = [&](const Box& box) { return form == box.form; };
  const auto value = [&](const Box& box) { return NumberIn(box.form, box.control, box.index); };
  for (const Box& box : kPotentials) {
    if (here(box)) CheckPotential(line, value(box));
  }
  for (const Box& box : kRates) {
    if (!here(box) || workstation_.settings.GPIBControl <= 0) continue;
    auto sent = RateAsSent(value(box));
    if (!sent.remark.empty()) Note(line, std::move(sent.remark));
  }
  for (const Box& box : kRotations) {
    if (here(box)) CheckRotation(line, value(box));
  }
  if (NumberIn("frmMeasureRPMvsj", "opnRPMvsj") != kRampMode) return;
  for (const Box& box : kRamp) {
    if (here(box)) CheckRotation(line, value(box));
  }
}

void MacroInspector::CheckPotential(int line, double volts) {
  if (workstation_.settings.GPIBControl <= 0) return;
  SentValue sent = PotentialAsSent(volts);
  if (!sent.remark.empty()) {
    check_.findings.push_back({line, sent.lost, std::move(sent.remark)});
  }
}

void MacroInspector::CheckRotation(int line, double rpm) {
  if (rpm <= 0) return;
  const std::string rate = PlainNumber(rpm) + " rpm";
  if (workstation_.settings.DABoard == 0) {
    Problem(line, rate + " cannot be set: there is no rotation control");
    return;
  }
  const auto& calibration = workstation_.rpm_calibration;
  const auto point = InterpolateCalibration(calibration, rpm);
  if (!point || (rpm < LowestRate(calibration) && workstation_.settings.PowerControl > 0)) {
    Problem(line, rate + " is below the calibration: the motor stays off");
  } else if (point->rpm != rpm) {
    Problem(line, rate + " is outside the calibration: the motor turns at " +
                      PlainNumber(point->rpm) + " rpm");
  }
}

void MacroInspector::CheckMethod(int line, const std::string& form) {
  for (const ByButton& method : kByButton) {
    if (form != method.form || NumberIn(method.form, method.control) != method.index) continue;
    Problem(line, "the measurement ends only when somebody presses Stop or the buffer is full");
  }
}

void MacroInspector::MeasurementEnded(int line, const RunReport& report) {
  measuring_ = false;
  const auto step = std::find_if(check_.steps.rbegin(), check_.steps.rend(),
                                 [](const MacroCheck::Step& s) { return s.measurement; });
  if (step == check_.steps.rend()) return;
  step->takes = Now() - step->begins;
  step->what = report.what + ": " + report.how;
  step->by_sample = report.reason == EndReason::kCharge || report.reason == EndReason::kLimit;
  if (report.reason == EndReason::kOverflow) {
    Problem(line, "the buffer is full before the measurement is over: what follows is not kept");
  }
  if (!report.first_track) {
    Problem(line, "no points are stored");
    return;
  }
  for (int track = *report.first_track; track <= report.last_track; ++track) {
    auto written = std::ranges::find(check_.tracks, track, &MacroCheck::Written::track);
    if (written == check_.tracks.end()) {
      check_.tracks.push_back({track, {line}});
      continue;
    }
    Problem(line, "track " + std::to_string(track) + " is written again: the points of line " +
                      std::to_string(written->lines.back()) + " are lost");
    written->lines.push_back(line);
  }
}

void MacroInspector::MessageShown(int line, const std::string& text) {
  std::string one_line = text;
  std::replace(one_line.begin(), one_line.end(), '\n', ' ');
  Problem(line, "message: \"" + one_line + "\"");
}

void MacroInspector::Finish() {
  CloseWait();
  check_.total = Now();
  if (measuring_) check_.steps.back().takes = Now() - check_.steps.back().begins;
  std::ranges::sort(check_.tracks, {}, &MacroCheck::Written::track);
}

}  // namespace zento
