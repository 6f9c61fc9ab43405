#include "graph/decimate.h"

#include <algorithm>
#include <cmath>

namespace zento {

void PixelPolyline::FlushExtremes() {
  // First, one extreme, the other, last. Where the column is left at an extreme, that one comes
  // second and is the last vertex too; where it was entered at the other, that one stands already.
  const double second = last_ == low_ ? low_ : high_;
  const double before = last_ == low_ ? high_ : low_;
  if (first_ != before) kept_.push_back({column_, before});
  kept_.push_back({column_, second});
  if (last_ != second) kept_.push_back({column_, last_});
}

std::span<const Point> PixelPolyline::Finish() {
  FlushColumn();
  column_ = kNone;
  finished_ = true;
  return kept_;
}

std::vector<Point> DecimatePolyline(std::span<const Point> points) {
  PixelPolyline line;
  for (const Point& at : points) line.Add(at);
  const std::span<const Point> kept = line.Finish();
  return {kept.begin(), kept.end()};
}

PixelDots::PixelDots(Surface& surface) : surface_(surface) {
  constexpr double kMost = 20000;  // far beyond any page
  const Size extent = surface.Extent();
  width_ = static_cast<std::size_t>(std::clamp(std::ceil(extent.width), 0.0, kMost));
  height_ = static_cast<std::size_t>(std::clamp(std::ceil(extent.height), 0.0, kMost));
  owner_.resize(width_ * height_);
}

std::uint8_t PixelDots::IndexOf(Colour colour) {
  constexpr std::size_t kMostColours = 255;
  if (palette_.empty() || palette_.back() != colour) {
    const auto found = std::find(palette_.begin(), palette_.end(), colour);
    if (found != palette_.end()) return static_cast<std::uint8_t>(found - palette_.begin() + 1);
    if (palette_.size() == kMostColours) Draw();
    palette_.push_back(colour);
  }
  return static_cast<std::uint8_t>(palette_.size());
}

void PixelDots::Add(Point at, Colour colour) {
  if (!(at.x >= 0 && at.y >= 0)) return;
  if (!(at.x < static_cast<double>(width_) && at.y < static_cast<double>(height_))) return;
  const std::uint8_t index = IndexOf(colour);
  const std::size_t pixel =
      static_cast<std::size_t>(at.y) * width_ + static_cast<std::size_t>(at.x);
  if (owner_[pixel] == 0) occupied_.push_back(static_cast<std::uint32_t>(pixel));
  owner_[pixel] = index;
}

void PixelDots::DrawColour(std::uint8_t index) {
  points_.clear();
  for (const std::uint32_t pixel : occupied_) {
    if (owner_[pixel] != index) continue;
    points_.push_back({static_cast<double>(pixel % width_), static_cast<double>(pixel / width_)});
  }
  if (!points_.empty()) surface_.Dots(points_, palette_[index - 1U]);
}

void PixelDots::Draw() {
  for (std::size_t i = 1; i <= palette_.size(); ++i) DrawColour(static_cast<std::uint8_t>(i));
  for (const std::uint32_t pixel : occupied_) owner_[pixel] = 0;
  occupied_.clear();
  palette_.clear();
}

}  // namespace zento
