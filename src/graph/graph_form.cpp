#include "graph/graph_form.h"

#include <utility>

#include "host/desktop.h"
#include "host/host.h"
#include "host/services.h"
#include "text/number.h"

namespace zento {

Graph::Graph(Host& host, std::string name) : Form(host, std::move(name), "Graph") {
  CptoClipBtn.on_click = [this] { CopyPicture(); };
}

void Graph::CopyPicture() {
  // A copy: a clipboard may ask for the picture later, when the window shows another or has gone.
  host().clipboard.SetPicture(Picture1.size(), [list = Picture1.list()](Surface& surface) {
    list.Paint(surface, surface.Extent());
  });
}

void Graph::SetPosition(std::int16_t left, std::int16_t top) {
  Geometry wanted = geometry();
  wanted.placed = true;
  wanted.left = left;
  wanted.top = top;
  RequestGeometry(wanted);
}

void Graph::SetSize(std::int16_t left, std::int16_t top, std::int16_t width, std::int16_t height) {
  Geometry wanted{true, left, top, geometry().width, geometry().height};
  if (width > 0 && height > 0) {
    wanted.width = width;
    wanted.height = height + kButtonStrip;
    // At once, so that a View that follows holds for this size.
    Picture1.Resize({static_cast<double>(width), static_cast<double>(height)});
  }
  RequestGeometry(wanted);
  SetAutoRedraw(true);
}

Size Graph::WindowSize() const {
  if (geometry().width > 0 && geometry().height > 0) {
    return {static_cast<double>(geometry().width), static_cast<double>(geometry().height)};
  }
  return {Picture1.size().width, Picture1.size().height + kButtonStrip};
}

std::int32_t Graph::getPictureX() const {
  return ToLong(WindowSize().width);
}

void Graph::getPosition(std::int16_t& left, std::int16_t& top) const {
  left = ToInteger(geometry().left);
  top = ToInteger(geometry().top);
}

void Graph::getSize(std::int16_t& width, std::int16_t& height) const {
  width = ToInteger(WindowSize().width);
  height = ToInteger(WindowSize().height - kButtonStrip);
}

void Graph::CloseRequested() {
  host().desktop.Hide(name());
}

LayoutNode Graph::Layout() {
  return layout::Rows({layout::Item(Picture1, 1), layout::Item(CptoClipBtn)}, 1);
}

}  // namespace zento
