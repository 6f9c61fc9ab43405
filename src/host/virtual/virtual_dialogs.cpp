#include "host/virtual/virtual_dialogs.h"

#include <utility>

#include "host/path_text.h"

namespace zento {

void VirtualDialogs::Message(const std::string& text, std::function<void()> closed) {
  messages.push_back(text);
  if (!closed) return;
  if (hold_) {
    open_.push_back(std::move(closed));
  } else {
    timers_.Post(std::move(closed));
  }
}

void VirtualDialogs::HoldMessages(bool hold) {
  hold_ = hold;
  if (hold) return;
  for (auto& closed : std::exchange(open_, {})) timers_.Post(std::move(closed));
}

std::optional<std::string> VirtualDialogs::Next(const std::string& question) {
  questions.push_back(question);
  if (answers_.empty()) {
    unanswered.push_back(question);
    return std::nullopt;
  }
  std::string answer = std::move(answers_.front());
  answers_.pop_front();
  return answer;
}

void VirtualDialogs::Ask(const std::string& text, Buttons, std::function<void(bool)> answered) {
  const auto answer = Next(text);
  const bool agreed = answer == "yes" || answer == "ok";
  if (answer && !agreed && answer != "no" && answer != "cancel") unanswered.push_back(text);
  timers_.Post([answered = std::move(answered), agreed] { answered(agreed); });
}

void VirtualDialogs::AskText(const TextQuestion& question,
                             std::function<void(std::optional<std::string>)> answered) {
  auto answer = Next(question.prompt);
  if (answer == "ok") answer = question.initial;
  if (answer == "cancel") answer.reset();
  timers_.Post([answered = std::move(answered), answer = std::move(answer)] { answered(answer); });
}

void VirtualDialogs::AskFile(const FileQuestion& question,
                             std::function<void(std::optional<std::filesystem::path>)> answered) {
  file_questions.push_back(question);
  const auto answer = Next(question.title);
  std::optional<std::filesystem::path> path;
  if (answer && answer != "cancel") path = PathFromText(*answer);
  timers_.Post([answered = std::move(answered), path = std::move(path)] { answered(path); });
}

}  // namespace zento
