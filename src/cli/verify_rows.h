#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "analysis/analysis_result.h"
#include "cli/verify_experiments.h"

namespace zento {

// One quantity that is verified.
struct VerifyRow {
  std::string quantity;
  std::string unit;
  const Experiment* experiment;
  std::string command;  // words of zento-cli, without the file
  // What counts in the outcome; nothing when it is not there. Told the truth for rows that are
  // about the worst of many numbers.
  std::function<std::optional<double>(const AnalysisResult& outcome, double truth)> found;
  std::function<double(const sim::Parameters& parameters)> truth;
  double tolerance;  // as a share of the truth, or in the unit when absolute
  bool absolute = false;
};

// The table of all rows. Adding one is the whole change.
std::vector<VerifyRow> VerifyRows();

}  // namespace zento
