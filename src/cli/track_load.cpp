#include "cli/track_load.h"

#include "core/track_file.h"
#include "host/path_text.h"
#include "text/status.h"

namespace zento {

Status CheckLoad(const TrackFileLoad& load, const std::filesystem::path& path,
                 std::vector<std::string>& notes) {
  if (load.outcome == TrackFileLoad::Outcome::kNotRecognized) {
    return Status::Failure(TextFromPath(path) + " is no track file");
  }
  if (!load.complete()) return load.status;
  for (const std::string& remark : load.remarks) {
    notes.push_back(TextFromPath(path) + ": " + remark);
  }
  return Status::Ok();
}

}  // namespace zento
