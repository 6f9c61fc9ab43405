#include "cli/script_words.h"

#include <charconv>
#include <cmath>
#include <utility>

#include "host/controls.h"
#include "host/form.h"
#include "text/number.h"
#include "text/status.h"

namespace zento {
namespace {

constexpr std::string_view kBlanks = " \t";

constexpr std::pair<std::string_view, KeyCode> kNames[] = {
    {"Enter", KeyCode::kEnter},         {"Escape", KeyCode::kEscape}, {"Delete", KeyCode::kDelete},
    {"Backspace", KeyCode::kBackspace}, {"Up", KeyCode::kUp},         {"Down", KeyCode::kDown},
    {"Left", KeyCode::kLeft},           {"Right", KeyCode::kRight},   {"Tab", KeyCode::kTab},
};

bool Continues(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// The only character of a UTF-8 text; nothing when there are none or several.
std::optional<char32_t> OnlyCharacter(std::string_view text) {
  if (text.empty() || Continues(text[0])) return std::nullopt;
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::size_t size = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (text.size() != size) return std::nullopt;
  constexpr unsigned char kLeadBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
  char32_t character = lead & kLeadBits[size];
  for (const char byte : text.substr(1)) {
    if (!Continues(byte)) return std::nullopt;
    character = (character << 6) | (static_cast<unsigned char>(byte) & 0x3F);
  }
  return character;
}

std::string Utf8(char32_t c) {
  const auto byte = [](char32_t bits) { return static_cast<char>(bits); };
  if (c < 0x80) return {byte(c)};
  if (c < 0x800) return {byte(0xC0 | c >> 6), byte(0x80 | (c & 0x3F))};
  if (c < 0x10000) {
    return {byte(0xE0 | c >> 12), byte(0x80 | (c >> 6 & 0x3F)), byte(0x80 | (c & 0x3F))};
  }
  return {byte(0xF0 | c >> 18), byte(0x80 | (c >> 12 & 0x3F)), byte(0x80 | (c >> 6 & 0x3F)),
          byte(0x80 | (c & 0x3F))};
}

UpDown* CompanionOf(const LayoutNode& node, const Control& control) {
  if (node.control == &control) return dynamic_cast<UpDown*>(node.companion);
  for (const LayoutNode& child : node.children) {
    if (UpDown* found = CompanionOf(child, control)) return found;
  }
  return nullptr;
}

Status PressButton(const Form& form, bool Button::*role) {
  for (Control* control : form.controls()) {
    auto* button = dynamic_cast<Button*>(control);
    if (button != nullptr && button->*role && button->Usable()) return button->UserClick();
  }
  return Status::Ok();
}

Status TypeInto(TextBox& box, Key key) {
  if (box.multiline) {
    if (key.code == KeyCode::kCharacter) return box.UserInsert(Utf8(key.character));
    return box.UserErase();
  }
  std::string text = box.text();
  if (key.code == KeyCode::kCharacter) return box.UserType(text + Utf8(key.character));
  while (!text.empty() && Continues(text.back())) text.pop_back();
  if (!text.empty()) text.pop_back();
  return box.UserType(text);
}

Status PressInBox(TextBox& box, Key key) {
  switch (key.code) {
    case KeyCode::kCharacter:
      return TypeInto(box, key);
    case KeyCode::kBackspace:
      if (Status pressed = box.UserKey(key); !pressed.ok()) return pressed;
      return TypeInto(box, key);
    case KeyCode::kEnter:
      if (box.on_key) return box.UserKey(key);
      if (box.multiline) return box.UserInsert("\n");
      box.UserLeave();
      return PressButton(box.form(), &Button::is_default);
    case KeyCode::kEscape:
      if (Status pressed = box.UserKey(key); !pressed.ok()) return pressed;
      return PressButton(box.form(), &Button::is_cancel);
    case KeyCode::kUp:
    case KeyCode::kDown:
      if (UpDown* companion = CompanionOf(box.form().Layout(), box)) {
        if (!companion->Usable()) return Status::Ok();
        return companion->UserStep(key.code == KeyCode::kUp ? 1 : -1);
      }
      return box.UserKey(key);
    default:
      return box.UserKey(key);
  }
}

}  // namespace

std::string_view TakeWord(std::string_view& rest) {
  const std::size_t begin = std::min(rest.find_first_not_of(kBlanks), rest.size());
  const std::size_t end = std::min(rest.find_first_of(kBlanks, begin), rest.size());
  const std::string_view word = rest.substr(begin, end - begin);
  rest.remove_prefix(end);
  return word;
}

std::string_view RestAsText(std::string_view rest) {
  if (!rest.empty()) rest.remove_prefix(1);
  return rest;
}

std::optional<int> ParseIndex(std::string_view text) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::optional<ControlAddress> ParseControlAddress(std::string_view text) {
  const std::size_t dot = text.find('.');
  if (dot == std::string_view::npos || dot == 0 || dot + 1 == text.size()) return std::nullopt;
  ControlAddress address{std::string(text.substr(0, dot)), {}, -1};
  std::string_view control = text.substr(dot + 1);
  if (control.back() == ')') {
    const std::size_t open = control.find('(');
    if (open == std::string_view::npos) return std::nullopt;
    const auto index = ParseIndex(control.substr(open + 1, control.size() - open - 2));
    if (!index || *index < 0) return std::nullopt;
    address.index = *index;
    control = control.substr(0, open);
  }
  address.control = control;
  return address;
}

std::optional<std::int64_t> ParseDuration(std::string_view text) {
  constexpr std::pair<std::string_view, double> kUnits[] = {
      {"ms", 1e3}, {"s", 1e6}, {"min", 60e6}, {"h", 3600e6}};
  double unit = 1e6;
  for (const auto& [suffix, micros] : kUnits) {
    if (!text.ends_with(suffix)) continue;
    text.remove_suffix(suffix.size());
    unit = micros;
    break;
  }
  const auto number = ParseStrict(text);
  constexpr double kLongest = 1000.0 * 366 * 86400e6;
  if (!number || *number < 0 || *number * unit > kLongest) return std::nullopt;
  return std::llround(*number * unit);
}

std::optional<Key> ParseKey(std::string_view name) {
  for (const auto& [known, code] : kNames) {
    if (name == known) return Key{code, 0};
  }
  if (const auto character = OnlyCharacter(name)) return Key{KeyCode::kCharacter, *character};
  return std::nullopt;
}

Status PressKey(Control& control, Key key) {
  if (auto* box = dynamic_cast<TextBox*>(&control)) return PressInBox(*box, key);
  if (dynamic_cast<ListBox*>(&control) != nullptr && key.code != KeyCode::kEscape) {
    return control.UserKey(key);
  }
  if (key.code == KeyCode::kEnter && dynamic_cast<Button*>(&control) != nullptr) {
    return control.UserClick();
  }
  if (key.code == KeyCode::kEnter) return PressButton(control.form(), &Button::is_default);
  if (key.code == KeyCode::kEscape) return PressButton(control.form(), &Button::is_cancel);
  return control.UserKey(key);
}

}  // namespace zento
