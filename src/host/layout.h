#pragma once

#include <string>
#include <utility>
#include <vector>

#include "host/control.h"

namespace zento {

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
}  // namespace zento
