#include "cli/transform_command.h"

namespace zento {
namespace {

using enum OptionKind;

constexpr std::string_view kMethods[] = {"average", "savitzky-golay", "spikes"};
constexpr std::string_view kOperators[] = {"plus", "minus"};
constexpr std::string_view kUnits[] = {"A", "mA", "uA", "nA"};
constexpr std::string_view kNormalisations[] = {"none", "area", "weight"};
constexpr std::string_view kPolarities[] = {"all", "positive", "negative"};

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

constexpr WindowOption kCopyOptions[] = {
    {"--unit", kChoice, "opnDiskUnit", "UNIT", "of the current", kUnits},
    {"--ring-unit", kChoice, "opnRingUnit", "UNIT", "of the ring current", kUnits},
    {"--per", kChoice, "opnNormalisation", "WHAT", "divide currents by the track's",
     kNormalisations},
    {"--log", kCheck, "chkLog", "", "log10 of the currents without their sign"},
    {"--absolute", kCheck, "chkAbsolute", "", "currents without their sign"},
    {.name = "--water",
     .kind = kNumber,
     .control = "txtCE",
     .value = "N",
     .help = "a column %H2O, with the ring's collection efficiency N",
     .switch_index = 1,
     .switch_control = "chkH2O"},
    {"--only", kChoice, "opnPolarity", "SIGN", "points by the sign of the disk current",
     kPolarities},
    {.name = "--cycle",
     .kind = kNumber,
     .control = "txtCycle",
     .value = "N",
     .help = "this cycle alone, from 1 on",
     .switch_index = 1,
     .switch_control = "opnCycles"},
    {.name = "--no-header",
     .kind = kCheck,
     .control = "",
     .value = "",
     .help = "the table alone, without the track's record",
     .switch_index = 0,
     .switch_control = "chkHeader"},
    {"--angle", kNumber, "txtAngle", "DEG", "thinning: keep points where the curve turns by more"},
    {"--distance", kNumber, "txtDistance", "FRACTION",
     "thinning: keep points that are farther away, in parts of the display range"},
    {"--order", kNumber, "txtOrder", "N", "thinning: keep every n-th point"},
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

constexpr WindowCommand kCopy{"table", "frmSpecialCopy", "", kCopyOptions};

}  // namespace

std::span<const TransformCommand> TransformCommands() {
  return kCommands;
}

const WindowCommand& SpecialCopyCommand() {
  return kCopy;
}

}  // namespace zento
