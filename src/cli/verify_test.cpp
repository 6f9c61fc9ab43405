// The whole chain against theory, and that a wrong number would be seen.

#include "cli/verify.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>

#include "cli/verify_rows.h"

namespace zento {
namespace {

using testing::HasSubstr;

TEST(Verify, EveryToolFindsWhatTheoryKnows) {
  const auto quantities = Verify({.noise = true, .keep = {}});
  ASSERT_TRUE(quantities.ok()) << quantities.why();
  for (const VerifiedQuantity& quantity : quantities.value()) {
    EXPECT_TRUE(quantity.Passed())
        << quantity.quantity << ": truth " << quantity.truth << ", found "
        << quantity.found.value_or(std::nan("")) << quantity.problem;
  }
  const auto json = nlohmann::json::parse(VerifyJson(quantities.value()));
  EXPECT_EQ(json["pass"], true);
  EXPECT_EQ(json["quantities"].size(), VerifyRows().size());
}

// The truths, worked out by hand from what the bench's documentation says of its cells.
TEST(Verify, TruthsComeFromTheCellAlone) {
  const std::map<std::string, double> kByHand = {
      {"n at 0.88 V, Koutecky-Levich", 3.9},
      // 3.9 x 96485 C/mol x 2.6e-3 cm/s x 1.2e-6 mol/cm3 at 0.9 V, ten times as much 68 mV lower.
      {"jk at 0.82 V", 1.17403e-3 * std::pow(10, 80.0 / 68)},
      {"(1 - alpha) n of an oxidation", 0.6},
      {"alpha n of a reduction", 0.4},
      {"i0 from the reduction", 96485.332 * 1e-6 * 5e-6},
      {"%H2O, worst on the way back", 95},
      {"charge of a double layer", 5.654e-6},
      {"time constant of a cell", 0.5654},
      // sigma = 0.6 mV x 1 mA/V; the sum of 1/t from 5.01 s to 20 s is 100 (ln 4 - 7.5e-4).
      {"standard error of D", 2 * std::sqrt(3.14159265 * 6.5e-6) / (96485.332 * 0.2827 * 5e-6) *
                                  0.6e-6 / std::sqrt(100 * (std::log(4) - 7.5e-4))},
  };
  std::size_t found = 0;
  for (const VerifyRow& row : VerifyRows()) {
    const auto known = kByHand.find(row.quantity);
    if (known == kByHand.end()) continue;
    ++found;
    EXPECT_NEAR(row.truth(BenchOf(*row.experiment)) / known->second, 1, 1e-5) << row.quantity;
  }
  EXPECT_EQ(found, kByHand.size());
}

TEST(Verify, OnlyAnErrorWithinTheTolerancePasses) {
  VerifiedQuantity quantity;
  quantity.truth = -4;
  quantity.tolerance = 0.01;
  EXPECT_FALSE(quantity.Passed()) << "nothing was found";
  for (const auto& [found, passes] :
       {std::pair(-4.04, true), std::pair(-3.96, true), std::pair(-4.05, false),
        std::pair(4.0, false), std::pair(std::nan(""), false)}) {
    quantity.found = found;
    quantity.absolute = false;
    quantity.tolerance = 0.0101;
    EXPECT_EQ(quantity.Passed(), passes) << found;
  }
  quantity.found = -3.8;
  quantity.absolute = true;
  quantity.tolerance = 0.2001;
  EXPECT_TRUE(quantity.Passed());
  quantity.found = -3.7;
  EXPECT_FALSE(quantity.Passed());
  EXPECT_THAT(VerifyTable({quantity}), HasSubstr("NO\n0 of 1 pass"));
}

}  // namespace
}  // namespace zento
