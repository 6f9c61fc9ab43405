#include "host/desktop.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/controls.h"
#include "host/virtual/virtual_host.h"

namespace zento {
namespace {

// A form that tells what happens to it.
class Probe : public Form {
 public:
  Probe(Host& host, std::string name, std::vector<std::string>& log)
      : Form(host, std::move(name), "Probe"), log_(log) {}
  ~Probe() override { log_.push_back("~" + name()); }
  bool Load() override {
    log_.push_back("load " + name());
    if (on_load) on_load();
    return willing;
  }
  void Unload() override {
    log_.push_back("unload " + name());
    if (on_unload) on_unload();
  }
  void Activate() override { log_.push_back("activate " + name()); }
  LayoutNode Layout() override { return layout::Item(cmdGo); }

  Button cmdGo{*this, "cmdGo", "Go"};
  ControlArray<TextBox, 2> txtVolt{*this, "txtVolt", {"1.5", "2.5"}};
  Timer ProbeTimer{*this, "ProbeTimer"};
  bool willing = true;
  std::function<void()> on_load;
  std::function<void()> on_unload;

 private:
  std::vector<std::string>& log_;
};

class DesktopTest : public testing::Test {
 protected:
  void Offer(const std::string& name, std::function<void(Probe&)> prepare = {}) {
    machine_.desktop.Register(name, [this, name, prepare] {
      auto form = std::make_unique<Probe>(machine_.host, name, log_);
      if (prepare) prepare(*form);
      return form;
    });
  }

  std::vector<std::string> log_;
  VirtualHost machine_;
};

using Log = std::vector<std::string>;

TEST_F(DesktopTest, LoadsOnceShowsAndUnloads) {
  Offer("frmA");
  Form* form = machine_.desktop.Show("frmA");
  ASSERT_NE(form, nullptr);
  EXPECT_EQ(machine_.desktop.Show("frmA"), form);
  EXPECT_TRUE(machine_.desktop.Shown("frmA"));
  machine_.desktop.RequestClose("frmA");
  EXPECT_EQ(machine_.desktop.Find("frmA"), nullptr);
  EXPECT_EQ(log_, (Log{"load frmA", "activate frmA", "activate frmA", "unload frmA"}));
  machine_.Settle();
  EXPECT_EQ(log_.back(), "~frmA");
  machine_.desktop.RequestClose("frmA");
  EXPECT_EQ(machine_.desktop.Show("frmUnknown"), nullptr);
}

TEST_F(DesktopTest, AFormThatRefusesIsGoneWithoutAnUnload) {
  Offer("frmA", [](Probe& form) {
    form.willing = false;
    form.ProbeTimer.SetEnabled(true);
  });
  EXPECT_EQ(machine_.desktop.Show("frmA"), nullptr);
  EXPECT_EQ(machine_.desktop.Find("frmA"), nullptr);
  machine_.Settle();
  EXPECT_EQ(log_, (Log{"load frmA", "~frmA"}));
  EXPECT_FALSE(machine_.timers.NextDue());
}

TEST_F(DesktopTest, AFormMayUnloadItselfWhileItLoads) {
  Offer("frmA",
        [this](Probe& form) { form.on_load = [this] { machine_.desktop.Unload("frmA"); }; });
  EXPECT_EQ(machine_.desktop.Show("frmA"), nullptr);
  EXPECT_FALSE(machine_.desktop.Shown("frmA"));
  machine_.Settle();
  EXPECT_EQ(log_, (Log{"load frmA", "unload frmA", "~frmA"}));
}

TEST_F(DesktopTest, AFormMayLoadOthersWhileItLoads) {
  Offer("frmA", [this](Probe& form) {
    form.on_load = [this] {
      for (const char* name : {"frmB", "frmC", "frmD"}) machine_.desktop.Show(name);
    };
  });
  for (const char* name : {"frmB", "frmC", "frmD"}) Offer(name);
  ASSERT_NE(machine_.desktop.Show("frmA"), nullptr);
  EXPECT_EQ(machine_.desktop.Loaded().size(), 4U);
  EXPECT_TRUE(machine_.desktop.Shown("frmA"));
}

TEST_F(DesktopTest, AFormOutlivesTheHandlerThatUnloadsIt) {
  Offer("frmA", [this](Probe& form) {
    form.cmdGo.on_click = [this, &form] {
      machine_.desktop.Unload("frmA");
      form.cmdGo.SetCaption("still there");
    };
  });
  Form* form = machine_.desktop.Show("frmA");
  EXPECT_TRUE(form->Find("cmdGo")->UserClick().ok());
  EXPECT_EQ(log_.back(), "unload frmA");
  machine_.Settle();
  EXPECT_EQ(log_.back(), "~frmA");
}

TEST_F(DesktopTest, NothingTicksAfterAFormUnloadedItselfInItsTick) {
  int ticks = 0;
  Offer("frmA", [&](Probe& form) {
    form.ProbeTimer.SetInterval(10);
    form.ProbeTimer.SetEnabled(true);
    form.on_unload = [&] { form.ProbeTimer.SetEnabled(true); };
    form.ProbeTimer.on_tick = [&] {
      ++ticks;
      machine_.desktop.Unload("frmA");
      form.ProbeTimer.SetEnabled(true);  // as a handler does on its way out
    };
  });
  machine_.desktop.Show("frmA");
  machine_.RunFor(1'000'000);
  EXPECT_EQ(ticks, 1);
  EXPECT_EQ(log_.back(), "~frmA");
  EXPECT_FALSE(machine_.timers.NextDue());
}

TEST_F(DesktopTest, AMainFormClosesTheOthersInItsUnload) {
  Offer("frmMain", [this](Probe& form) {
    form.on_unload = [this] {
      for (Form* other : machine_.desktop.Loaded()) machine_.desktop.RequestClose(other->name());
    };
  });
  Offer("frmB");
  machine_.desktop.Show("frmMain");
  machine_.desktop.Show("frmB");
  machine_.desktop.RequestClose("frmMain");
  EXPECT_TRUE(machine_.desktop.Loaded().empty());
  machine_.Settle();
  EXPECT_EQ(log_.size(), 8U);
}

TEST_F(DesktopTest, AViewHearsOfEveryFormThatGoes) {
  struct View : DesktopView {
    explicit View(Log& into) : log(into) {}
    void FormShown(Form& form) override { log.push_back("shown " + form.name()); }
    void FormUnloaded(Form& form) override { log.push_back("gone " + form.name()); }
    Log& log;
  } view(log_);
  Offer("frmA");
  machine_.desktop.SetView(&view);
  machine_.desktop.Show("frmA");
  machine_.desktop.Unload("frmA");
  EXPECT_EQ(log_, (Log{"load frmA", "shown frmA", "unload frmA", "gone frmA"}));
  machine_.desktop.SetView(nullptr);
}

TEST_F(DesktopTest, FindsControlsByNameAndIndex) {
  Offer("frmA");
  Form* form = machine_.desktop.Load("frmA");
  ASSERT_NE(form->Find("txtVolt", 1), nullptr);
  EXPECT_EQ(form->Find("txtVolt", 1)->Value(), "2.5");
  EXPECT_EQ(form->Find("txtVolt", 1)->Address(), "txtVolt(1)");
  EXPECT_EQ(form->Find("txtVolt"), nullptr);
  EXPECT_EQ(form->Find("txtVolt", 2), nullptr);
}

}  // namespace
}  // namespace zento
