#include "exchange/information_sheet.h"

#include <array>
#include <cstddef>
#include <functional>

#include "core/tables.h"
#include "text/number.h"

namespace zento {
namespace {

struct Row {
  std::string_view label;
  // The number behind the row; null for texts.
  double& (*number)(TrackRecord&);
};

const std::array<Row, kSheetRows> kRows = {{
    {"Mode", nullptr},
    {"Title", nullptr},
    {"Time", nullptr},
    {"Scan rate /mVs-1", [](TrackRecord& r) -> double& { return r.Scanrate; }},
    {"V1st /V", [](TrackRecord& r) -> double& { return r.V[0]; }},
    {"V2nd /V", [](TrackRecord& r) -> double& { return r.V[1]; }},
    {"V3rd /V", [](TrackRecord& r) -> double& { return r.V[2]; }},
    {"RPM", [](TrackRecord& r) -> double& { return r.RPM; }},
    {"Point Num.", nullptr},
    {"Conc. molcm-3", [](TrackRecord& r) -> double& { return r.Conc; }},
    {"DiskYScale", [](TrackRecord& r) -> double& { return r.DiskYscale; }},
    {"RingYScale", [](TrackRecord& r) -> double& { return r.RingYscale; }},
    {"pH", [](TrackRecord& r) -> double& { return r.pH; }},
}};

const Row& RowAt(int row) {
  return kRows[static_cast<std::size_t>(row)];
}

}  // namespace

std::string_view SheetLabel(int row) {
  return RowAt(row).label;
}

std::string SheetValue(int row, const TrackRecord& record) {
  switch (row) {
    case kSheetMode:
      return std::string(AtOrNone(ModeName, record.Mode));
    case kSheetTitle:
      return record.Title;
    case kSheetTime:
      return record.MeasTime;
    case kSheetPoints:
      return PlainNumber(record.pnum);
    default: {
      TrackRecord copy = record;
      // The digits a person means: a converted potential is -0.058 V, not -0.058000000000000024 V.
      return PlainNumber(RowAt(row).number(copy), 15);
    }
  }
}

bool SheetRowEditable(int row) {
  return row >= 0 && row < kSheetRows && (row == kSheetTitle || RowAt(row).number != nullptr);
}

void SetSheetValue(int row, TrackRecord& record, std::string_view text) {
  if (!SheetRowEditable(row)) return;
  if (row == kSheetTitle) {
    record.Title = text;
  } else {
    RowAt(row).number(record) = ParseLenient(text);
  }
}

std::string SheetsText(const TrackStore& tracks) {
  std::string text;
  for (int track = 0; track < kTracks; ++track) {
    const TrackRecord& record = tracks.Record(track);
    if (record.IsEmpty()) continue;
    text += "Track\t" + std::to_string(track) + "\n";
    for (int row = 0; row < kSheetRows; ++row) {
      text.append(SheetLabel(row)).append("\t").append(SheetValue(row, record)).append("\n");
    }
    text.append("Reference\t").append(AtOrNone(RefName, record.ref)).append("\n");
  }
  return text;
}

}  // namespace zento
