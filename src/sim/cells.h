#pragma once

#include <memory>
#include <vector>

#include "sim/cell.h"
#include "sim/parameters.h"

namespace zento::sim {

// The cells of the bench at rest at `volts`: one, or the ten of an array. An array's cell i has the
// couple's formal potential moved by (i - 4.5) times the spacing; nothing rotates in it.
std::vector<std::unique_ptr<Cell>> MakeCells(const Parameters& parameters, double volts);

}  // namespace zento::sim
