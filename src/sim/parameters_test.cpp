#include "sim/parameters.h"
#include "text/status.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace zento::sim {
namespace {

using ::testing::HasSubstr;

TEST(BenchParameters, EveryDefaultIsAcceptedUnderItsOwnKey) {
  std::set<std::string_view> keys;
  for (const Parameter& parameter : ParameterTable()) {
    Parameters parameters;
    EXPECT_TRUE(Set(parameters, parameter.key, ValueText(parameters, parameter)).ok())
        << parameter.key;
    EXPECT_EQ(parameters.*parameter.member, parameter.standard) << parameter.key;
    EXPECT_TRUE(keys.insert(parameter.key).second) << parameter.key;
    EXPECT_FALSE(parameter.help.empty()) << parameter.key;
  }
}

TEST(BenchParameters, TakesNumbersAndNames) {
  Parameters parameters;
  EXPECT_TRUE(SetFromText(parameters, "D_ox=1.9e-5").ok());
  EXPECT_TRUE(SetFromText(parameters, "own=on").ok());
  EXPECT_TRUE(SetFromText(parameters, "E0=-0.1").ok());
  EXPECT_EQ(parameters.diffusion_ox, 1.9e-5);
  EXPECT_EQ(parameters.own, 1);
  EXPECT_EQ(parameters.formal_potential, -0.1);
}

TEST(BenchParameters, ACellBringsItsOwnDefaultsButNotOverWhatWasSet) {
  Parameters parameters;
  EXPECT_TRUE(SetFromText(parameters, "R_u=10").ok());
  EXPECT_TRUE(SetFromText(parameters, "cell=oxygen").ok());
  EXPECT_EQ(parameters.Kind(), kOxygen);
  EXPECT_EQ(parameters.capacitance, 50);
  EXPECT_EQ(parameters.resistance, 10) << "set before, although to the couple's own default";
  EXPECT_TRUE(SetFromText(parameters, "C_dl=33").ok());
  EXPECT_TRUE(SetFromText(parameters, "cell=array").ok());
  EXPECT_EQ(parameters.capacitance, 33);
  EXPECT_EQ(parameters.rest_potential, 0) << "no longer the oxygen's";
  EXPECT_EQ(parameters.disk_range, 5e-3);
  for (const Parameter& parameter : ParameterTable()) {
    for (const CellKind kind : {kOxygen, kArray, kBlank}) {
      Parameters other;
      other.*parameter.member = Standard(parameter, kind);
      EXPECT_TRUE(Set(other, parameter.key, ValueText(other, parameter)).ok()) << parameter.key;
    }
  }
}

TEST(BenchParameters, SaysWhatIsWrongAndChangesNothing) {
  Parameters parameters;
  const auto why = [&](std::string_view text) { return SetFromText(parameters, text).why(); };
  EXPECT_THAT(why("D_xo=1"), HasSubstr("no parameter 'D_xo'"));
  EXPECT_THAT(why("D_ox=fast"), HasSubstr("'fast' is not a number from 1E-08 to 0.001 cm2/s"));
  EXPECT_THAT(why("D_ox=0"), HasSubstr("'0' is not a number from"));
  EXPECT_THAT(why("D_ox=1e-5x"), HasSubstr("'1e-5x'"));
  EXPECT_THAT(why("D_ox="), HasSubstr("''"));
  EXPECT_THAT(why("bits=2.5"), HasSubstr("a whole number from 0 to 16"));
  EXPECT_THAT(why("cell=tea"), HasSubstr("'tea' is not one of couple oxygen array blank"));
  EXPECT_THAT(why("noise"), HasSubstr("KEY=VALUE"));
  for (const Parameter& parameter : ParameterTable()) {
    EXPECT_EQ(parameters.*parameter.member, parameter.standard) << parameter.key;
  }
}

}  // namespace
}  // namespace zento::sim
