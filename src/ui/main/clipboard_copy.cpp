#include "ui/main/clipboard_copy.h"

#include <limits>
#include <utility>

#include "host/desktop.h"
#include "host/host.h"
#include "host/services.h"

namespace zento {
namespace {

constexpr std::int64_t kBetweenMoves = 20'000;  // us

constexpr std::int32_t kPointsBetweenLooks = 100;
constexpr std::int64_t kSlice = 15'000;          // us
constexpr std::int32_t kPointsOfASlice = 15000;  // also where time stands still, as in a dry run

}  // namespace

frmProgressWindow::frmProgressWindow(Host& host) : Form(host, kName, "Please wait") {
  cmdCancel.is_cancel = true;
  cmdCancel.on_click = [this] { CloseRequested(); };
}

frmProgressWindow* frmProgressWindow::Open(Host& host, const std::string& what, int maximum,
                                           std::function<void()> on_cancel) {
  auto* const form = host.desktop.LoadAs<frmProgressWindow>(kName);
  if (form == nullptr) return nullptr;
  form->SetCaption(what);
  form->lblWhat.SetText(what);
  form->ProgressBar1.SetRange(maximum);
  form->ProgressBar1.SetPosition(0);
  form->cmdCancel.SetEnabled(static_cast<bool>(on_cancel));
  form->on_cancel_ = std::move(on_cancel);
  form->shown_at_ = host.clock.Micros();
  host.desktop.Show(kName);
  return form;
}

void frmProgressWindow::Close(Host& host) {
  host.desktop.Unload(kName);
}

void frmProgressWindow::ShowProgress(int position) {
  const std::int64_t now = host().clock.Micros();
  if (now - shown_at_ < kBetweenMoves && position != ProgressBar1.maximum()) return;
  shown_at_ = now;
  ProgressBar1.SetPosition(position);
}

void frmProgressWindow::CloseRequested() {
  if (!on_cancel_) return;
  const std::function<void()> cancel = std::move(on_cancel_);
  host().desktop.Unload(kName);
  cancel();
}

LayoutNode frmProgressWindow::Layout() {
  using namespace layout;
  return Rows({Item(lblWhat), Item(ProgressBar1), Columns({Stretch(), Item(cmdCancel)})});
}

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
