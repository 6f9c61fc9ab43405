#include "devices/vendor/loader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <map>
#include <random>

#ifndef _WIN32

namespace zento::vendor {
namespace {

using testing::AllOf;
using testing::HasSubstr;

namespace fs = std::filesystem;

const fs::path kStandIns = ZENTO_STAND_INS;

class LoaderTest : public testing::Test {
 protected:
  LoaderTest()
      : folder(fs::path(testing::TempDir()) /
               ("zento-loader-" + std::to_string(std::random_device()()))) {
    fs::remove_all(folder);
    fs::create_directories(folder);
    variables["ZENTO_PORT_IO"] = (folder / "port").string();
  }
  ~LoaderTest() override { fs::remove_all(folder); }

  Libraries Load() {
    return LoadLibraries({[this](const char* name) -> std::optional<std::string> {
                            const auto found = variables.find(name);
                            if (found == variables.end()) return std::nullopt;
                            return found->second;
                          },
                          folders});
  }
  static void Write(const fs::path& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
  }

  fs::path folder;
  std::map<std::string, std::string> variables;
  std::vector<fs::path> folders;
};

TEST_F(LoaderTest, CallsGoThroughToTheLibrary) {
  folders = {folder, kStandIns / "whole"};
  const Libraries libraries = Load();
  const Dask& dask = libraries.dask;
  ASSERT_EQ(dask.missing, "");
  EXPECT_EQ(dask.Register_Card(22, 5), 5);
  EXPECT_EQ(dask.Register_Card(21, 5), -1);
  double volts = 0;
  EXPECT_EQ(dask.AI_VReadChannel(2, 17, 4, &volts), 0);
  EXPECT_DOUBLE_EQ(volts, 217.4);
  EXPECT_EQ(dask.AO_9112_Config(0, 1, -5.0), 11);
  EXPECT_EQ(dask.AO_VWriteChannel(0, 0, 2.5), 2500);
  EXPECT_EQ(dask.DO_WritePort(0, 0, 31), 31);
  EXPECT_EQ(dask.Release_Card(9), 9);
  const Gpib& gpib = libraries.gpib;
  ASSERT_EQ(gpib.missing, "");
  const std::array<std::int32_t, 3> addresses = {2, 0, 7};
  EXPECT_EQ(gpib.GpTalk(addresses.data(), 4, "F101"), 7);
  std::int32_t value = 0;
  gpib.GpBoardsts(10, &value);
  EXPECT_EQ(value, 20);
}

TEST_F(LoaderTest, MissingLibraryNamesEveryPlaceItWasSoughtIn) {
  folders = {folder, "/no/such/folder"};
  const Libraries libraries = Load();
  EXPECT_FALSE(libraries.dask.Register_Card);
  EXPECT_THAT(libraries.dask.missing,
              AllOf(HasSubstr("libpci_dask.so was not found in " + folder.string()),
                    HasSubstr("/no/such/folder"), HasSubstr("ZENTO_PCI_DASK")));
  EXPECT_NE(libraries.gpib.missing, "");
  EXPECT_NE(libraries.aio.missing, "");
  EXPECT_NE(libraries.port_io.missing, "");
  EXPECT_TRUE(libraries.serial.Open);
}

TEST_F(LoaderTest, NamedLibraryIsTakenByItsFullPathOnly) {
  folders = {kStandIns / "whole"};
  const fs::path named = kStandIns / "whole" / "libpci_dask.so";
  variables["ZENTO_PCI_DASK"] = named.string();
  EXPECT_EQ(Load().dask.missing, "");
  variables["ZENTO_PCI_DASK"] = fs::relative(named).string();
  EXPECT_THAT(Load().dask.missing, HasSubstr("not a full path"));
  variables["ZENTO_PCI_DASK"] = "libpci_dask.so";
  EXPECT_THAT(Load().dask.missing, HasSubstr("not a full path"));
  variables["ZENTO_PCI_DASK"] = "/no/such/libpci_dask.so";
  EXPECT_THAT(Load().dask.missing, HasSubstr("there is no file /no/such/libpci_dask.so"));
}

TEST_F(LoaderTest, LibraryOfTheCurrentFolderIsNotTaken) {
  const fs::path before = fs::current_path();
  fs::current_path(kStandIns / "whole");
  const Libraries libraries = Load();
  fs::current_path(before);
  EXPECT_FALSE(libraries.dask.Register_Card);
}

TEST_F(LoaderTest, LibraryWithoutAFunctionIsNotUsedInPart) {
  folders = {kStandIns / "incomplete"};
  const Libraries libraries = Load();
  EXPECT_THAT(libraries.dask.missing, HasSubstr("has no function Register_Card"));
  EXPECT_FALSE(libraries.dask.AI_VReadChannel);
}

TEST_F(LoaderTest, FileThatIsNoLibraryIsSaidToBeNone) {
  Write(folder / "libpci_dask.so", "not a library at all");
  // A library's header with the other word width.
  std::ifstream in(kStandIns / "whole" / "libapigpib1.so", std::ios::binary);
  std::string bytes((std::istreambuf_iterator<char>(in)), {});
  bytes[4] = bytes[4] == 2 ? 1 : 2;
  Write(folder / "libapigpib1.so", bytes);
  folders = {folder};
  const Libraries libraries = Load();
  EXPECT_THAT(libraries.dask.missing, HasSubstr("cannot be loaded"));
  EXPECT_THAT(libraries.gpib.missing, HasSubstr("this program needs the"));
  // One that can be loaded further on is taken.
  folders.push_back(kStandIns / "whole");
  EXPECT_EQ(Load().dask.missing, "");
}

TEST_F(LoaderTest, RecordsWithNarrowAddressesNeedANarrowProgram) {
  if (sizeof(void*) == 4) GTEST_SKIP();
  folders = {kStandIns / "whole"};
  const Libraries libraries = Load();
  EXPECT_THAT(libraries.aio.missing, HasSubstr("needs the 32-bit program"));
  EXPECT_FALSE(libraries.aio.AioOpenEx);
}

TEST_F(LoaderTest, PortsGoThroughThePortDevice) {
  Write(folder / "port", std::string(0x200, '\0'));
  const PortIo ports = Load().port_io;
  ASSERT_EQ(ports.missing, "");
  ports.PortOutputByte(0x1D1, 0xA5);
  EXPECT_EQ(ports.PortInputByte(0x1D1), 0xA5);
  EXPECT_EQ(ports.PortInputByte(0x1D0), 0);
  EXPECT_EQ(fs::file_size(folder / "port"), 0x200u);
  EXPECT_EQ(ports.PortInputByte(0xFFFF), 0);  // no access: never "done"
}

TEST_F(LoaderTest, PortDeviceThatCannotBeOpenedIsSaid) {
  EXPECT_THAT(Load().port_io.missing,
              AllOf(HasSubstr("cannot be opened"), HasSubstr((folder / "port").string())));
  variables["ZENTO_PORT_IO"] = "port";
  EXPECT_THAT(Load().port_io.missing, HasSubstr("not a full path"));
}

}  // namespace
}  // namespace zento::vendor

#endif  // _WIN32
