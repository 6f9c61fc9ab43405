#include "cli/transform_command.h"

namespace zento {
namespace {

using enum OptionKind;

constexpr std::string_view kMethods[] = {"average", "savitzky-golay", "spikes"};
constexpr std::string_view kOperators[] = {"plus", "minus"};

constexpr WindowOption kFilterOptions[] = {
    {"--track", kShownTrack, "txtDataNum", "N", "the track; without it the file's first one"},
    {"--cut-off", kNumber, "txtYMaxFrequency", "HZ",
     "what is as fast or faster is removed from the currents; else the setting"},
    {.name = "--x-cut-off",
     .kind = kNumber,
     .control = "txtXMaxFrequency",
     .value = "HZ",
     .help = "the same for the x column, which is left alone without it",
     .switch_index = 1,
     .switch_control = "opnXFilter"},
};

// The method first: choosing it sets the number of points to its least one.
constexpr WindowOption kSmoothOptions[] = {
    {"--track", kShownTrack, "txtDataNum", "N", "the track; without it the file's first one"},
    {"--method", kChoice, "opnYFilter", "METHOD", "how; else average", kMethods},
    {"--points",
     kIndex,
     "txtPointNum",
     "N",
     "length of the window, odd, up to 15; else the method's least one, 3 or 5",
     {},
     "UpDown3"},
    {"--x", kCheck, "chkXAxis", "", "smooth the x column, too"},
    {.name = "--skip",
     .kind = kNumber,
     .control = "txtSkipNum",
     .value = "N",
     .help = "leave N points and one more at each end of a sweep as they are",
     .switch_index = 1,
     .switch_control = "chkSkipatEdge"},
    {"--all", kCheck, "chkApplyAllTrack", "", "all tracks of the file; not with --into"},
};

constexpr WindowOption kCalcOptions[] = {
    {.name = "--a",
     .kind = kShownTrack,
     .control = "txtOpeA",
     .value = "N",
     .help = "number of track A, whose x the result has",
     .required = true},
    {.name = "--b",
     .kind = kIndex,
     .control = "txtOpeB",
     .value = "N",
     .help = "number of track B",
     .arrows = "updOpeB",
     .required = true},
    {"--operator", kChoice, "opnOperator", "SIGN", "what is done with B; else plus", kOperators},
    {"--factor-a", kNumber, "txta", "NUMBER", "factor of A; else 1"},
    {"--factor-b", kNumber, "txtb", "NUMBER", "factor of B; else 1"},
    {"--offset", kNumber, "txtc", "A", "added to the current; else 0"},
    {"--shift", kNumber, "txtXBShift", "X", "added to every x of B, in its unit; else 0"},
};

constexpr TransformCommand kCommands[] = {
    {{"filter", "frmFFTFilter", "take high frequencies out of a track", kFilterOptions},
     "cmdUpdate",
     "cmdRecordAnotherTrack",
     "txtDesNum",
     "txtDestTitle",
     "the track that gets the result; without it the track itself"},
    {{"smooth", "frmSmoothing", "smooth a track, sweep by sweep", kSmoothOptions},
     "cmdUpdate",
     "cmdRecordAnotherTrack",
     "txtDesNum",
     "txtDestTitle",
     "the track that gets the result; without it the track itself"},
    {{"calc", "frmCalculation", "add tracks or subtract them: aA(x) + c +- bB(x)", kCalcOptions},
     "",
     "cmdUpdate",
     "txtOpeC",
     "txtOpeCTitle",
     "the track that gets the result"},
};

}  // namespace

std::span<const TransformCommand> TransformCommands() {
  return kCommands;
}

}  // namespace zento
