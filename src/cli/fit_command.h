#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "analysis/analysis_result.h"
#include "cli/option_values.h"
#include "text/status_fwd.h"

namespace zento {

class Files;

// A relaxation to be fitted to a part of a track.
struct FitRequest {
  std::filesystem::path file;
  std::optional<int> track;  // else the file's first one
  int x_column = 0;
  int y_column = 1;
  IndexRange points;          // both ends used; held within the track
  int parameters = 3;         // or 5
  std::vector<double> start;  // p1 ...; empty = estimated
  std::optional<int> seed;    // of random starts; else the same for every fit
};

struct FitAnswer {
  // Quantities p1 ..., tau in the unit of x, columns x, y and fit; or why there is no fit.
  AnalysisResult outcome;
  std::string report;  // tab-separated, lines ending in LF; empty when refused
  std::vector<std::string> notes;
};

// Options and values in turn: --track, --x, --y (columns), --points FIRST:LAST, --parameters,
// --start P1,P2,..., --seed. The file is left empty.
Result<FitRequest> ParseFitRequest(const std::vector<std::string>& words);

// Fits y(x) = p3 - s (p1 exp(-x/p2) [+ p4 exp(-x/p5)]), see FitExponential. Fails when the file
// cannot be read or has no such track or column; data that cannot be fitted are an answer.
Result<FitAnswer> FitTrack(const FitRequest& request, Files& files);

}  // namespace zento
