#include "graph/ticks.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "text/format.h"
#include "text/number.h"

namespace zento {
namespace {

// How far a tick may lie beyond the end by rounding alone, in steps.
constexpr double kSlack = 1e-9;

bool Says(const std::string& label, double value, double step) {
  return std::abs(ParseLenient(label) - value) <= 0.02 * std::abs(step);
}

// Floor of the decimal logarithm, 1000 and 0.001 being safely 3 and -3.
int Exponent(double magnitude) {
  return static_cast<int>(std::floor(std::log10(magnitude) + 1e-9));
}

// The pattern follows the whole axis, so that it does not change under the moving pointer.
std::string Coordinate(double at, const WorldAxis& axis, double from, double to) {
  double value = axis.World(at);
  const double unit = std::abs(1 / axis.scale());
  if (!std::isfinite(value) || !(unit > 0) || !std::isfinite(unit)) return "-";
  if (std::abs(value) < unit / 2) value = 0;
  return Format(value, TickPattern(unit, std::max(std::abs(from), std::abs(to))));
}

}  // namespace

double Ticks::Value(int i) const {
  const double value = (index + i) * step;
  return std::abs(value) < 1e-15 ? 0 : value;
}

double RoundUp125(double ratio) {
  if (!(ratio > 1)) return 1;
  const double power = std::pow(10, std::floor(std::log10(ratio)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= ratio) return factor * power;
  }
  return 10 * power;
}

Ticks MakeTicks(double from, double to, double step, int most) {
  const double span = std::abs(to - from);
  if (!std::isfinite(span) || !std::isfinite(step) || step == 0 || most < 1) return {};
  const double wanted = span / std::abs(step);
  if (wanted > most) step *= RoundUp125(wanted / most);
  Ticks ticks;
  ticks.step = step;
  ticks.index = std::floor(from / step);
  if (!std::isfinite(step) || !std::isfinite(ticks.index)) return {};
  if (step > 0 && ticks.index * step > to) {
    ticks.step = -step;
    ticks.index = -ticks.index;
  }
  const double behind = (to - ticks.index * ticks.step) / ticks.step + kSlack;
  if (behind < 0) return {};
  // One more than fits, since the first may lie before `from`.
  ticks.count = static_cast<int>(std::min(std::floor(behind), most + 1.0)) + 1;
  const bool finite = std::isfinite(ticks.Value(0)) && std::isfinite(ticks.Value(ticks.count - 1));
  return finite ? ticks : Ticks{};
}

std::string TickPattern(double step, double largest) {
  constexpr int kMostDigits = 15;
  step = std::abs(step);
  if (!(step > 0) || !std::isfinite(step) || !std::isfinite(largest)) return "0.0###e+0";
  const int fine = Exponent(step);
  const int coarse = largest > 0 ? Exponent(largest) : fine;
  if (coarse < 6 && coarse >= -3 && fine >= -12) {
    if (fine >= 0) return "0";
    return "0." + std::string(static_cast<std::size_t>(-fine), '0');
  }
  const int digits = std::clamp(coarse - fine, 1, kMostDigits);
  return "0." + std::string(static_cast<std::size_t>(digits), '0') + "e+0";
}

std::vector<std::string> TickLabels(const Ticks& ticks, std::string_view pattern) {
  std::vector<std::string> labels;
  int said = 0;
  double largest = 0;
  for (int i = 0; i < ticks.count; ++i) {
    const double value = ticks.Value(i);
    std::string label = Format(value, pattern);
    if (Says(label, value, ticks.step)) {
      ++said;
    } else {
      label.clear();
    }
    labels.push_back(std::move(label));
    largest = std::max(largest, std::abs(value));
  }
  if (said >= std::min(2, ticks.count)) return labels;
  const std::string fitting = TickPattern(ticks.step, largest);
  for (int i = 0; i < ticks.count; ++i) {
    labels[static_cast<std::size_t>(i)] = Format(ticks.Value(i), fitting);
  }
  return labels;
}

std::string PointReadout(Point at, const WorldWindow& window, Size surface) {
  const WorldMap map(window, surface);
  return Coordinate(at.x, map.x, window.x1, window.x2) + ", " +
         Coordinate(at.y, map.y, window.y1, window.y2);
}

}  // namespace zento
