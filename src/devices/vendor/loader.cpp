#include "devices/vendor/loader.h"

#include "devices/vendor/platform.h"
#include "devices/vendor/serial_port.h"
#include "host/path_text.h"
#include "text/status.h"

namespace zento::vendor {
namespace {

constexpr LibraryName kPciDask = {"ZENTO_PCI_DASK", "Pci-Dask.dll", "libpci_dask.so"};
constexpr LibraryName kAio = {"ZENTO_API_AIO", "ApiAio.DLL", "libapiaio.so"};
constexpr LibraryName kAddressHelper = {"ZENTO_VBADD32", "VBAdd32.dll", "libvbadd32.so"};
constexpr LibraryName kGpib = {"ZENTO_API_GPIB1", "apigpib1.dll", "libapigpib1.so"};

#ifdef _WIN32
constexpr auto kPlatformFile = &LibraryName::windows_file;
#else
constexpr auto kPlatformFile = &LibraryName::linux_file;
#endif

// All of a table or nothing but the reason.
template <typename Table>
Table Complete(Table table, const std::string& missing) {
  if (missing.empty()) return table;
  Table empty;
  empty.missing = missing;
  return empty;
}

template <typename Table>
Table Missing(const std::string& why) {
  return Complete(Table{}, why);
}

Dask LoadDask(const Surroundings& surroundings) {
  const auto library = FindLibrary(surroundings, kPciDask);
  if (!library.ok()) return Missing<Dask>(library.why());
  Dask table;
  Binder binder(library.value());
  binder.Bind("Register_Card", table.Register_Card)
      .Bind("AI_VReadChannel", table.AI_VReadChannel)
      .Bind("AO_9112_Config", table.AO_9112_Config)
      .Bind("AO_VWriteChannel", table.AO_VWriteChannel)
      .Bind("DO_WritePort", table.DO_WritePort)
      .Bind("Release_Card", table.Release_Card);
  return Complete(std::move(table), binder.missing());
}

// The library's records hold addresses in 32 bits, so it can only be used where addresses have
// them.
Aio LoadAio(const Surroundings& surroundings) {
  const auto library = FindLibrary(surroundings, kAio);
  if (!library.ok()) return Missing<Aio>(library.why());
  if (sizeof(void*) > sizeof(std::int32_t)) {
    return Missing<Aio>(TextFromPath(library.value().file()) +
                        " takes 32-bit addresses and needs the 32-bit program");
  }
  const auto helper = FindLibrary(surroundings, kAddressHelper);
  if (!helper.ok()) return Missing<Aio>(helper.why());
  Aio table;
  Binder board(library.value());
  board.Bind("AioOpenEx", table.AioOpenEx)
      .Bind("AioSetRange", table.AioSetRange)
      .Bind("AioInp", table.AioInp)
      .Bind("BinaryToVI", table.BinaryToVI)
      .Bind("AioClose", table.AioClose);
  Binder address(helper.value());
  address.Bind("LpWord", table.LpWord);
  return Complete(std::move(table), board.missing() + address.missing());
}

Gpib LoadGpib(const Surroundings& surroundings) {
  const auto library = FindLibrary(surroundings, kGpib);
  if (!library.ok()) return Missing<Gpib>(library.why());
  Gpib table;
  Binder binder(library.value());
  binder.Bind("GpIni", table.GpIni)
      .Bind("GpIfc", table.GpIfc)
      .Bind("GpRen", table.GpRen)
      .Bind("GpTimeout", table.GpTimeout)
      .Bind("GpBoardsts", table.GpBoardsts)
      .Bind("GpTalk", table.GpTalk)
      .Bind("GpExit", table.GpExit);
  return Complete(std::move(table), binder.missing());
}

}  // namespace

Surroundings ThisMachine() {
  return {EnvironmentVariable, SystemLibraryFolders()};
}

Result<SharedLibrary> FindLibrary(const Surroundings& surroundings, const LibraryName& name) {
  const char* const variable = name.variable;
  const char* const file = name.*kPlatformFile;
  std::error_code ignored;
  if (const auto named = surroundings.environment(variable)) {
    const std::filesystem::path path = PathFromText(*named);
    if (!path.is_absolute()) {
      return Status::Failure(std::string(variable) + ": " + *named + " is not a full path");
    }
    if (!std::filesystem::exists(path, ignored)) {
      return Status::Failure(std::string(variable) + ": there is no file " + *named);
    }
    return SharedLibrary::Open(path);
  }
  std::string places;
  Status unusable;
  for (const std::filesystem::path& folder : surroundings.folders) {
    places += (places.empty() ? "" : ", ") + TextFromPath(folder);
    if (!std::filesystem::exists(folder / file, ignored)) continue;
    Result<SharedLibrary> library = SharedLibrary::Open(folder / file);
    if (library.ok()) return library;
    if (unusable.ok()) unusable = library.status();
  }
  if (!unusable.ok()) return unusable;
  return Status::Failure(std::string(file) + " was not found in " + places + "; " + variable +
                         " may name it by its full path");
}

Libraries LoadLibraries(const Surroundings& surroundings) {
  Libraries libraries;
  libraries.port_io = LoadPortIo(surroundings);
  libraries.aio = LoadAio(surroundings);
  libraries.dask = LoadDask(surroundings);
  libraries.gpib = LoadGpib(surroundings);
  libraries.serial = MakeSerialLine(surroundings.environment("ZENTO_SERIAL_PORT"));
  return libraries;
}

}  // namespace zento::vendor
