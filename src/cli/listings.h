#pragma once

#include <string>

#include "core/settings.h"
#include "sim/parameters.h"
#include "text/status_fwd.h"

// What the command-line program prints without opening a window. All texts end with a line end.

namespace zento {

// Every setting: key, type, value, meaning, separated by tabs.
std::string SettingsListing(const Settings& settings);

// Every parameter of the simulated bench: key, value, unit, meaning, in aligned columns.
std::string BenchListing(const sim::Parameters& parameters);

}  // namespace zento
