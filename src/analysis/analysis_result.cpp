#include "analysis/analysis_result.h"

#include <string_view>

#include "text/number.h"

namespace zento {
namespace {

constexpr int kDigits = 6;
constexpr int kErrorDigits = 2;

std::string Words(std::string_view name, double value, const std::optional<double>& error,
                  std::string_view unit) {
  std::string text(name);
  text.append(" ").append(PlainNumber(value, kDigits));
  if (error) text.append(" ± ").append(PlainNumber(*error, kErrorDigits));
  if (!unit.empty()) text.append(" ").append(unit);
  return text;
}

}  // namespace

std::string FitLineText(const AnalysisResult& result) {
  if (!result.fit) return {};
  const LineQuality& fit = *result.fit;
  std::string text = PlainNumber(fit.points) + (fit.points == 1 ? " point, " : " points, ") +
                     Words("R²", fit.r_squared, {}, {});
  if (!fit.slope_error) text += ", too few points for standard errors";
  text += "\n" + Words("slope", fit.line.slope, fit.slope_error, {});
  if (!fit.through_origin) {
    text += ", " + Words("intercept", fit.line.intercept, fit.intercept_error, {});
  }
  std::string separator = "\n";
  for (const Quantity& quantity : result.quantities) {
    if (!quantity.error) continue;
    text += separator + Words(quantity.name, quantity.value, quantity.error, quantity.unit);
    separator = ", ";
  }
  return text;
}

std::string ReportLine(std::initializer_list<std::string_view> fields) {
  std::string line;
  for (const std::string_view& field : fields) {
    if (&field != fields.begin()) line += "\t";
    line += field;
  }
  return line + "\r\n";
}

}  // namespace zento
