#pragma once

#include <vector>

namespace zento::sim {

// Concentration of one species between an electrode and the bulk of the solution, by finite volumes
// on an exponentially expanding grid (Joslin and Pletcher 1974; Feldberg 1981), with the convection
// of a rotating disk. Lengths in cm, times in s, concentrations in mol/cm3, fluxes in mol/(cm2 s).
//
// Nodes lie at x_j = a (e^(g j) - 1), faces at the mapped half points a (e^(g (j + 1/2)) - 1);
// the outermost node is held at the bulk concentration.
//
// Rotation: near the surface the axial velocity is -0.51023 omega^(3/2) nu^(-1/2) x^2 (Levich 1962;
// Cochran 1934), and D c'' - v c' is written in its self-adjoint form
//   dc/dt = D e^(-phi) d/dx (e^phi dc/dx),   phi = 0.51023 omega^(3/2) nu^(-1/2) x^3 / (3 D),
// so that the conductance between two nodes is D over the integral of e^(-phi) and the steady state
// is exact on any grid.
//
// Time: second-order backward differences with variable steps; a restart takes two first-order
// steps (Britz and Strutwolf 2016 discuss such starts).
//
// A step is Begin, which reduces the whole profile to c(0) = alpha - beta J, and Finish with the
// flux J that the electrode then takes out of the solution.
class DiffusionLayer {
 public:
  // Starts uniform at `bulk`.
  DiffusionLayer(double diffusion, double bulk, double viscosity);

  // Angular velocity in rad/s. Changes of less than 0.1 % wait for a few steps: they cost more than
  // a step does.
  void SetRotation(double omega);

  // The next two steps are of first order: the flux is about to jump.
  void Restart() { first_order_steps_ = 2; }

  struct Surface {
    double alpha = 0.0;  // c(0) without flux
    double beta = 0.0;   // s/cm
  };
  Surface Begin(double dt);
  void Finish(double flux);

  double SurfaceConcentration() const { return now_.front(); }

 private:
  void BuildGrid();
  void BuildConductances();
  void Factor(double dt, double weight0, double weight1, double weight2);

  double diffusion_;
  double bulk_;
  double viscosity_;
  double omega_ = 0.0;
  int omega_age_ = 0;  // steps
  int nodes_ = 0;      // unknown nodes; node `nodes_` is bulk
  int active_ = 0;     // nodes inside the convective layer; those beyond are bulk

  std::vector<double> x_, volume_;
  std::vector<double> left_, right_;  // conductances of each node towards its neighbours, cm/s
  std::vector<double> now_, before_;  // profiles at the last two times
  // Elimination from the bulk: q_j = now_weight c_j - before_weight c'_j + outer q_(j+1),
  // c_j = inner c_(j-1) + q_j.
  std::vector<double> inner_, outer_, now_weight_, before_weight_, q_;
  double beta_ = 0.0;
  double factored_dt_ = 0.0;
  double factored_ratio_ = -1.0;
  double last_dt_ = 0.0;
  double step_ = 0.0;
  int first_order_steps_ = 2;
};

}  // namespace zento::sim
