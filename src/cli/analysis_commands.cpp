#include <algorithm>

#include "cli/analysis_command.h"

namespace zento {
namespace {

using enum EntryKind;

constexpr std::string_view kUnknowns[] = {"electrons", "viscosity", "diffusion", "concentration"};
constexpr std::string_view kTrackBases[] = {"none", "value", "track"};
constexpr std::string_view kLines[] = {"origin", "intercept"};
constexpr std::string_view kIntegrations[] = {"trapezoid", "simpson"};
constexpr std::string_view kChargeBases[] = {"none", "linear", "value"};

constexpr std::string_view kTrackHelp = "the track; without it the file's first one";
constexpr std::string_view kPointsHelp =
    "first and last point, both used, counted from 0; either may be left out";

constexpr AnalysisEntry kRotationEntries[] = {
    {"--track", kShownTrack, "txtDataNum", "N",
     "the track that the window shows; a rotation-rate sweep is analysed alone. Without it the "
     "first of --tracks, else the file's first one"},
    {"--tracks", kUsedTracks, "chkUse", "LIST",
     "the tracks that are used: 0,2-5 or all; without it those that the file says"},
    {"--potential", kNumber, "txtUseVoltage", "V", "centre of the potential window"},
    {"--half-width", kNumber, "txtKLVrange", "V", "half-width of the potential window"},
    {"--area", kNumber, "txtArea", "CM2", "electrode area"},
    {"--viscosity", kNumber, "txtKLViscosity", "CM2/S", "kinematic viscosity"},
    {"--diffusion", kNumber, "txtDm", "CM2/S", "diffusion coefficient"},
    {"--concentration", kNumber, "txtConc", "MOL/CM3", "concentration"},
    {"--electrons", kNumber, "txtne", "N", "number of electrons"},
    {"--solve", kChoice, "opnVariable", "WHAT", "the quantity that is solved for", kUnknowns},
    {"--points", kPoints, "", "FIRST:LAST", kPointsHelp, {}, {}, true},
    {"--base",
     kChoice,
     "opnBaseLine",
     "MODE",
     "the current that is subtracted",
     kTrackBases,
     {},
     true},
    {"--base-value", kNumber, "txtSubVal", "A", "for --base value", {}, {}, true},
    {"--base-track", kIndex, "txtBaseTrack", "N", "for --base track", {}, "updBase", true},
    {"--base-end",
     kIndex,
     "txtBaseEnd",
     "LAST",
     "last point of the base line's track",
     {},
     "updBaseEnd",
     true},
};

constexpr AnalysisEntry kCottrellEntries[] = {
    {"--track", kShownTrack, "txtDataNum", "N", kTrackHelp},
    {"--points", kPoints, "", "FIRST:LAST", kPointsHelp},
    {"--electrons", kNumber, "txtne", "N", "number of electrons"},
    {"--concentration", kNumber, "txtConc", "MOL/CM3", "concentration; else the track's"},
    {"--area", kNumber, "txtArea", "CM2", "electrode area; else the track's"},
    {"--line", kChoice, "opnCalcMode", "KIND", "through the origin, or with an intercept", kLines},
};

constexpr AnalysisEntry kCoulombEntries[] = {
    {"--track", kShownTrack, "txtDataNum", "N", kTrackHelp},
    {"--points", kPoints, "", "FIRST:LAST", kPointsHelp},
    {"--method", kChoice, "opnMethod", "RULE", "rule of integration", kIntegrations},
    {"--base", kChoice, "opnBaseLine", "MODE", "base line", kChargeBases},
    {"--base-value", kNumber, "txtBaseValue", "A", "for --base value"},
};

constexpr AnalysisEntry kTafelEntries[] = {
    {"--track", kShownTrack, "txtDataNum", "N", kTrackHelp},
    {"--points", kPoints, "", "FIRST:LAST", kPointsHelp},
    {"--redox-potential", kNumber, "txtRedoxPotential", "V", "where the overpotential is 0"},
    {"--area", kNumber, "txtArea", "CM2", "electrode area"},
};

constexpr AnalysisEntry kOxygenEntries[] = {
    {"--track", kShownTrack, "txtDataNum", "N", kTrackHelp},
    {"--collection", kNumber, "txtCE", "N", "collection efficiency of the ring"},
    {"--step", kNumber, "txtVstep", "V", "from one potential to the next"},
    {"--half-width", kNumber, "txtVrange", "V", "half-width of the averaging window"},
};

constexpr AnalysisCommand kCommands[] = {
    {"kl", "frmKoutecky_Levich", "Koutecky-Levich analysis: 1/j against 1/sqrt(f)",
     kRotationEntries, "opnMethod", 0},
    {"levich", "frmKoutecky_Levich", "Levich analysis: j against sqrt(f)", kRotationEntries,
     "opnMethod", 1},
    {"cottrell", "frmCottrellEquation", "diffusion coefficient from a potential step",
     kCottrellEntries},
    {"coulomb", "frmCoulombCalculator", "charge between two points", kCoulombEntries},
    {"tafel", "frmTafelAnalyzer", "transfer coefficient and exchange current", kTafelEntries},
    {"o2", "frmO2Reduction", "share of water from ring and disk currents", kOxygenEntries},
};

}  // namespace

std::span<const AnalysisCommand> AnalysisCommands() {
  return kCommands;
}

const AnalysisCommand* FindAnalysisCommand(std::string_view name) {
  const auto* found = std::ranges::find(kCommands, name, &AnalysisCommand::name);
  return found == std::end(kCommands) ? nullptr : found;
}

}  // namespace zento
