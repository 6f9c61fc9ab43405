#include "ui/main/replace_title_form.h"

#include <algorithm>
#include <string>
#include <vector>

#include "core/track_history.h"
#include "core/track_store.h"
#include "host/desktop.h"
#include "host/host.h"
#include "text/lines.h"

namespace zento {
namespace {

// Every occurrence, from left to right; nothing for an empty `before`.
std::string Replaced(std::string text, const std::string& before, const std::string& after) {
  if (before.empty()) return text;
  for (std::size_t at = text.find(before); at != text.npos;
       at = text.find(before, at + after.size())) {
    text.replace(at, before.size(), after);
  }
  return text;
}

}  // namespace

frmReplaceTitle::frmReplaceTitle(Workstation& workstation, Host& host)
    : Form(host, kName, "Replace words in each title"), workstation_(workstation) {
  RequestGeometry({false, 0, 0, 420, 0});
  cmdGo.is_default = true;
  cmdClose.is_cancel = true;
  cmdGo.on_click = [this] { cmdGo_Click(); };
  cmdClose.on_click = [&desktop = host.desktop] { desktop.Unload(kName); };
}

void frmReplaceTitle::cmdGo_Click() {
  std::vector<int> changed;
  const auto replaced = [this](int track) {
    return Replaced(workstation_.tracks.Record(track).Title, txtBefore.text(),
                    OneLine(txtAfter.text()));
  };
  for (int track = 0; track < kTracks; ++track) {
    if (replaced(track) != workstation_.tracks.Record(track).Title) changed.push_back(track);
  }
  {
    const TrackChange change(workstation_, "Replacement of words in titles", changed);
    for (const int track : changed) workstation_.tracks.Record(track).Title = replaced(track);
  }
  lblNotice.SetText(changed.empty() ? "No title holds this text"
                                    : "Replaced in " + std::to_string(changed.size()) +
                                          (changed.size() == 1 ? " title" : " titles"));
  const int shown = workstation_.shown_track;
  if (std::ranges::find(changed, shown) != changed.end()) workstation_.ShowTrack(shown);
}

LayoutNode frmReplaceTitle::Layout() {
  using namespace layout;
  return Rows({
      Fields({Field("before", txtBefore), Field("after", txtAfter)}),
      Columns({Item(lblNotice), Stretch(), Item(cmdGo), Item(cmdClose)}),
  });
}

}  // namespace zento
