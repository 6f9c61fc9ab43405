#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/controls.h"
#include "host/form.h"

namespace zento {

// The menus of the main window. An entry opens a window, or does something that the main window
// gives it; an entry whose window is not known to the desktop, or that was given nothing to do, is
// there and disabled.
class MainMenus {
 public:
  explicit MainMenus(Form& form);

  // `name` is that of an entry without a window.
  void SetAction(std::string_view name, const std::function<void()>& action);
  // An action that is not always there to be used; `caption` says on what.
  void Offer(std::string_view name, const std::string& caption, bool usable);
  // The last files, mnuRecent0 to mnuRecent9: `action` gets the entry's place, an entry without a
  // caption is not there.
  void SetRecentAction(const std::function<void(std::size_t place)>& action);
  void ShowRecent(std::size_t place, const std::string& caption, const std::string& tip);
  // Enables what can be used, once all windows are known.
  void EnableUsable();

 private:
  MenuItem& Add(std::string_view name, const char* menu, std::string caption,
                 std::string shortcut);
  MenuItem* Find(std::string_view name) const;

  Form& form_;
  std::vector<std::unique_ptr<MenuItem>> entries_;
  std::map<const MenuItem*, const char*> windows_;  // of the entries that open one
};

}  // namespace zento
