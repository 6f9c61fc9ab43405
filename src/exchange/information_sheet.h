#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/track_store.h"

namespace zento {

// The rows of the main window's information sheet.
enum SheetRow {
  kSheetMode,
  kSheetTitle,
  kSheetTime,
  kSheetScanrate,
  kSheetV1st,
  kSheetV2nd,
  kSheetV3rd,
  kSheetRPM,
  kSheetPoints,
  kSheetConc,
  kSheetDiskYScale,
  kSheetRingYScale,
  kSheetPH,
  kSheetRows,
};

std::string_view SheetLabel(int row);
// Numbers in general form.
std::string SheetValue(int row, const TrackRecord& record);
bool SheetRowEditable(int row);
// Stores the text (leniently read as a number, except for the title) into the row's field. Rows
// that are not editable stay as they are.
void SetSheetValue(int row, TrackRecord& record, std::string_view text);

// The sheet of every track that is not empty: a label, a tab and a value a line, ended by LF.
std::string SheetsText(const TrackStore& tracks);

}  // namespace zento
