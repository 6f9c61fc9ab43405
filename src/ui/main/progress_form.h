#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "host/controls.h"
#include "host/form.h"

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

}  // namespace zento
