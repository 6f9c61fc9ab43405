#include "ui/main/clipboard_copy.h"

#include <limits>
#include <utility>

#include "host/desktop.h"
#include "host/services.h"
#include "ui/main/progress_form.h"

namespace zento {
namespace {

constexpr std::int32_t kPointsBetweenLooks = 100;
constexpr std::int64_t kSlice = 15'000;          // us
constexpr std::int32_t kPointsOfASlice = 15000;  // also where time stands still, as in a dry run

}  // namespace

ClipboardCopy::ClipboardCopy(Host& host) : host_(host), timer_(host.timers, [this] { Slice(); }) {
  timer_.SetInterval(1);
}

ClipboardCopy::~ClipboardCopy() {
  GiveUp();
}

void ClipboardCopy::GiveUp() {
  finished_ = nullptr;
  if (job_) Finish(false);
}

void ClipboardCopy::Start(std::unique_ptr<TableJob> job, std::function<void(bool)> finished) {
  if (job_) Finish(false);
  job_ = std::move(job);
  finished_ = std::move(finished);
  if (Work(patience, std::numeric_limits<std::int32_t>::max())) return Finish(true);
  window_ = frmProgressWindow::Open(host_, "Now Copying to Clipboard... Please wait.",
                                    job_->total(), [this] { Cancel(); }) != nullptr;
  timer_.SetEnabled(true);
}

bool ClipboardCopy::Work(std::int64_t micros, std::int32_t most_points) {
  const std::int64_t end = host_.clock.Micros() + micros;
  auto* const window =
      window_ ? host_.desktop.FindAs<frmProgressWindow>(frmProgressWindow::kName) : nullptr;
  const std::int32_t begin = job_->position();
  while (job_->Continue(kPointsBetweenLooks)) {
    if (window != nullptr) window->ShowProgress(job_->position());
    if (job_->position() - begin >= most_points || host_.clock.Micros() >= end) return false;
  }
  return true;
}

void ClipboardCopy::Slice() {
  if (Work(kSlice, kPointsOfASlice)) Finish(true);
}

void ClipboardCopy::Cancel() {
  window_ = false;
  Finish(false);
}

void ClipboardCopy::Finish(bool copied) {
  timer_.SetEnabled(false);
  if (window_) frmProgressWindow::Close(host_);
  window_ = false;
  const std::unique_ptr<TableJob> job = std::move(job_);
  if (copied) host_.clipboard.SetText(job->text);
  if (const auto finished = std::exchange(finished_, nullptr)) finished(copied);
}

}  // namespace zento
