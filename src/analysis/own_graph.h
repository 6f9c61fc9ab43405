#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "graph/graph_form.h"
#include "host/host.h"

namespace zento {

// A graph window that belongs to one analysis window: made with it, gone with it. A person may
// close and reopen it in between; its picture is then empty until the next one is drawn.
class OwnGraph {
 public:
  OwnGraph(Host& host, std::string name) : host_(host), name_(std::move(name)) {
    host_.desktop.Register(
        name_, [&host = host_, name = name_] { return std::make_unique<Graph>(host, name); });
    host_.desktop.Load(name_);
  }
  ~OwnGraph() { host_.desktop.Unload(name_); }
  OwnGraph(const OwnGraph&) = delete;
  OwnGraph& operator=(const OwnGraph&) = delete;

  // The graph, on the screen: where it was, or at the size that analysis plots have.
  Graph& Show() {
    auto* graph = host_.desktop.LoadAs<Graph>(name_);
    if (!host_.desktop.Shown(name_)) graph->SetSize(kLeft, kTop, kWidth, kHeight);
    host_.desktop.Show(name_);
    return *graph;
  }
  const std::string& name() const { return name_; }

 private:
  static constexpr std::int16_t kLeft = 67, kTop = 67, kWidth = 480, kHeight = 480;

  Host& host_;
  std::string name_;
};

}  // namespace zento
