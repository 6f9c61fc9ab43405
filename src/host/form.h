#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/canvas.h"
#include "host/control.h"
#include "host/surface.h"

namespace zento {

class Form;
struct Host;

// How a form's controls stand in its window: a small tree that any toolkit can follow.
struct LayoutNode {
  enum class Kind {
    kRows,     // children from top to bottom
    kColumns,  // children from left to right
    kGroup,    // a frame with a caption around its children, from top to bottom
    kFields,   // children are fields; their labels and boxes stand in two aligned columns
    kField,    // caption, control and, beside it, an up-down or a second control
    kTable,    // children are kColumns whose children stand in aligned columns
    kItem,     // a control alone
    kText,     // a caption that belongs to no control
    kStretch,  // room that takes what is left
  };
  Kind kind = Kind::kStretch;
  std::string caption;
  Control* control = nullptr;
  Control* companion = nullptr;  // kField: stands to the right of the control, such as its up-down
  std::vector<LayoutNode> children;
  int stretch = 0;  // share of the extra room among siblings; 0 = none
};

namespace layout {

inline LayoutNode Rows(std::vector<LayoutNode> children, int stretch = 0) {
  return {LayoutNode::Kind::kRows, {}, nullptr, nullptr, std::move(children), stretch};
}
inline LayoutNode Columns(std::vector<LayoutNode> children, int stretch = 0) {
  return {LayoutNode::Kind::kColumns, {}, nullptr, nullptr, std::move(children), stretch};
}
inline LayoutNode Group(std::string caption, std::vector<LayoutNode> children, int stretch = 0) {
  return {
      LayoutNode::Kind::kGroup, std::move(caption), nullptr, nullptr, std::move(children), stretch};
}
inline LayoutNode Fields(std::vector<LayoutNode> fields) {
  return {LayoutNode::Kind::kFields, {}, nullptr, nullptr, std::move(fields), 0};
}
inline LayoutNode Field(std::string label, Control& control, Control* companion = nullptr) {
  return {LayoutNode::Kind::kField, std::move(label), &control, companion, {}, 0};
}
// Rows made with Columns, such as headings and, below them, one row for each electrode.
inline LayoutNode Table(std::vector<LayoutNode> rows) {
  return {LayoutNode::Kind::kTable, {}, nullptr, nullptr, std::move(rows), 0};
}
inline LayoutNode Item(Control& control, int stretch = 0) {
  return {LayoutNode::Kind::kItem, {}, &control, nullptr, {}, stretch};
}
inline LayoutNode Text(std::string caption) {
  return {LayoutNode::Kind::kText, std::move(caption), nullptr, nullptr, {}, 0};
}
inline LayoutNode Stretch() {
  return {LayoutNode::Kind::kStretch, {}, nullptr, nullptr, {}, 1};
}

// The controls of a layout as one reads it, which is also the order of the Tab key.
inline void AppendControls(const LayoutNode& node, std::vector<Control*>& controls) {
  if (node.control != nullptr) controls.push_back(node.control);
  if (node.companion != nullptr) controls.push_back(node.companion);
  for (const LayoutNode& child : node.children) AppendControls(child, controls);
}

}  // namespace layout

// What shows a form. A form that nothing shows works just the same.
class FormView {
 public:
  virtual ~FormView() = default;
  virtual void ControlChanged(Control& control) = 0;
  virtual void CanvasInvalid(Canvas& canvas) = 0;
  virtual void CanvasOverlayInvalid(Canvas& canvas) = 0;
  virtual void CanvasExtended(Canvas& canvas, Rect dirty,
                              const std::function<void(Surface&)>& paint) = 0;
  virtual void CaptionChanged(Form& form) = 0;
  virtual void FocusRequested(Control& control) = 0;
  virtual void GeometryRequested(Form& form) = 0;
};

// One window as a plain object: its controls, their layout, their handlers, its public operations.
// A form is made and destroyed by the Desktop: made when it is first needed, Load() called; after
// Unload() nothing of it runs any more and it is destroyed.
class Form {
 public:
  Form(Host& host, std::string name, std::string caption);
  virtual ~Form();
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  const std::string& name() const { return name_; }
  const std::string& caption() const { return caption_; }
  void SetCaption(std::string caption);

  // Prepares the form, opening the devices it needs. False: it cannot work (the reason has been
  // shown) and is unloaded at once, without Unload() being called.
  virtual bool Load() { return true; }
  // The form goes; its timers have been stopped.
  virtual void Unload() {}
  // The form's window became the one the person works in.
  virtual void Activate() {}
  // A person closes the window, or the program ends. A form with a run ends it safely first. The
  // form must be unloaded when this returns, or soon after.
  virtual void CloseRequested();
  virtual LayoutNode Layout() = 0;

  // Window position and inner size in device-independent pixels; 0 sizes = as the layout asks. What
  // a person does to the window is reported back by the view.
  struct Geometry {
    bool placed = false;  // left and top are meant
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
  };
  const Geometry& geometry() const { return geometry_; }
  void RequestGeometry(const Geometry& geometry);
  void ReportGeometry(const Geometry& geometry) { geometry_ = geometry; }

  // Null when the form has no such control. `index` is -1 for controls outside arrays.
  Control* Find(std::string_view name, int index = -1) const;
  // In the order in which they were made.
  const std::vector<Control*>& controls() const { return controls_; }
  void Focus(Control& control);

  FormView* view() const { return view_; }
  void SetView(FormView* view) { view_ = view; }
  Host& host() const { return host_; }

 private:
  friend class Control;
  void Register(Control& control) { controls_.push_back(&control); }
  void ControlChanged(Control& control);

  Host& host_;
  std::string name_;
  std::string caption_;
  Geometry geometry_;
  std::vector<Control*> controls_;
  FormView* view_ = nullptr;
};

}  // namespace zento
