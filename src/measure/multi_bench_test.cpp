// Ten cells of the simulated bench, recorded at once as a person does and held against theory.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>

#include "measure/multi_form.h"
#include "measure/test_bench.h"

namespace zento {
namespace {

// The array's potentiostats sweep by themselves, 10 s after the start, at 5 mV/s from -0.199 V; the
// couple's E0 differs by 60 mV from cell to cell around 0.25 V. Reversible peaks: E1/2 + 28.49 mV,
// 2.6865e5 A sqrt(D v) C (Nicholson and Shain, 1964).
TEST(MultiBench, EachElectrodeShowsItsOwnVoltammogram) {
  Laboratory lab(sim::Textbook({"cell=array", "bits=0"}));
  auto& form = lab.Open<frmMultipotentiostat>("frmMultipotentiostat");
  Type(form.txtSamplingrate, "5");
  Type(form.txtAccum, "1");
  Type(form.txtMaxTime, "189");  // until just before the first sweep turns
  ASSERT_TRUE(form.cmdStart.UserClick().ok());
  ASSERT_TRUE(lab.RunUntilIdle());

  const double peak = 2.6865e5 * 0.2 * std::sqrt(6.5e-6 * 5e-3) * 50e-6;
  for (int i = 0; i < 10; ++i) {
    const auto current = lab.ws.tracks.Points(1, i);
    ASSERT_EQ(current.size(), 946u);
    const auto top = std::max_element(current.begin(), current.end());
    const auto at = static_cast<std::int32_t>(std::distance(current.begin(), top));
    EXPECT_NEAR(*top, peak, 0.001 * peak) << "electrode " << i;
    EXPECT_NEAR(lab.ws.tracks.Value(0, i, at), 0.25 + 0.06 * (i - 4.5) + 0.0285, 0.0015)
        << "electrode " << i;
  }
  // One time for all, in seconds.
  EXPECT_NEAR(lab.ws.tracks.Value(2, 0, 944), 189, 0.05);
}

}  // namespace
}  // namespace zento
