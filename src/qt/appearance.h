#pragma once

class QApplication;
class QIcon;

namespace zento {

// The program's look: one restrained style everywhere, a readable font with a fallback that has
// Japanese, the program's icon.
void ApplyAppearance(QApplication& application);

// A voltammogram on a tile, drawn at the sizes that desktops ask for.
QIcon ProgramIcon();

}  // namespace zento
