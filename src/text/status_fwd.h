#pragma once

// Declares Status and Result for headers that only pass them on; who looks at an outcome includes
// text/status.h.

namespace zento {

class Status;
template <typename T>
class Result;

}  // namespace zento
