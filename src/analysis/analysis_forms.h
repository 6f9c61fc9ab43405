#pragma once

#include <filesystem>
#include <vector>

namespace zento {

class Desktop;
struct Host;
struct Workstation;

// Makes the analysis windows known to the desktop, which all references outlive. `data_folders` are
// those of the files that are installed with the program; a file in the home goes before them.
void RegisterAnalysisForms(Desktop& desktop, Workstation& workstation, Host& host,
                           const std::vector<std::filesystem::path>& data_folders = {});

}  // namespace zento
