#include "analysis/outcome.h"

#include <string_view>

#include "text/number.h"

namespace zento {
namespace {

constexpr int kDigits = 6;
constexpr int kErrorDigits = 2;

void Append(std::string& text, std::string_view name, double value,
            const std::optional<double>& error, std::string_view unit) {
  text.append(", ").append(name).append(" ").append(PlainNumber(value, kDigits));
  if (error) text.append(" ± ").append(PlainNumber(*error, kErrorDigits));
  if (!unit.empty()) text.append(" ").append(unit);
}

}  // namespace

std::string FitLineText(const Outcome& outcome) {
  if (!outcome.fit) return {};
  const LineQuality& fit = *outcome.fit;
  std::string text = PlainNumber(fit.points) + (fit.points == 1 ? " point" : " points");
  Append(text, "R²", fit.r_squared, {}, {});
  Append(text, "slope", fit.line.slope, fit.slope_error, {});
  if (!fit.through_origin) Append(text, "intercept", fit.line.intercept, fit.intercept_error, {});
  for (const Quantity& quantity : outcome.quantities) {
    if (quantity.error) {
      Append(text, quantity.name, quantity.value, quantity.error, quantity.unit);
    }
  }
  if (!fit.slope_error) text += "; too few points for standard errors";
  return text;
}

}  // namespace zento
