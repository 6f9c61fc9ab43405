#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/form.h"

namespace zento {

class TimerQueue;

// What shows forms as windows.
class DesktopView {
 public:
  virtual ~DesktopView() = default;
  // Shows the form's window, or brings it to the front.
  virtual void FormShown(Form& form) = 0;
  // The form is about to go; its window must not touch it afterwards.
  virtual void FormUnloaded(Form& form) = 0;
  // The form's window leaves the screen; the form stays loaded and may be shown again.
  virtual void FormHidden(Form& /*form*/) {}
};

// The set of the program's windows, by name. Rooms open each other's windows through it without
// knowing their types.
class Desktop {
 public:
  explicit Desktop(TimerQueue& timers) : timers_(timers) {}
  ~Desktop();
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  using Factory = std::function<std::unique_ptr<Form>()>;
  void Register(std::string name, Factory factory);
  // Whether a form of that name can be opened.
  bool Knows(std::string_view name) const;

  // Null when the form is not loaded.
  Form* Find(std::string_view name) const;
  // The loaded form, loaded now if need be; null when it is unknown or refused to load.
  Form* Load(std::string_view name);
  // Load, and show it.
  Form* Show(std::string_view name);
  bool Shown(std::string_view name) const;
  // Takes a form's window off the screen without unloading it, for forms that live on.
  void Hide(std::string_view name);

  // As Find and Load, for callers who know the type.
  template <typename F>
  F* FindAs(std::string_view name) const {
    return dynamic_cast<F*>(Find(name));
  }
  template <typename F>
  F* LoadAs(std::string_view name) {
    return dynamic_cast<F*>(Load(name));
  }

  // As a person closing the window; a form that is not loaded needs nothing.
  void RequestClose(std::string_view name);
  // Stops the form's timers, calls its Unload, takes it off the screen; the object itself is
  // destroyed once the handlers now running have returned.
  void Unload(std::string_view name);

  // Unloads every form, the last one loaded first, and destroys them at once with all that waited
  // for it; forgets the factories. For the program's very end, not to be called from a handler.
  void Clear();

  // In the order in which they were loaded.
  std::vector<Form*> Loaded() const;

  // A line every window shows all the time, such as that the bench is simulated; empty = none.
  void SetBanner(std::string banner) { banner_ = std::move(banner); }
  const std::string& banner() const { return banner_; }

  void SetView(DesktopView* view) { view_ = view; }

  // Called after the last step of ending the program: the main window has been unloaded.
  std::function<void()> on_quit;

 private:
  struct LoadedForm {
    std::unique_ptr<Form> form;
    bool shown = false;
  };
  std::vector<LoadedForm>::iterator Locate(const Form& form);
  // Takes a form off the list; Retire takes it off the screen and destroys it later.
  std::unique_ptr<Form> Remove(std::vector<LoadedForm>::iterator loaded);
  void Retire(std::unique_ptr<Form> form);

  TimerQueue& timers_;
  std::map<std::string, Factory, std::less<>> factories_;
  std::vector<LoadedForm> loaded_;
  std::vector<std::unique_ptr<Form>> leaving_;
  std::string banner_;
  DesktopView* view_ = nullptr;
  // Cleared when the desktop goes, so that a posted sweep does not touch it.
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace zento
