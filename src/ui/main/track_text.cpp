#include "ui/main/track_text.h"

#include <algorithm>
#include <utility>

#include "core/tables.h"
#include "core/track_store.h"
#include "text/format.h"
#include "text/lines.h"
#include "text/number.h"

namespace zento {
namespace {

// Unlike that of text files, with the zero before the point, as spreadsheets write it.
std::string BlankSigned(double value) {
  const std::string number = PlainNumber(value);
  return number.front() == '-' ? number : " " + number;
}

class Lines {
 public:
  void Add(std::string_view label, std::string_view value) {
    text.append(label).append("\t").append(value).append("\r\n");
  }
  std::string text;
};

}  // namespace

std::string CellText(std::string text) {
  text = OneLine(std::move(text));
  std::replace(text.begin(), text.end(), '\t', ' ');
  return text;
}

std::string TrackInfoText(const TrackStore& tracks, int track, std::string_view file_title) {
  const TrackRecord& record = tracks.Record(track);
  if (record.Mode == kModeNone) return "No Data";
  Lines lines;
  lines.Add("Filename", CellText(std::string(file_title)));
  lines.Add("Mode", AtOrNone(ModeCaption, record.Mode));
  lines.Add("Title", CellText(record.Title));
  lines.Add("MeasTime", CellText(record.MeasTime));
  if (record.Mode == kModeSSV) {
    lines.Add("StepTime", BlankSigned(record.StepTime));
  } else {
    lines.Add("Scanrate", BlankSigned(record.Scanrate));
  }
  lines.Add("Ref", AtOrNone(RefName, record.ref));
  if (record.Mode == kModePS) {
    lines.Add("V1st", Format(record.V[0], "0.000"));
    lines.Add("V2nd", Format(record.V[1], "0.000"));
  }
  if (HasRing(record.Mode)) lines.Add("RingXValue=", PlainNumber(record.RingXValue));
  if (record.Mode == kModeRPMvsj) lines.Add("DiskXValue=", PlainNumber(record.V[0]));
  lines.Add("RPM", BlankSigned(record.RPM));
  lines.Add("Conc/molcm-3", Format(record.Conc, "0.000e+0"));
  lines.Add("Area/cm2", Format(record.Area, "0.0000"));
  lines.Add("Weight/mg", Format(record.Weight, "0.000e+0"));
  lines.Add("ne", PlainNumber(record.ne));
  if (record.Mode == kModeMulti) lines.Add("Track", BlankSigned(track));
  return std::move(lines.text);
}

}  // namespace zento
