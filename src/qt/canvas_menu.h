#pragma once

#include <QByteArray>

#include "host/surface.h"

class QPoint;
class QPrinter;

namespace zento {

class Canvas;
class CanvasWidget;

// Opens the context menu of a shown canvas: copy the picture, save it as PNG, SVG or PDF, print it.
// Returns at once. The canvas may be unloaded while the menu or one of its dialogs is open.
void ShowCanvasMenu(CanvasWidget& widget, const QPoint& at);

// A canvas's picture as the bytes of a file, `size` device-independent pixels (1/96 inch) large; as
// SVG it is CanvasAsSvg's. PDF is a vector picture with text as text.
QByteArray CanvasAsPng(Canvas& canvas, Size size, double pixel_ratio);
QByteArray CanvasAsPdf(Canvas& canvas, Size size);

// Prints the picture on one page, as wide as the page allows.
void PrintCanvas(Canvas& canvas, Size size, QPrinter& printer);

}  // namespace zento
