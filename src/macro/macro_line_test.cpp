#include "macro/macro_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>

#include "macro/templates.h"
#include "text/lines.h"

namespace zento {
namespace {

using Kind = MacroLine::Kind;
using testing::ElementsAre;

// Command, least number of arguments, what is said when one is missing.
constexpr char kMessages[] = R"(CV.RecordTrack 1 line Syntax error:CV.RecordTrack TrackNum
CV.Title 1 line Syntax error:CV.Title Title
CV.RPM 1 line Syntax error:CV.RPM RPM
CV.Setting 1 line Syntax error:CV.Setting SettingNum
CV.DiskScale 1 line Syntax error:CV.DiskScale YScale
CV.Voltage 3 line Syntax error:CV.Voltage V1st V2nd V3rd
CV.RetainTime 1 line Syntax error:CV.RetainTime InitialTime/s
CV.Scanrate 1 line Syntax error:CV.Scanrate Scanrate/s
CV.Repeat 1 line Syntax error:CV.Repeat RepeatNum
CV.SamplingRate 1 line Syntax error:CV.SamplingRate Samplingrate/Hz
CV.Accumlation 1 line Syntax error:CV.Accumlation Accum.Num.
RDE.RecordTrack 1 line Syntax error:RDE.RecordTrack TrackNum
RDE.DiskScale 1 line Syntax error:RDE.DiskScale YScale
RDE.RingScale 1 line Syntax error:RDE.RingScale YScale
RDE.Title 1 line Syntax error:RDE.Title TrackNum
RDE.RPM 1 line Syntax error:RDE.RPM RPM
RDE.Voltage 3 line Syntax error:RDE.Voltage V1st V2nd V3rd
RDE.RetainTime 1 line Syntax error:RDE.RetainTime RetainTime/s
RDE.Scanrate 1 line Syntax error:RDE.Scanrate Scanrate/s
RDE.Repeat 1 line Syntax error:RDE.Repeat RepeatNum
RDE.SamplingRate 1 line Syntax error:RDE.SamplingRate Samplingrate/Hz
RDE.Accumlation 1 line Syntax error:RDE.Accumlation Accum.Num.
PS.RecordTrack 1 line Syntax error:PS.RecordTrack TrackNum
PS.Title 1 line Syntax error:PS.Title TrackNum
PS.DiskScale 1 line Syntax error:PS.DiskScale YScale
PS.Voltage 2 line Syntax error:PS.Voltage V1st V2nd
PS.MeasureMode 1 line Syntax error:PS.Measuremode mode
PS.RPM 1 line Syntax error:PS.RPM RPM
PS.RetainTime 1 line Syntax error:PS.RetainTime RetainTime/s
PS.Coulomb 1 line Syntax error:PS.Coulomb CoulombNumber/C
PS.MeasureTime 1 line Syntax error:PS.MeasureTime MeasureTime/s
PS.InitSamplingRate 1 line Syntax error:PS.InitSamplingRate Samplingrate/Hz
PS.Accumlation 1 line Syntax error:PS.Accumlation Accum.Num.
RPMvsi.RecordTrack 1 line Syntax error:RPMvsi.RecordTrack TrackNum
RPMvsi.Title 1 line Syntax error:RPMvsi.Title TrackNum
RPMvsi.DiskScale 1 line Syntax error:RPMvsi.DiskScale YScale
RPMvsi.mode 1 line Syntax error:RPMvsi.mode mode
RPMvsi.Potential 1 line Syntax error:RPMvsi.Potential V1st
RPMvsi.RetainTime 1 line Syntax error:RPMvsi.RetainTime RetainTime/s
RPMvsi.RPM 3 line Syntax error:RPMvsi.RPM Start End Speed
RPMvsi.SamplingRate 1 line Syntax error:RPMvsi.SamplingRate Samplingrate/Hz
RPMvsi.Accumlation 1 line Syntax error:RPMvsi.Accumlation Accum.Num.
SetPotential 1 line Syntax error:SetPotential E/V
Sound 1 line Syntax error:Sound FileName
Wait 1 line Syntax error:Wait time/ms
Motor.On 1 line Syntax error:Motor.On rpm
Power 2 line Syntax error:Power ch sw
Mail.DisplayName 1 line Syntax error:Mail.DisplayName Displayname
Mail.Address 1 line Syntax error:Mail.Address Address
Mail.Subject 1 line Syntax error:Mail.Subject Subject
Mail.MsgNote 1 line Syntax error:Mail.MsgNote MsgNote
CVF.RecordTrack 1 line Syntax error:CVF.RecordTrack TrackNum
CVF.Title 1 line Syntax error:CVF.Title TrackNum
CVF.RPM 1 line Syntax error:CVF.RPM RPM
CVF.Setting 1 line Syntax error:CVF.Setting SettingNum
CVF.DiskScale 1 line Syntax error:CVF.DiskScale YScale
CVF.Voltage 3 line Syntax error:CVF.Voltage V1st V2nd V3rd
CVF.RetainTime 1 line Syntax error:CVF.RetainTime InitialTime/s
CVF.Scanrate 1 line Syntax error:CVF.Scanrate Scanrate/s
CVF.Repeat 1 line Syntax error:CVF.Repeat RepeatNum
CVF.SamplingRate 1 line Syntax error:CVF.SamplingRate Samplingrate/Hz
CVF.Accumlation 1 line Syntax error:CVF.Accumlation Accum.Num.
SSV.RecordTrack 1 line Syntax error:SSV.RecordTrack TrackNum
SSV.DiskScale 1 line Syntax error:SSV.DiskScale YScale
SSV.RingScale 1 line Syntax error:SSV.RingScale YScale
SSV.Title 1 line Syntax error:SSV.Title TrackNum
SSV.RPM 1 line Syntax error:SSV.RPM RPM
SSV.Voltage 2 line Syntax error:SSV.Voltage V1st V2nd
SSV.Acceleratemode 1 line Syntax error:SSV.Acceleratemode mode
SSV.CurrentTolerance 1 line Syntax error:SSV.CurrentTolerance i/%
SSV.SetSkipMode 1 line Syntax error:SSV.SetSkipMode mode
SSV.AppliedCurrent 1 line Syntax error:SSV.AppliedCurrent i/%
SSV.VoltStep 1 line Syntax error:SSV.VoltStep Voltstep/V
SSV.StepTime 1 line Syntax error:SSV.StepTime StepTime/s
SSV.Segment 1 line Syntax error:SSV.Segment SegmentNum.
SSV.SamplingRate 1 line Syntax error:SSV.SamplingRate Samplingrate/Hz
SSV.Accumlation 1 line Syntax error:SSV.Accumlation Accum.Num.
SSV.SendtoClip 1 line Syntax error:SSV.SendtoClip mode
SSV.MinTime 1 line Syntax error:SSV.MinTime mode
SSV.RecordNextTrack 1 line Syntax error:SSV.RecordNextTrack mode
)";

constexpr char kWithoutArguments[] =
    R"(CVMeasureMode CV.Start CV.END RDEMeasureMode RDE.Start RDE.END PotentialStepMode PS.Start PS.END
RPMvsiMode RPMvsi.Start RPMvsi.END Motor.Off Mail.Send CVFMeasureMode CVF.Start CVF.END
SSVMeasureMode SSV.Start SSV.END
)";

TEST(MacroLine, EveryCommandSaysHowItIsWritten) {
  std::set<std::string> known;
  std::istringstream rows(kMessages);
  std::string command;
  std::string message;
  for (std::size_t count = 0; rows >> command >> count && std::getline(rows >> std::ws, message);) {
    known.insert(command);
    std::string line = command;
    for (std::size_t given = 0; given < count; ++given, line += " 1") {
      const MacroLine read = ReadMacroLine(line);
      EXPECT_EQ(read.kind, Kind::kRefused) << line;
      EXPECT_EQ(MacroLineMessage(read, 12), " 12" + message);
    }
    EXPECT_EQ(ReadMacroLine(line).kind, Kind::kCommand) << line;
    EXPECT_EQ(ReadMacroLine(line + " more").kind, Kind::kCommand) << "further words are ignored";
  }
  std::istringstream names(kWithoutArguments);
  while (names >> command) {
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
