#pragma once

#include <functional>
#include <optional>

class QApplication;

namespace zento {

// The program's look: one restrained style everywhere, a readable font with a fallback that has
// Japanese, the program's icon.
void ApplyAppearance(QApplication& application);

// Asks, before anything is opened, what to work with: true for the simulated bench, false for the
// instruments of the laboratory, nothing when the person leaves. There is no default and nothing is
// remembered: made-up data are never a matter of habit. Gives up when `interrupted` becomes true.
std::optional<bool> AskForBench(const std::function<bool()>& interrupted);

}  // namespace zento
