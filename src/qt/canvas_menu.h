#pragma once

class QPoint;

namespace zento {

class CanvasWidget;

// Opens the context menu of a shown canvas: copy the picture, save it as PNG, SVG or PDF, print it.
// Returns at once. The canvas may be unloaded while the menu or one of its dialogs is open.
void ShowCanvasMenu(CanvasWidget& widget, const QPoint& at);

}  // namespace zento
