#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "exchange/table_text.h"
#include "host/controls.h"
#include "host/form.h"
#include "host/host.h"
#include "host/timer_queue.h"

namespace zento {

// frmProgressWindow: how far a long job is, and a way to end it. The job itself works in slices
// from a timer of its owner, who closes the window at the end.
class frmProgressWindow : public Form {
 public:
  static constexpr const char* kName = "frmProgressWindow";

  explicit frmProgressWindow(Host& host);

  // Opens the window for a job of `maximum` steps. `on_cancel` runs when the person ends the job,
  // by the button or by closing the window, which is then gone; empty: the job cannot be ended,
  // and the window stays. Null when windows of that name are unknown.
  static frmProgressWindow* Open(Host& host, const std::string& what, int maximum,
                                 std::function<void()> on_cancel = {});
  // Closes it without a call of `on_cancel`; nothing when it is gone already.
  static void Close(Host& host);

  // Cheap, to be called as often as the job likes: the bar moves at most fifty times a second.
  void ShowProgress(int position);

  LayoutNode Layout() override;
  void CloseRequested() override;

  Label lblWhat{*this, "lblWhat"};
  ProgressBar ProgressBar1{*this, "ProgressBar1"};
  Button cmdCancel{*this, "cmdCancel", "Cancel"};

 private:
  std::function<void()> on_cancel_;
  std::int64_t shown_at_ = 0;  // microseconds of the clock
};

// Puts a table on the clipboard. A usual one is there when Start returns; one that takes longer
// than a person notices goes on in slices from a timer, behind the progress window, and windows
// stay alive. The clipboard keeps what it holds until the table is complete.
class ClipboardCopy {
 public:
  explicit ClipboardCopy(Host& host);
  ~ClipboardCopy();

  // A copy that is still under way is given up. `finished` is told whether the table is on the
  // clipboard now, or the person has ended the copy.
  void Start(std::unique_ptr<TableJob> job, std::function<void(bool copied)> finished);
  // Ends a copy that is under way, telling nobody. For owners that go.
  void GiveUp();
  bool Active() const { return job_ != nullptr; }

  // Microseconds of work before the progress window comes up.
  std::int64_t patience = 100'000;

 private:
  // True when the job is done.
  bool Work(std::int64_t micros, std::int32_t most_points);
  void Slice();
  void Cancel();
  void Finish(bool copied);

  Host& host_;
  TimerQueue::PeriodicTimer timer_;
  std::unique_ptr<TableJob> job_;
  std::function<void(bool)> finished_;
  bool window_ = false;
};

}  // namespace zento
