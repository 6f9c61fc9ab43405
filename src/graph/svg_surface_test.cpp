#include "graph/svg_surface.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace zento {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr Colour kRed{255, 0, 0};
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

TEST(SvgSurface, WritesACompactDocument) {
  SvgSurface surface({200, 100});
  surface.Line({0, 0}, {9, 9}, kRed);
  surface.Clear({255, 255, 240});
  const Point line[] = {{0, 0}, {10.126, -0.5}, {20, 1e-9}};
  surface.Polyline(line, kRed);
  surface.SetClip({10, 10, 50, 40});
  const Point dots[] = {{1, 2}, {3.9, 4}};
  surface.Dots(dots, {0, 0, 16});
  surface.ClearClip();
  surface.Box({1, 2, 3, 4}, kRed);
  surface.FillBox({1, 2, 3, 4}, kRed);
  surface.Circle({5, 5}, 2, kRed, &kRed);
  surface.Text({3, 30}, "I/A",
               {9, kRed, HorizontalAnchor::kCentre, VerticalAnchor::kBottom, false, false});
  EXPECT_EQ(surface.Document(),
            R"svg(<?xml version="1.0" encoding="UTF-8"?>
<svg xmlns="http://www.w3.org/2000/svg" version="1.1" width="200" height="100" viewBox="0 0 200 100">
<rect width="200" height="100" fill="#fffff0"/>
<g transform="translate(.5 .5)" fill="none" stroke-linejoin="round" font-family="sans-serif">
<path stroke="#ff0000" d="M0 0 10.13 -0.5 20 0"/>
<clipPath id="clip1"><rect x="9.5" y="9.5" width="50" height="40"/></clipPath>
<g clip-path="url(#clip1)">
<path stroke-linecap="square" stroke="#000010" d="M1 2h.01M3 4h.01"/>
</g>
<rect x="1" y="2" width="3" height="4" stroke="#ff0000"/>
<rect x="0.5" y="1.5" width="3" height="4" fill="#ff0000"/>
<circle cx="5" cy="5" r="2" stroke="#ff0000" fill="#ff0000"/>
<text x="3" y="27.12" font-size="12" text-anchor="middle" fill="#ff0000">I/A</text>
</g>
</svg>
)svg");
}

TEST(SvgSurface, TextIsEscapedAndAlwaysWellFormed) {
  SvgSurface surface({200, 100});
  surface.Text({0, 0}, "a<b>&\"電流\" \x01\xff\xEF\xBF\xBF\n", {});
  EXPECT_THAT(surface.Document(), HasSubstr(">a&lt;b&gt;&amp;\"電流\" \xEF\xBF\xBD\xEF\xBF\xBD"
                                            "\xEF\xBF\xBD </text>"));
}

TEST(SvgSurface, NoDocumentHoldsWhatIsNoNumber) {
  SvgSurface surface({kNan, -5});
  const Point line[] = {{0, 0}, {1, 1}, {kNan, 5}, {3, 3}, {1e300, 4}};
  surface.Polyline(line, kRed);
  surface.Dots(line, kRed);
  surface.Box({0, kNan, 1, 1}, kRed);
  surface.FillBox({0, 0, -3, 1}, kRed);
  surface.Circle({kNan, 0}, 3, kRed);
  surface.Circle({0, 0}, kNan, kRed);
  surface.Text({kNan, 0}, "nowhere", {});
  surface.SetClip({0, 0, kNan, 1});
  const std::string document = surface.Document();
  EXPECT_THAT(document, HasSubstr("M0 0 1 1M3 3 1000000000000 4"));
  EXPECT_THAT(document, Not(testing::AnyOf(HasSubstr("nan"), HasSubstr("inf"), HasSubstr("nowhere"),
                                           HasSubstr("width=\"-"))));
}

TEST(SvgSurface, AnOpenClipIsClosed) {
  SvgSurface surface({10, 10});
  surface.SetClip({0, 0, 5, 5});
  surface.SetClip({0, 0, 3, 3});
  surface.Dots(std::vector<Point>{{1, 1}}, kRed);
  const std::string document = surface.Document();
  EXPECT_THAT(document, testing::EndsWith("</g>\n</g>\n</svg>\n"));
  EXPECT_THAT(document, HasSubstr("<g clip-path=\"url(#clip1)\">\n</g>"));
}

TEST(TextWidth, GrowsWithTheText) {
  EXPECT_DOUBLE_EQ(EstimateTextWidth("0.0", false), 0.64 + 0.32 + 0.64);
  EXPECT_DOUBLE_EQ(EstimateTextWidth("電流", false), 2);
  EXPECT_GT(EstimateTextWidth("μA", true), EstimateTextWidth("μA", false));
  EXPECT_GT(EstimateTextWidth("\xF0\xFF\x80", false), 0);
}

}  // namespace
}  // namespace zento
