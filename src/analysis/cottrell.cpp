#include "analysis/cottrell.h"

#include <cmath>

namespace zento {
namespace {

constexpr double kPi = 3.1415926535898;
constexpr double kFaraday = 96485;  // C/mol

}  // namespace

CottrellPoints MakeCottrellPoints(std::span<const double> time, std::span<const double> current) {
  CottrellPoints points;
  for (std::size_t i = 0; i < time.size(); ++i) {
    if (!(time[i] > 0) || current[i] == 0) continue;
    points.x.push_back(1 / std::sqrt(time[i]));
    points.y.push_back(current[i]);
  }
  return points;
}

std::optional<LineQuality> FitCottrell(const CottrellPoints& points, CottrellLine line) {
  const std::size_t count = points.x.size();
  if (line == CottrellLine::kThroughOrigin) {
    const auto slope = FitThroughOrigin(points.x, points.y, count);
    if (!slope) return std::nullopt;
    return QualityThroughOrigin(points.x, points.y, *slope);
  }
  const auto fit = FitLine(points.x, points.y, count);
  if (!fit) return std::nullopt;
  return QualityOf(points.x, points.y, *fit);
}

double ApparentDiffusion(double slope, double electrons, double area, double concentration) {
  const double root = std::sqrt(kPi) * slope / (electrons * kFaraday * area * concentration);
  return root * root;
}

}  // namespace zento
