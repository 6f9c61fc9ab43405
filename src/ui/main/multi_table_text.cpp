#include "ui/main/multi_table_text.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include "core/track_store.h"
#include "text/format.h"
#include "ui/main/track_text.h"

namespace zento {
namespace {

constexpr std::size_t kLongestRow = (1 + kMultiChannels) * (kLongestPlain + 1) + 2;

std::vector<double> CopyOf(const std::vector<double>& from, std::size_t count) {
  std::vector<double> values(
      from.begin(), from.begin() + static_cast<std::ptrdiff_t>(std::min(count, from.size())));
  values.resize(count);
  return values;
}

}  // namespace

MultiTable::MultiTable(const TrackStore& tracks, int track, std::string_view file_title,
                       MultiTableKind kind) {
  total_ = tracks.PointCount(0);
  const auto count = static_cast<std::size_t>(total_);
  columns_[0] = CopyOf(tracks.Column(kind == MultiTableKind::kCurrentTime ? 2 : 0, 0), count);
  constexpr std::size_t kUsualCell = 17;
  text.reserve(count * kUsualCell * columns_.size() + 1000);
  text.append("Filename\t").append(CellText(std::string(file_title))).append("\r\n");
  text.append("MeasTime\t").append(CellText(tracks.Record(track).MeasTime)).append("\r\n");
  for (int channel = 0; channel < kMultiChannels; ++channel) {
    columns_[static_cast<std::size_t>(channel) + 1] = CopyOf(tracks.Column(1, channel), count);
    text.append("\t").append(CellText(tracks.Record(channel).Title));
  }
  text.append("\r\n");
}

void MultiTable::WriteRows(std::int32_t begin, std::int32_t end) {
  RowBlock<kLongestRow> rows(text);
  for (std::int32_t row = begin; row < end; ++row) {
    const auto point = static_cast<std::size_t>(row);
    char* out = WritePlain(rows.Begin(), columns_[0][point]);
    for (int channel = 1; channel <= kMultiChannels; ++channel) {
      *out++ = '\t';
      out = WritePlain(out, columns_[static_cast<std::size_t>(channel)][point]);
    }
    rows.End(out);
  }
}

}  // namespace zento
