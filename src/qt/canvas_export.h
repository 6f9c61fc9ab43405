#pragma once

#include <QByteArray>

#include "host/surface.h"

class QPrinter;

namespace zento {

class Canvas;

// A canvas's picture as the bytes of a file, `size` device-independent pixels (1/96 inch) large.
// SVG and PDF are vector pictures with text as text.
QByteArray CanvasAsPng(Canvas& canvas, Size size, double pixel_ratio);
QByteArray CanvasAsSvg(Canvas& canvas, Size size);
QByteArray CanvasAsPdf(Canvas& canvas, Size size);

// Prints the picture on one page, as wide as the page allows.
void PrintCanvas(Canvas& canvas, Size size, QPrinter& printer);

}  // namespace zento
