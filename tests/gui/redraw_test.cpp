// A curve of fewer vertices is the same picture, on a real screen's pixels at any scale.

#include <gtest/gtest.h>

#include <QImage>
#include <cmath>
#include <random>
#include <vector>

#include "graph/decimate.h"
#include "qt/raster_surface.h"

namespace zento {
namespace {

// A noisy voltammogram of ten cycles, in whole surface units.
std::vector<Point> Voltammogram(double noise_height) {
  std::mt19937 random(11);
  std::normal_distribution<double> noise(0, noise_height);
  std::vector<Point> points;
  for (int i = 0; i <= 40000; ++i) {
    const double phase = i / 4000.0;
    const double up = phase - std::floor(phase);
    const double across = up < 0.5 ? 2 * up : 2 - 2 * up;
    const double wave = (up < 0.5 ? 1 : -1) * std::exp(-std::pow((across - 0.5) / 0.1, 2));
    points.push_back({std::floor(50 + 900 * across), std::floor(350 - 300 * wave + noise(random))});
  }
  return points;
}

QImage Drawn(const std::vector<Point>& points, double scale) {
  QImage image(static_cast<int>(1000 * scale), static_cast<int>(700 * scale), QImage::Format_RGB32);
  image.setDevicePixelRatio(scale);
  RasterSurface surface(image);
  surface.Clear({255, 255, 255});
  surface.Polyline(points, {255, 0, 0});
  return image;
}

TEST(Redraw, DecimationChangesNoPixel) {
  for (const double noise_height : {0.0, 0.7, 3.0, 60.0}) {
    const std::vector<Point> points = Voltammogram(noise_height);
    const std::vector<Point> kept = DecimatePolyline(points);
    EXPECT_LT(kept.size(), points.size());
    for (const double scale : {1.0, 1.5, 2.0}) {
      EXPECT_EQ(Drawn(kept, scale), Drawn(points, scale)) << noise_height << " at " << scale;
    }
  }
}

}  // namespace
}  // namespace zento
