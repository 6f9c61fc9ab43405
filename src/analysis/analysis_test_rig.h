#pragma once

// What the tests of the analysis windows share.

#include <gmock/gmock.h>

#include <cstdint>
#include <string>
#include <vector>

#include "analysis/analysis_form.h"
#include "analysis/analysis_forms.h"
#include "core/settings_file.h"
#include "core/track_store.h"
#include "host/virtual/virtual_host.h"

namespace zento {

using Values = std::vector<double>;

// All windows over empty tracks, with a fresh installation's settings.
struct AnalysisTest : ::testing::Test {
  AnalysisTest() {
    ApplyDefaultSettings(ws);
    ws.home = "/home";
    ws.tracks.kl.Resize();
    RegisterAnalysisForms(machine.desktop, ws, machine.host, {"/program"});
    ws.show_data_info = [this](int track) { shown.push_back(track); };
  }
  template <typename Form>
  Form& Open() {
    return *dynamic_cast<Form*>(machine.desktop.Show(Form::kName));
  }
  // A track of a new record with these columns.
  TrackRecord& Fill(int track, std::int32_t mode, const Values& x, const Values& y,
                    const Values& third = {}) {
    TrackRecord& record = ws.tracks.Record(track);
    record = {};
    record.Mode = mode;
    record.Title = "track " + std::to_string(track);
    record.pnum = static_cast<std::int32_t>(x.size());
    ws.tracks.Column(0, track) = x;
    ws.tracks.Column(1, track) = y;
    ws.tracks.Column(2, track) = third;
    return record;
  }
  std::vector<std::string> Messages() {
    machine.Settle();
    return machine.dialogs.TakeMessages();
  }
  static Quantity Found(const AnalysisForm& form, const std::string& name) {
    for (const Quantity& quantity : form.result().quantities) {
      if (quantity.name == name) return quantity;
    }
    ADD_FAILURE() << "no " << name;
    return {};
  }

  VirtualHost machine;
  Workstation ws;
  std::vector<int> shown;  // tracks that the main window was told to show
};

// The covariance of a line's slope and intercept from the scatter of its points, by the inverse of
// the normal equations' matrix: what the textbooks' closed formulas are held against.
struct LineErrors {
  double slope = 0, intercept = 0;
};
inline LineErrors BruteForceErrors(const Values& x, const Values& y, bool through_origin) {
  double n = 0, sx = 0, sy = 0, sxx = 0, sxy = 0, scatter = 0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    n += 1, sx += x[i], sy += y[i], sxx += x[i] * x[i], sxy += x[i] * y[i];
  }
  const double determinant = n * sxx - sx * sx;
  const double slope = through_origin ? sxy / sxx : (n * sxy - sx * sy) / determinant;
  const double intercept = through_origin ? 0 : (sy * sxx - sx * sxy) / determinant;
  for (std::size_t i = 0; i < x.size(); ++i) {
    scatter += (y[i] - slope * x[i] - intercept) * (y[i] - slope * x[i] - intercept);
  }
  if (through_origin) return {std::sqrt(scatter / (n - 1) / sxx), 0};
  const double variance = scatter / (n - 2);
  return {std::sqrt(variance * n / determinant), std::sqrt(variance * sxx / determinant)};
}

}  // namespace zento
