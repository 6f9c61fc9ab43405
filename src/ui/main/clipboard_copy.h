#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "host/host.h"
#include "host/timer_queue.h"
#include "ui/main/table_job.h"

namespace zento {

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
