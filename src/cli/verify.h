#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "text/status_fwd.h"

namespace zento {

// One quantity of a known cell: what theory says, and what came out of measuring it on the
// simulated bench and analysing the saved tracks.
struct VerifiedQuantity {
  std::string quantity;
  std::string unit;
  double truth = 0;
  std::optional<double> found;  // nothing when the analysis gave no such number
  std::string problem;          // why nothing was found
  double tolerance = 0;         // as a share of the truth, or in the unit when absolute
  bool absolute = false;
  std::string experiment;            // whose track file it was
  std::vector<std::string> command;  // what zento-cli was asked, without the file

  // found - truth, as a share of the truth unless absolute.
  std::optional<double> Error() const;
  bool Passed() const;
};

struct VerifyOptions {
  bool noise = false;  // also with the bench's default noise
  // Told each track file as soon as it is measured; may be empty.
  std::function<Status(const std::filesystem::path& name, const std::string& bytes)> keep;
};

// Measures known cells through the measurement windows, saves the tracks, opens the files in the
// analysis windows and compares. All in virtual time and in memory. Fails when a cell cannot be
// measured, or its file not kept.
Result<std::vector<VerifiedQuantity>> Verify(const VerifyOptions& options);

// A line for each quantity, in aligned columns, and one with the sum.
std::string VerifyTable(const std::vector<VerifiedQuantity>& quantities);
std::string VerifyJson(const std::vector<VerifiedQuantity>& quantities);

}  // namespace zento
