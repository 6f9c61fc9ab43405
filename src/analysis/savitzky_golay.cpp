#include "analysis/savitzky_golay.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>

#include "host/path_text.h"
#include "host/services.h"
#include "text/codepage.h"
#include "text/lines.h"
#include "text/number.h"
#include "text/status.h"

namespace zento {
namespace {

constexpr double kSumTolerance = 1e-4;  // of the divisor, for tables of rounded decimals

// The pieces between the commas. Spreadsheets fill short rows up with empty fields: those at the
// end do not count.
std::vector<std::string_view> Fields(std::string_view line) {
  line = line.substr(0, line.find_last_not_of(", \t") + 1);
  std::vector<std::string_view> fields;
  while (!line.empty()) {
    const std::size_t comma = std::min(line.find(','), line.size());
    fields.push_back(line.substr(0, comma));
    line.remove_prefix(std::min(comma + 1, line.size()));
  }
  return fields;
}

// The lines that another one follows.
std::vector<std::string_view> RowLines(std::string_view text) {
  std::vector<std::string_view> lines;
  LineReader reader(text);
  for (std::string_view line; reader.Next(line);) lines.push_back(line);
  if (!lines.empty()) lines.pop_back();
  return lines;
}

Result<SavitzkyGolayRow> ParseRow(std::string_view line, std::size_t row) {
  const std::vector<std::string_view> fields = Fields(line);
  const std::size_t expected = row + 4;
  if (fields.size() != expected) {
    return Status::Failure("a window of " + PlainNumber(5 + 2 * row) + " points needs " +
                           PlainNumber(expected) + " fields, there are " +
                           PlainNumber(fields.size()));
  }
  std::vector<double> numbers;
  for (const std::string_view field : fields) {
    const auto number = ParseStrict(field);
    if (!number)
      return Status::Failure("field " + PlainNumber(numbers.size() + 1) + " is not a number");
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

Result<SavitzkyGolayTable> ParseSavitzkyGolay(std::string_view bytes) {
  const std::string text = DecodeFile(bytes);
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
  std::string why = kSavitzkyGolayFile;
  why.append(" is in none of these folders: ").append(searched);
  return Status::Failure(why);
}

}  // namespace zento
