// The whole chain against theory, and that a wrong number would be seen.

#include "cli/verify.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "cli/verify_rows.h"
#include "cli/verify_truths.h"

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

// The truths that stand in the bench's documentation, worked out by hand.
TEST(Verify, TruthsComeFromTheCellAlone) {
  const sim::Parameters oxygen = BenchOf(experiments::kKinetics);
  EXPECT_DOUBLE_EQ(truths::OxygenElectrons(oxygen), 3.9);
  EXPECT_DOUBLE_EQ(truths::WaterShare(oxygen), 95);
  // 3.9 x 96485 C/mol x 2.6e-3 cm/s x 1.2e-6 mol/cm3, ten times as much 68 mV lower.
  EXPECT_NEAR(truths::KineticCurrent(oxygen, 0.9), 1.17403e-3, 1e-8);
  EXPECT_NEAR(truths::KineticCurrent(oxygen, 0.832), 1.17403e-2, 1e-7);
  const sim::Parameters slow = BenchOf(experiments::kSlow);
  EXPECT_DOUBLE_EQ(truths::AnodicTransfer(slow), 0.6);
  EXPECT_DOUBLE_EQ(truths::CathodicTransfer(slow), 0.4);
  EXPECT_NEAR(truths::ExchangeCurrent(slow), 4.82427e-7, 1e-12);  // 96485 x 1e-6 x 5e-6
  EXPECT_NEAR(truths::DoubleLayerCharge(BenchOf(experiments::kCapacitor), 0, 1), 5.654e-6, 1e-18);
  EXPECT_NEAR(truths::CellTimeConstant(BenchOf(experiments::kDecay)), 0.5654, 1e-12);
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
