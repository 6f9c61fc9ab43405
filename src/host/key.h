#pragma once

namespace zento {

enum class KeyCode {
  kCharacter,
  kEnter,
  kEscape,
  kDelete,
  kBackspace,
  kUp,
  kDown,
  kLeft,
  kRight,
  kTab
};

struct Key {
  KeyCode code = KeyCode::kCharacter;
  char32_t character = 0;  // kCharacter only
};

}  // namespace zento
