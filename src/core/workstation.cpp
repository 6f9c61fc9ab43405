#include "core/workstation.h"

#include "core/run_log.h"
#include "core/settings.h"
#include "core/track_history.h"
#include "core/track_store.h"

namespace zento {

struct Workstation::Parts {
  TrackStore tracks;
  TrackHistory history;
  Settings settings;
  RunLog run_log;
};

Workstation::Workstation()
    : parts_(std::make_unique<Parts>()),
      tracks(parts_->tracks),
      history(parts_->history),
      settings(parts_->settings),
      run_log(parts_->run_log) {}

Workstation::~Workstation() = default;

}  // namespace zento
