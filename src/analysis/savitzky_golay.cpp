#include "analysis/savitzky_golay.h"

#include <cmath>
#include <cstddef>
#include <string>

#include "host/path_text.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr double kSumTolerance = 1e-4;  // of the divisor, for tables of rounded decimals

std::vector<std::string_view> Cut(std::string_view text, char separator) {
  std::vector<std::string_view> pieces;
  while (true) {
    const std::size_t end = text.find(separator);
    pieces.push_back(text.substr(0, end));
    if (end == text.npos) return pieces;
    text.remove_prefix(end + 1);
  }
}

// The lines that another one follows. What stands behind the last line end is a line only when it
// is something.
std::vector<std::string_view> RowLines(std::string_view text) {
  std::vector<std::string_view> lines = Cut(text, '\n');
  if (lines.back().empty()) lines.pop_back();
  if (!lines.empty()) lines.pop_back();
  for (std::string_view& line : lines) {
    if (line.ends_with('\r')) line.remove_suffix(1);
  }
  return lines;
}

Result<SavitzkyGolayRow> ParseRow(std::string_view line, std::size_t row) {
  const std::vector<std::string_view> fields = Cut(line, ',');
  const std::size_t expected = row + 4;
  if (fields.size() != expected) {
    return Status::Failure("a window of " + PlainNumber(5 + 2 * row) + " points needs " +
                           PlainNumber(expected) + " fields, there are " +
                           PlainNumber(line.empty() ? 0 : fields.size()));
  }
  std::vector<double> numbers;
  for (const std::string_view field : fields) {
    const auto number = ParseStrict(field);
    if (!number) return Status::Failure("'" + std::string(field) + "' is not a number");
    numbers.push_back(*number);
  }
  SavitzkyGolayRow parsed{numbers[0], {numbers.begin() + 1, numbers.end()}};
  double sum = parsed.a[0];
  for (std::size_t k = 1; k < parsed.a.size(); ++k) sum += 2 * parsed.a[k];
  if (!(std::fabs(sum - parsed.divisor) <= kSumTolerance * std::fabs(parsed.divisor)) ||
      parsed.divisor == 0) {
    return Status::Failure("the coefficients add up to " + PlainNumber(sum, 6) +
                           ", not to the divisor " + PlainNumber(parsed.divisor, 6));
  }
  return parsed;
}

}  // namespace

Result<SavitzkyGolayTable> ParseSavitzkyGolay(std::string_view text) {
  SavitzkyGolayTable table;
  for (const std::string_view line : RowLines(text)) {
    if (table.size() == kMostSavitzkyGolayRows) {
      return Status::Failure("there are more than " + PlainNumber(kMostSavitzkyGolayRows) +
                             " rows");
    }
    auto row = ParseRow(line, table.size());
    if (!row.ok()) return row.status().Within("line " + PlainNumber(table.size() + 1));
    table.push_back(std::move(row.value()));
  }
  if (table.empty()) return Status::Failure("it holds no row that another line follows");
  return table;
}

Result<SavitzkyGolayTable> ReadSavitzkyGolay(Files& files,
                                             const std::vector<std::filesystem::path>& folders) {
  std::string searched;
  for (const std::filesystem::path& folder : folders) {
    const std::filesystem::path path = folder / kSavitzkyGolayFile;
    searched += (searched.empty() ? "" : ", ") + TextFromPath(folder);
    if (!files.Exists(path)) continue;
    const auto bytes = files.Read(path);
    if (!bytes.ok()) return bytes.status();
    auto table = ParseSavitzkyGolay(bytes.value());
    if (!table.ok()) return table.status().Within(TextFromPath(path));
    return table;
  }
  return Status::Failure(std::string(kSavitzkyGolayFile) +
                         " is in none of these folders: " + searched);
}

}  // namespace zento
