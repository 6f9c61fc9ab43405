#include "macro/macro_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>

#include "macro/macro_form.h"
#include "text/lines.h"

namespace zento {
namespace {

using Kind = MacroLine::Kind;
using testing::ElementsAre;

// How each command with arguments is written: what is said when one of them is missing.
constexpr char kUsages[] =
    R"(CV.RecordTrack TrackNum; CV.Title Title; CV.RPM RPM; CV.Setting SettingNum; CV.DiskScale YScale;
CV.Voltage V1st V2nd V3rd; CV.RetainTime InitialTime/s; CV.Scanrate Scanrate/s;
CV.Repeat RepeatNum; CV.SamplingRate Samplingrate/Hz; CV.Accumlation Accum.Num.;
RDE.RecordTrack TrackNum; RDE.DiskScale YScale; RDE.RingScale YScale; RDE.Title TrackNum;
RDE.RPM RPM; RDE.Voltage V1st V2nd V3rd; RDE.RetainTime RetainTime/s; RDE.Scanrate Scanrate/s;
RDE.Repeat RepeatNum; RDE.SamplingRate Samplingrate/Hz; RDE.Accumlation Accum.Num.;
PS.RecordTrack TrackNum; PS.Title TrackNum; PS.DiskScale YScale; PS.Voltage V1st V2nd;
PS.Measuremode mode; PS.RPM RPM; PS.RetainTime RetainTime/s; PS.Coulomb CoulombNumber/C;
PS.MeasureTime MeasureTime/s; PS.InitSamplingRate Samplingrate/Hz; PS.Accumlation Accum.Num.;
RPMvsi.RecordTrack TrackNum; RPMvsi.Title TrackNum; RPMvsi.DiskScale YScale; RPMvsi.mode mode;
RPMvsi.Potential V1st; RPMvsi.RetainTime RetainTime/s; RPMvsi.RPM Start End Speed;
RPMvsi.SamplingRate Samplingrate/Hz; RPMvsi.Accumlation Accum.Num.; SetPotential E/V;
Sound FileName; Wait time/ms; Motor.On rpm; Power ch sw; Mail.DisplayName Displayname;
Mail.Address Address; Mail.Subject Subject; Mail.MsgNote MsgNote; CVF.RecordTrack TrackNum;
CVF.Title TrackNum; CVF.RPM RPM; CVF.Setting SettingNum; CVF.DiskScale YScale;
CVF.Voltage V1st V2nd V3rd; CVF.RetainTime InitialTime/s; CVF.Scanrate Scanrate/s;
CVF.Repeat RepeatNum; CVF.SamplingRate Samplingrate/Hz; CVF.Accumlation Accum.Num.;
SSV.RecordTrack TrackNum; SSV.DiskScale YScale; SSV.RingScale YScale; SSV.Title TrackNum;
SSV.RPM RPM; SSV.Voltage V1st V2nd; SSV.Acceleratemode mode; SSV.CurrentTolerance i/%;
SSV.SetSkipMode mode; SSV.AppliedCurrent i/%; SSV.VoltStep Voltstep/V; SSV.StepTime StepTime/s;
SSV.Segment SegmentNum.; SSV.SamplingRate Samplingrate/Hz; SSV.Accumlation Accum.Num.;
SSV.SendtoClip mode; SSV.MinTime mode; SSV.RecordNextTrack mode)";

constexpr char kWithoutArguments[] =
    R"(CVMeasureMode CV.Start CV.END RDEMeasureMode RDE.Start RDE.END PotentialStepMode PS.Start PS.END
RPMvsiMode RPMvsi.Start RPMvsi.END Motor.Off Mail.Send CVFMeasureMode CVF.Start CVF.END
SSVMeasureMode SSV.Start SSV.END
)";

TEST(MacroLine, EveryCommandSaysHowItIsWritten) {
  std::set<std::string> known;
  std::istringstream usages(kUsages);
  for (std::string usage; std::getline(usages >> std::ws, usage, ';');) {
    std::string line = usage.substr(0, usage.find(' '));
    if (line == "PS.Measuremode") line = "PS.MeasureMode";  // its message is spelled otherwise
    known.insert(line);
    for (const char c : usage) {
      if (c != ' ') continue;  // one for each argument
      const MacroLine read = ReadMacroLine(line);
      EXPECT_EQ(read.kind, Kind::kRefused) << line;
      EXPECT_EQ(MacroLineMessage(read, 12), " 12line Syntax error:" + usage);
      line += " 1";
    }
    EXPECT_EQ(ReadMacroLine(line).kind, Kind::kCommand) << line;
    EXPECT_EQ(ReadMacroLine(line + " more").kind, Kind::kCommand) << "further words are ignored";
  }
  std::istringstream names(kWithoutArguments);
  for (std::string command; names >> command;) {
    known.insert(command);
    EXPECT_EQ(ReadMacroLine(command).kind, Kind::kCommand) << command;
  }
  EXPECT_EQ(known.size(), MacroCommands().size());
}

TEST(MacroLine, WordsStandBetweenSingleBlanks) {
  const auto text = [](const char* line) { return ReadMacroLine(line).arguments.at(0).text; };
  EXPECT_EQ(text("CV.Title My Sample"), "My");
  EXPECT_EQ(text("CV.Title  X"), "") << "an empty word between two blanks";
  EXPECT_EQ(text("   CV.Title X   "), "X");
  EXPECT_EQ(text("Mail.DisplayName Lab  Robot "), "Lab  Robot");
  EXPECT_EQ(text("CV.RPM 0400"), "400");
  EXPECT_EQ(text("CV.RPM 0.1234567890123456789"), "0.123456789012346");
  EXPECT_EQ(text("CV.RPM rpm"), "0") << "no number is 0, not a fault";
  for (const char* line : {"CV.Title ", "\tCV.Title X", "cv.title X", "CV.TitleX", "CV.Title\tX"}) {
    EXPECT_NE(ReadMacroLine(line).kind, Kind::kCommand) << line;
  }
  for (const char* line : {"", "    ", "'CV.Start", "   ' CV.Start"}) {
    EXPECT_EQ(ReadMacroLine(line).kind, Kind::kNothing) << line;
  }
}

TEST(MacroLine, WholeNumbersMustFit) {
  const auto number = [](const char* line) { return ReadMacroLine(line).arguments.at(0).number; };
  EXPECT_EQ(number("Wait 2.5"), 2) << "halves to even";
  EXPECT_EQ(number("Wait 3.5"), 4);
  EXPECT_EQ(number("Wait 2147483647.4"), 2147483647);
  EXPECT_EQ(number("Wait -2147483648"), -2147483648.0);
  EXPECT_EQ(number("PS.MeasureMode -32768"), -32768);
  EXPECT_EQ(ReadMacroLine("Power 1 255.4").arguments.at(1).number, 255);
  EXPECT_EQ(number("CV.DiskScale 1e-3A/V"), 1e-3);
  for (const char* line :
       {"Wait 2147483648", "Wait -2147483648.6", "Wait 1e300", "CV.RecordTrack 2147483647.5",
        "PS.MeasureMode 32768", "RPMvsi.mode -32769", "Power 32767.5 1", "Power 1 256",
        "Power 1 255.5", "Power 1 -1"}) {
    const MacroLine read = ReadMacroLine(line);
    EXPECT_EQ(read.kind, Kind::kRefused) << line;
    EXPECT_THAT(MacroLineMessage(read, 1), testing::StartsWith(" 1line Syntax error:")) << line;
  }
}

TEST(MacroLook, SpansCoverCommandNumbersAndComments) {
  const auto spans = [](const char* line) { return LookOfMacroLine(line, 1).spans; };
  EXPECT_THAT(spans("  Power 1  x"),
              ElementsAre(TextSpan{2, 7, TextRole::kKeyword}, TextSpan{8, 9, TextRole::kNumber}));
  EXPECT_THAT(spans("CV.Title 400"), ElementsAre(TextSpan{0, 8, TextRole::kKeyword}));
  EXPECT_THAT(spans(" ' x"), ElementsAre(TextSpan{1, 4, TextRole::kComment}));
  EXPECT_THAT(spans("x 400"), testing::IsEmpty());
  EXPECT_EQ(LookOfMacroLine("x 400", 7).fault, " 7line Syntax Error");
}

TEST(Templates, EveryLineIsACommandAndEndsWithItsLineEnd) {
  for (const MacroTemplate& block : MacroTemplates()) {
    EXPECT_TRUE(block.block.ends_with("\r\n")) << block.control;
    EXPECT_EQ(std::count(block.block.begin(), block.block.end(), '\n'),
              std::count(block.block.begin(), block.block.end(), '\r'));
    std::string_view line;
    for (LineReader reader(block.block); reader.Next(line);) {
      EXPECT_EQ(ReadMacroLine(line).kind, Kind::kCommand) << line;
    }
  }
}

}  // namespace
}  // namespace zento
