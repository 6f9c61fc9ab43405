#include "ui/main/progress_form.h"

#include <utility>

#include "host/clock.h"
#include "host/desktop.h"
#include "host/host.h"

namespace zento {
namespace {

constexpr std::int64_t kBetweenMoves = 20'000;  // us

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

}  // namespace zento
