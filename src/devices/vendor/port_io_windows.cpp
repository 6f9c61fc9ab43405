#include "devices/vendor/bind.h"
#include "devices/vendor/library_search.h"

namespace zento::vendor {

PortIo LoadPortIo(const Surroundings& surroundings) {
  PortIo table;
  const auto library = FindLibrary(surroundings, "ZENTO_PORT_IO", "PortIO.dll");
  if (!library.ok()) {
    table.missing = library.why();
    return table;
  }
  Binder binder(library.value());
  binder.Bind("PortInputByte", table.PortInputByte).Bind("PortOutputByte", table.PortOutputByte);
  if (binder.missing().empty()) return table;
  PortIo empty;
  empty.missing = binder.missing();
  return empty;
}

}  // namespace zento::vendor
