#pragma once

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "host/dialogs.h"
#include "host/timer_queue.h"

namespace zento {

// Message boxes and questions without a person: messages are recorded, questions take their answers
// from a queue that was filled beforehand. Every continuation is posted, so that it runs after the
// handler that asked has returned, as it does with a person.
//
// Answers are texts: "yes" and "ok" (true), "no" and "cancel" (false, or nothing), else a text or a
// path in UTF-8; "ok" accepts the text a question offers. A question without a queued answer, or
// with one that makes no sense for it, is answered as cancelled and noted in `unanswered`.
class VirtualDialogs : public Dialogs {
 public:
  explicit VirtualDialogs(TimerQueue& timers) : timers_(timers) {}

  void Message(const std::string& text, std::function<void()> closed = {}) override;
  void Ask(const std::string& text, Buttons buttons, std::function<void(bool)> answered) override;
  void AskText(const TextQuestion& question,
               std::function<void(std::optional<std::string>)> answered) override;
  void AskFile(const FileQuestion& question,
               std::function<void(std::optional<std::filesystem::path>)> answered) override;

  // Queues the answer to the next question that has none yet.
  void Answer(std::string answer) { answers_.push_back(std::move(answer)); }
  std::size_t queued_answers() const { return answers_.size(); }

  // The message boxes shown since the last call, oldest first.
  std::vector<std::string> TakeMessages() { return std::exchange(messages, {}); }

  // While on, nobody presses OK: message boxes stay on the screen. Switching it off closes them.
  void HoldMessages(bool hold);

  std::vector<std::string> messages;         // texts of the message boxes
  std::vector<std::string> questions;        // texts of all questions asked
  std::vector<std::string> unanswered;       // of those answered as cancelled for want of an answer
  std::vector<FileQuestion> file_questions;  // in full, as they were asked

 private:
  // Nothing when the queue is empty.
  std::optional<std::string> Next(const std::string& question);

  TimerQueue& timers_;
  std::deque<std::string> answers_;
  std::vector<std::function<void()>> open_;  // continuations of the boxes that stay
  bool hold_ = false;
};

}  // namespace zento
