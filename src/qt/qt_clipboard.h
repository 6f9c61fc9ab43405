#pragma once

#include "host/services.h"

namespace zento {

// The desktop's clipboard. On X11 its content is handed to the desktop's clipboard manager when the
// program ends; without a manager it ends with the program.
class QtClipboard : public Clipboard {
 public:
  void SetText(const std::string& text) override;
  std::string Text() const override;
  void SetPicture(Size size, const std::function<void(Surface&)>& paint) override;
};

}  // namespace zento
