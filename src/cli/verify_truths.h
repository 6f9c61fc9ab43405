#pragma once

#include "sim/parameters.h"

// What theory says of a cell whose properties are known, from those properties alone. Nothing here
// has seen a measurement. Units: V, A, A/cm2, C, s, cm2/s, mol/cm3.

namespace zento::truths {

// Electrons per oxygen: of the share 1 - x four, of the share x two (A. Damjanovic, M. A. Genshaw
// and J. O'M. Bockris 1966, J. Chem. Phys. 45, 4057).
double OxygenElectrons(const sim::Parameters& p);
// Per cent of the oxygen that becomes water.
double WaterShare(const sim::Parameters& p);
// jk = n F k(E) C (J. Koutecky and V. G. Levich 1958; A. J. Bard and L. R. Faulkner,
// Electrochemical Methods, 2nd ed. 2001, eq. 9.3.38), with k(E) = k(0.9 V) 10^((0.9 V - E)/slope).
double KineticCurrent(const sim::Parameters& p, double volts);

double OxygenViscosity(const sim::Parameters& p);
double OxygenDiffusion(const sim::Parameters& p);
double OxygenConcentration(const sim::Parameters& p);
// Of the species that the step oxidises.
double ReducedDiffusion(const sim::Parameters& p);

// Slopes of log i against potential, as multiples of F/(R T ln 10): (1 - alpha) n of the oxidation,
// alpha n of the reduction (Butler 1924, Volmer 1930; Bard and Faulkner, eqs. 3.4.15 and 3.4.16).
double AnodicTransfer(const sim::Parameters& p);
double CathodicTransfer(const sim::Parameters& p);
// i0/A = n F k0 C_ox^(1 - alpha) C_red^alpha (Bard and Faulkner, eq. 3.4.6), at the equilibrium
// potential, which is E0' where both concentrations are equal.
double ExchangeCurrent(const sim::Parameters& p);

// Q = C_dl A (E2 - E1), of a double layer that nothing passes.
double DoubleLayerCharge(const sim::Parameters& p, double from, double to);
// R_u C_dl A (Bard and Faulkner, eq. 1.2.6).
double CellTimeConstant(const sim::Parameters& p);

}  // namespace zento::truths
