#include <algorithm>
#include <string>

#include "cli/script.h"
#include "cli/script_words.h"
#include "graph/svg_surface.h"
#include "host/canvas.h"
#include "host/path_text.h"
#include "text/codepage.h"

// The verbs that stand for the person and the machine around the windows: answers, time, messages,
// clipboard, pictures.

namespace zento {

Status ScriptDriver::Answer(std::string_view rest) {
  dialogs_.Answer(std::string(RestAsText(rest)));
  return Status::Ok();
}

Status ScriptDriver::Messages(std::string_view) {
  for (std::string& text : dialogs_.TakeMessages()) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    output_.print(text);
  }
  return Status::Ok();
}

Status ScriptDriver::Mails(std::string_view) {
  if (kept_mails == nullptr) return Status::Failure("mails are kept in virtual time only");
  kept_mails->Finish();
  for (const MailMessage& mail : kept_mails->TakeSent()) {
    output_.print("To: " + mail.display_name + " <" + mail.address + ">");
    output_.print("Subject: " + mail.subject);
    PrintLines(mail.text);
  }
  return Status::Ok();
}

Status ScriptDriver::ClipboardLine(std::string_view rest) {
  const std::string_view word = TakeWord(rest);
  if (word.empty()) {
    PrintLines(host_.clipboard.Text());
    return Status::Ok();
  }
  if (word != "set") return Status::Failure("clipboard takes nothing, or: set FILE");
  const auto bytes = host_.files.Read(PathFromText(RestAsText(rest)));
  if (!bytes.ok()) return bytes.status();
  host_.clipboard.SetText(DecodeFile(bytes.value()));
  return Status::Ok();
}

Status ScriptDriver::Plot(std::string_view rest) {
  const auto control = TakeControl(rest);
  if (!control.ok()) return control.status();
  auto* canvas = dynamic_cast<Canvas*>(control.value());
  if (canvas == nullptr) return Status::Failure(control.value()->Address() + " is no picture");
  const std::string file(RestAsText(rest));
  if (file.empty()) return Status::Failure("plot takes FORM.CONTROL FILE.svg");
  SvgSurface svg(canvas->size());
  canvas->Paint(svg);
  return host_.files.Replace(PathFromText(file), svg.Document());
}

Status ScriptDriver::Wait(std::string_view rest) {
  const std::string_view word = TakeWord(rest);
  if (word != "idle") {
    const auto micros = ParseDuration(word);
    if (!micros) return Status::Failure("wait takes: idle, or a time such as 2.5s");
    interrupted_in_wait_ = loop_.RunFor(*micros) == Waited::kInterrupted;
    return Status::Ok();
  }
  const std::string_view limit = TakeWord(rest);
  if (limit.empty()) return WaitIdle(idle_limit_micros);
  const auto micros = ParseDuration(limit);
  if (!micros) return Status::Failure("'" + std::string(limit) + "' is no time such as 600s");
  return WaitIdle(*micros);
}

Status ScriptDriver::WaitIdle(std::int64_t limit_micros) {
  const auto idle = [this] { return workstation_.running_flag == 0 && !workstation_.macro_active; };
  switch (loop_.RunUntil(idle, limit_micros)) {
    case Waited::kDone:
      return Status::Ok();
    case Waited::kInterrupted:
      interrupted_in_wait_ = true;
      return Status::Ok();
    case Waited::kNothingArmed:
      return Status::Failure("a run is active, but no timer is left that could end it");
    case Waited::kTimeout:
      break;
  }
  return Status::Failure("the run did not end within the time allowed");
}

}  // namespace zento
