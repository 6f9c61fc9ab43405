#include "sim/bench.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>
#include <vector>

#include "host/virtual/virtual_time.h"
#include "sim/test_support.h"

namespace zento::sim {
namespace {

using ::testing::HasSubstr;

// A bench with each board as a function from channel to volts, the way the drivers above use them.
struct Laboratory {
  explicit Laboratory(const Parameters& parameters) : bench(clock, parameters) {
    libraries = bench.Libraries();
    libraries.dask.Register_Card(22, 0);
    libraries.aio.AioOpenEx("AIO00", &aio);
    libraries.gpib.GpIni();
    static_cast<void>(libraries.serial.Open(1, "9600,N,8,1"));
  }

  double Dask(int channel, int range = 3) {
    double volts = -99;
    libraries.dask.AI_VReadChannel(0, static_cast<std::uint16_t>(channel),
                                   static_cast<std::uint16_t>(range), &volts);
    return volts;
  }
  double Aio(int channel) {
    std::uint16_t data = 0;
    auto number = static_cast<std::uint16_t>(channel);
    vendor::AioTransfer transfer{libraries.aio.LpWord(&data), libraries.aio.LpWord(&number), 1};
    EXPECT_EQ(libraries.aio.AioInp(aio, &transfer), 0);
    return libraries.aio.BinaryToVI(-2.5F, 2.5F, 1, 12, static_cast<std::int16_t>(data));
  }
  double Port(int channel) {
    libraries.port_io.PortOutputByte(0x1D0, static_cast<std::uint8_t>(channel + 16));
    EXPECT_NE(libraries.port_io.PortInputByte(0x1D1) & 0x40, 0);
    const int low = libraries.port_io.PortInputByte(0x1D0);
    return ((libraries.port_io.PortInputByte(0x1D1) & 15) * 256 + low) * 5.0 / 4096 - 2.5;
  }
  std::int32_t Talk(std::string_view text, std::int32_t address = 7) {
    const std::int32_t addresses[] = {2, 0, address};
    return libraries.gpib.GpTalk(addresses, static_cast<std::int32_t>(text.size()), text.data());
  }
  void Serial(std::string_view text) {
    EXPECT_TRUE(
        libraries.serial
            .Write("WRT #" + std::to_string(text.size() + 2) + ",7\n" + std::string(text) + "\r\n")
            .ok());
  }
  void Wait(double seconds) {
    clock.AdvanceTo(clock.Micros() + static_cast<std::int64_t>(seconds * 1e6));
  }

  VirtualClock clock;
  Bench bench;
  vendor::Libraries libraries;
  std::int32_t aio = 0;
};

Parameters Quiet(std::initializer_list<std::string_view> changes = {}) {
  return With(changes, With({"noise=0", "mains=0"}));
}

TEST(Bench, AllBoardsAndBothLinksMeasureTheSame) {
  const auto lines = CyclicSweep("-0200", "+0600", "-0200", "20E-2", "001");
  const auto record = [&](bool serial, const std::function<double(Laboratory&, int)>& read) {
    Laboratory lab(Quiet());
    for (const std::string& line : lines) serial ? lab.Serial(line) : void(lab.Talk(line));
    serial ? lab.Serial("A1") : void(lab.Talk("A1"));
    std::vector<double> values;
    for (int i = 0; i < 100; ++i) {
      lab.Wait(0.05);
      values.push_back(read(lab, 0));
      values.push_back(read(lab, 1));
    }
    return values;
  };
  const auto dask = record(false, [](Laboratory& lab, int channel) { return lab.Dask(channel); });
  const auto aio = record(true, [](Laboratory& lab, int channel) { return lab.Aio(channel); });
  const auto port = record(false, [](Laboratory& lab, int channel) { return lab.Port(channel); });
  const auto [least, most] = std::ranges::minmax(dask);
  EXPECT_LT(least, -0.1);
  EXPECT_GT(most, 0.58);
  for (std::size_t i = 0; i < dask.size(); ++i) {
    EXPECT_EQ(dask[i], port[i]) << i;
    EXPECT_NEAR(dask[i], aio[i], 1e-6) << i;  // single precision on its way
  }
}

TEST(Bench, RingAndRotorReachEveryBoardWithinItsRange) {
  Laboratory lab(Quiet({"cell=oxygen", "rest=0.2", "ring=1.25"}));
  const std::function<double(int)> boards[] = {[&](int channel) { return lab.Dask(channel); },
                                               [&](int channel) { return lab.Aio(channel); },
                                               [&](int channel) { return lab.Port(channel); }};
  constexpr double kCode = 5.0 / 4096;
  lab.libraries.dask.AO_VWriteChannel(0, 0, 2.0);
  lab.libraries.port_io.PortOutputByte(0x40, 1);
  lab.Wait(20);
  const double ring = -lab.Dask(1) * 1e-3 / 3.9 * 0.1 * 0.39 / 1e-5;
  EXPECT_GT(ring, 0.5);
  for (const auto& read : boards) {
    EXPECT_EQ(read(2), 1.25);
    EXPECT_NEAR(read(3), ring, 2 * kCode);
    EXPECT_NEAR(read(4), 1.97, kCode);
    for (const int nothing : {5, 15, 16, 19, 47, 63}) EXPECT_EQ(read(nothing), 0.0) << nothing;
  }
  lab.libraries.dask.AO_VWriteChannel(0, 0, 4.0);
  lab.Wait(20);
  for (const auto& read : boards) EXPECT_NEAR(read(4), 2.498779296875, 1e-6) << "3940 rpm";
  EXPECT_NEAR(lab.bench.plant().rotor().rpm(), 3940, 0.01) << "the rotor itself knows no limit";
  lab.libraries.dask.DO_WritePort(0, 0, 0);
  lab.Wait(20);
  for (const auto& read : boards) EXPECT_EQ(read(4), 0.0);
}

// Through the generator's strings, the cell and the board, to the readings.
TEST(Bench, APotentialStepGivesCottrellsCurrentFromTheMomentItIsDue) {
  for (const bool oxygen : {false, true}) {
    const Parameters p = oxygen ? Textbook({"cell=oxygen", "bits=0"}) : Textbook({"bits=0"});
    Laboratory lab(p);
    lab.Wait(0.0123456);
    const auto lines =
        oxygen ? PotentialStep("+1230", "+0200", "002") : PotentialStep("-0200", "+0800", "002");
    for (const std::string& line : lines) ASSERT_EQ(lab.Talk(line), 0);
    lab.Dask(0);  // the physics stands somewhere within a step
    const std::int64_t due = lab.clock.Micros() + 2'000'000;
    ASSERT_EQ(lab.Talk("A1"), 0);
    lab.clock.AdvanceTo(due - 1000);
    EXPECT_NEAR(lab.Dask(0), oxygen ? 1.23 : -0.2, 1e-9);
    const double unit =
        oxygen ? -3.9 * kFaraday * p.area * 1.2e-6 * std::sqrt(1.9e-5 / std::numbers::pi)
               : kFaraday * p.area * 5e-6 * std::sqrt(6.5e-6 / std::numbers::pi);
    for (const double t : {0.02, 0.021, 0.0305, 0.05, 0.1, 0.5, 2.0, 20.0, 90.0}) {
      lab.clock.AdvanceTo(due + static_cast<std::int64_t>(t * 1e6));
      EXPECT_NEAR(lab.Dask(1) * p.disk_range * std::sqrt(t) / unit, 1.0, 1e-3) << t;
      EXPECT_NEAR(lab.Dask(0), oxygen ? 0.2 : 0.8, 1e-9);
    }
    lab.Wait(30);
    EXPECT_NEAR(lab.Dask(0), oxygen ? 0.2 : 0.8, 1e-9) << "held until the output goes off";
    ASSERT_EQ(lab.Talk("A0"), 0);
    lab.Wait(0.01);
    EXPECT_NEAR(lab.Dask(0), p.rest_potential, 1e-9);
  }
}

TEST(Bench, AnArrayFillsTwentyChannelsOfEveryBoard) {
  Laboratory lab(Quiet({"cell=array", "own_delay=0", "bits=0"}));
  lab.Wait(150);  // the sweep has come to the last of the ten potentials
  double before = 0;
  for (int cell = 0; cell < 10; ++cell) {
    EXPECT_NEAR(lab.Dask(2 * cell), -0.199 + 150 * 5e-3, 1e-4) << cell;
    const double current = lab.Dask(2 * cell + 1);
    EXPECT_GT(current, 0.0) << cell;
    EXPECT_GT(std::abs(current - before), 1e-3) << cell;
    before = current;
    for (const int channel : {2 * cell, 2 * cell + 1}) {
      const double volts = lab.Dask(channel);
      EXPECT_NEAR(lab.Port(channel), volts, 5.0 / 4096) << channel;
      EXPECT_NEAR(lab.Aio(channel), volts, 5.0 / 4096) << channel;
    }
  }
  EXPECT_EQ(lab.Dask(20), 0.0);
}

TEST(Bench, ConversionsFollowOneAnotherAndTakeTheirTime) {
  Laboratory lab(Quiet({"bits=0", "C_dl=0"}));
  for (const std::string& line : CyclicSweep("+0000", "+1000", "+0000", "10E+0", "000")) {
    ASSERT_EQ(lab.Talk(line), 0);
  }
  ASSERT_EQ(lab.Talk("A1"), 0);
  lab.Wait(0.01);
  const std::int64_t before = lab.clock.Micros();
  const double first = lab.Dask(0);
  double last = 0;
  for (int i = 0; i < 40; ++i) last = lab.Dask(0);
  EXPECT_EQ(lab.clock.Micros() - before, 41 * 25);
  EXPECT_NEAR(last - first, 10.0 * 40 * 25e-6, 1e-9);
}

TEST(Bench, AClockThatDoesNotSpendIsNotRunAwayFrom) {
  class RealClock : public VirtualClock {
   public:
    void Spend(std::int64_t) override {}
  } clock;
  Bench bench(clock, Quiet({"bits=0", "own=on", "own_delay=0", "own_1=0", "own_rate=1000"}));
  const vendor::Libraries libraries = bench.Libraries();
  libraries.dask.Register_Card(22, 0);
  double volts = 0;
  for (int tick = 0; tick < 50; ++tick) {
    clock.AdvanceTo(clock.Micros() + 10'000);
    for (int i = 0; i < 1000; ++i) libraries.dask.AI_VReadChannel(0, 0, 3, &volts);  // 25 ms
  }
  EXPECT_NEAR(volts, 0.5 + 0.02, 1e-9);
}

TEST(Bench, WithoutDisturbancesReadingsAreExact) {
  Laboratory lab(Quiet({"bits=0", "rest=0.123456789", "C_red=0"}));
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(lab.Dask(0), 0.123456789);
    EXPECT_EQ(lab.Dask(1), 0.0);
    EXPECT_EQ(lab.Dask(9), 0.0);
    lab.Wait(0.1);
  }
  EXPECT_EQ(lab.Port(0), std::floor((0.123456789 + 2.5) * 4096 / 5 + 0.5) * 5 / 4096 - 2.5);
}

TEST(Bench, RangesQuantiseAndClamp) {
  Laboratory lab(Quiet({"rest=0.7", "C_red=0"}));
  EXPECT_NEAR(lab.Dask(0, 3), 0.7, 2.5 / 4096);
  EXPECT_NEAR(lab.Dask(0, 4), 0.7, 1.25 / 4096);
  EXPECT_EQ(lab.Dask(0, 5), 0.625 * (1 - 2.0 / 4096));
  EXPECT_EQ(lab.Dask(0, 9), -99) << "no such range: nothing is read";
  EXPECT_EQ(Quantise(-2.5, 2.5, 12), 0);
  EXPECT_EQ(Quantise(0.0, 2.5, 12), 2048);
  EXPECT_EQ(Quantise(-9.0, 2.5, 12), 0);
  EXPECT_EQ(Quantise(9.0, 2.5, 12), 4095);
}

TEST(Bench, NoiseIsAsSetAndTheSeedRepeatsIt) {
  const auto read = [](std::string_view seed) {
    Laboratory lab(With({"bits=0", "mains=0", "C_red=0", seed}));
    std::vector<double> values(20'000);
    for (double& value : values) value = lab.Dask(0);
    return values;
  };
  const std::vector<double> values = read("seed=5");
  double sum = 0;
  double squares = 0;
  for (const double v : values) sum += v, squares += v * v;
  EXPECT_NEAR(sum / 20'000, 0.0, 5 * 0.6e-3 / std::sqrt(20'000));
  EXPECT_NEAR(std::sqrt(squares / 20'000), 0.6e-3, 0.02e-3);
  EXPECT_EQ(values, read("seed=5"));
  EXPECT_NE(values, read("seed=6"));

  Laboratory lab(With({"bits=0", "noise=0", "C_red=0"}));
  double most = 0;
  for (int i = 0; i < 1600; ++i) most = std::max(most, lab.Dask(0));  // two periods of the mains
  EXPECT_NEAR(most, 0.5e-3, 1e-8);
}

TEST(Bench, TheRotorTurnsWhileItsOutletIsOn) {
  Laboratory lab(Quiet({"bits=0"}));
  EXPECT_EQ(lab.libraries.dask.AO_9112_Config(0, 0, -5.0), 0);
  EXPECT_EQ(lab.libraries.dask.AO_VWriteChannel(0, 0, 1.6), 0);
  lab.Wait(5);
  EXPECT_EQ(lab.Dask(4), 0.0) << "no power yet";
  lab.libraries.port_io.PortOutputByte(0x40, 1);
  lab.Wait(0.4);
  EXPECT_NEAR(lab.Dask(4), 1.576 * (1 - std::exp(-1)), 0.01);
  lab.Wait(10);
  EXPECT_NEAR(lab.Dask(4), 1.576, 1e-6) << "1.5 % below the motor's law";
  lab.libraries.dask.AO_VWriteChannel(0, 0, 5.0);
  lab.Wait(10);
  EXPECT_EQ(lab.Dask(4), 2.5) << "beyond the board's range";
  lab.libraries.dask.DO_WritePort(0, 0, 0);
  lab.Wait(20);
  EXPECT_EQ(lab.Dask(4), 0.0);
  EXPECT_EQ(lab.bench.outlets(), 0);
}

TEST(Bench, TheRotorWandersOnlyWithTheNoise) {
  Laboratory lab(With({"bits=0", "mains=0", "noise=1e-6"}));
  lab.libraries.dask.AO_VWriteChannel(0, 0, 1.0);
  lab.libraries.port_io.PortOutputByte(0x40, 1);
  lab.Wait(20);
  double sum = 0;
  double squares = 0;
  constexpr int kCount = 2000;
  for (int i = 0; i < kCount; ++i) {
    lab.Wait(1);
    const double rpm = lab.Dask(4) * 1000;
    sum += rpm - 985;
    squares += (rpm - 985) * (rpm - 985);
  }
  EXPECT_NEAR(sum / kCount, 0, 0.4);
  EXPECT_NEAR(std::sqrt(squares / kCount), 3.0, 0.3);
}

TEST(Bench, CalibrationMatchesTheMotor) {
  Parameters parameters;
  for (const char* scale : {"motor_scale=1000", "motor_scale=60", "motor_scale=1"}) {
    ASSERT_TRUE(SetFromText(parameters, scale).ok());
    const auto points = RotorCalibration(parameters);
    ASSERT_GE(points.size(), 2u);
    EXPECT_EQ(points.back().volts, 5.0);
    for (std::size_t i = 0; i < points.size(); ++i) {
      EXPECT_NEAR(points[i].rpm, points[i].volts * parameters.motor_scale, 1e-9);
      EXPECT_GT(points[i].rpm, i == 0 ? 0.0 : points[i - 1].rpm);
    }
  }
}

TEST(Bench, ThePotentiostatRunsItsOwnProgramme) {
  Laboratory lab(Quiet({"bits=0", "own=on", "own_delay=3", "own_1=-0.1", "own_2=0.4", "own_3=0.1",
                        "own_rate=100", "own_cycles=1"}));
  const auto at = [&](double seconds) {
    lab.clock.AdvanceTo(1'000'000 + static_cast<std::int64_t>(seconds * 1e6));
    return lab.Dask(0);
  };
  for (const double start : {0.0, 3 + 5 + 3 + 2.0}) {  // waits again, goes again
    EXPECT_NEAR(at(start + 2.9), -0.1, 1e-6);
    EXPECT_NEAR(at(start + 3.5), -0.05, 1e-6);
    EXPECT_NEAR(at(start + 8.0), 0.4, 1e-6);
    EXPECT_NEAR(at(start + 11.0), 0.1, 1e-6);
  }
  lab.Talk("A1");
  lab.Wait(0.01);
  EXPECT_EQ(lab.Dask(0), 0.0) << "a generator that is on has the say";
}

TEST(Bench, ANightThatNobodyWatchesCostsNothing) {
  Laboratory lab(Quiet({"bits=0", "C_ox=5", "rest=0.3"}));
  lab.Wait(1);
  const double early = lab.Dask(1);
  lab.Wait(14 * 3600);
  // The cell goes on relaxing meanwhile, as 1/sqrt(t).
  EXPECT_NEAR(lab.Dask(1) / early, std::sqrt(1.0 / (14 * 3600.0 + 1)), 1e-4);
}

TEST(Bench, OtherAddressesTimeOut) {
  Laboratory lab(Quiet());
  EXPECT_EQ(lab.Talk("A1", 9), 254);
  EXPECT_EQ(lab.Talk("A1"), 0);
  EXPECT_THAT(lab.bench.Describe(), HasSubstr("generator on"));
  lab.libraries.gpib.GpExit();
  EXPECT_EQ(lab.Talk("A0"), 252) << "not initialised";
}

TEST(Bench, FaultsOnPurpose) {
  Laboratory lab(Quiet());
  lab.bench.faults = {true, true, true, true, true};
  lab.libraries.port_io.PortOutputByte(0x1D0, 16);
  EXPECT_EQ(lab.libraries.port_io.PortInputByte(0x1D1) & 0x40, 0);
  std::int32_t id = 0;
  EXPECT_NE(lab.libraries.aio.AioOpenEx("AIO00", &id), 0);
  EXPECT_LT(lab.libraries.dask.Register_Card(22, 0), 0);
  EXPECT_GE(lab.libraries.gpib.GpIni() & 0xFF, 3);
  EXPECT_FALSE(lab.libraries.serial.Open(1, "9600,N,8,1").ok());
}

TEST(Bench, RefusesWhatARealOneWould) {
  Laboratory lab(Quiet());
  EXPECT_LT(lab.libraries.dask.Register_Card(23, 0), 0) << "another kind of card";
  EXPECT_LT(lab.libraries.dask.AO_VWriteChannel(4, 0, 1.0), 0) << "no such card";
  EXPECT_LT(lab.libraries.dask.AO_VWriteChannel(0, 0, 6.0), 0) << "beyond the output";
  EXPECT_EQ(lab.libraries.dask.Release_Card(0), 0);
  EXPECT_EQ(lab.Dask(0), -99);
  vendor::AioTransfer nowhere{0, 77, 1};
  EXPECT_NE(lab.libraries.aio.AioInp(lab.aio, &nowhere), 0);
  EXPECT_NE(lab.libraries.aio.AioInp(99, &nowhere), 0);
}

}  // namespace
}  // namespace zento::sim
