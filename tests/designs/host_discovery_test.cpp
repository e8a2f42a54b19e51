#include "designs/host_discovery.h"

#include "support/session_test.h"

namespace vernoxa::designs {
namespace {

using testing::ElementsAre;

FakeRegistry::Values entry(const std::string& location, const std::string& version,
                           const std::string& name = "OrCAD Capture", const std::string& publisher = "Cadence Design") {
  return {{"Publisher", publisher}, {"InstallLocation", location}, {"DisplayName", name}, {"DisplayVersion", version}};
}

class HostDiscovery : public SessionTest {
 protected:
  std::string discover(const std::string& hostVersion) {
    host_.answer("GetProductVersion", hostVersion);
    setOrcadInstallPath(host_, fake.registry, fake.files, logs, hostExecutable);
    return hostExecutable.get().utf8();
  }
  std::vector<std::string> readLocations() {
    std::vector<std::string> found;
    for (const Installation& each : readOrcadInstallInfo(fake.registry, logs)) {
      found.push_back(each.location.utf8() + "|" + each.version);
    }
    return found;
  }
};

TEST_F(HostDiscovery, ReadsTheMachineThenTheUserAndKeepsOnlyTheHostsProducts) {
  fake.registry.machine = {
      {"1", entry("C:\\Cadence\\SPB_16.6\\", "16.6.0")},
      {"2", entry("C:\\Sigrity", "17.4", "Cadence Sigrity 2019")},
      {"3", entry("C:\\Manage", "17.4", "Cadence Download Manager")},
      {"4", entry("C:\\Other", "17.4", "Capture", "Somebody")},
      {"9", entry("C:\\Two\\\\", "17.2")},
      {"11", entry("", "17.2")},
  };
  for (const char* missing : {"Publisher", "InstallLocation", "DisplayName", "DisplayVersion"}) {
    fake.registry.machine.push_back({missing, entry("C:\\X", "17.4")});
    fake.registry.machine.back().second.erase(missing);
  }
  fake.registry.user = {{"1", entry("D:\\Cadence\\SPB_17.4", "17.4.0")}};
  EXPECT_THAT(readLocations(),
              ElementsAre("C:\\Cadence\\SPB_16.6|16.6.0", "C:\\Two\\|17.2", "|17.2", "D:\\Cadence\\SPB_17.4|17.4.0"));
  EXPECT_THAT(fake.registry.listed,
              ElementsAre("machine SOFTWARE\\Wow6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall",
                          "user Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall"));
}

TEST_F(HostDiscovery, AnExceptionEndsOneHalfOnly) {
  fake.registry.machine = {{"1", entry("C:\\A", "17.4")}};
  fake.registry.user = {{"1", entry("D:\\B", "17.4")}};
  fake.registry.throwing = RegistryRoot::localMachine;
  EXPECT_THAT(readLocations(), ElementsAre("D:\\B|17.4"));
  fake.registry.throwing = RegistryRoot::currentUser;
  EXPECT_THAT(readLocations(), ElementsAre("C:\\A|17.4"));
  EXPECT_EQ(crashes(), "readOrcadInstallInfo1\nreadOrcadInstallInfo");
}

TEST_F(HostDiscovery, TakesTheVersionThatLoadedThePlugIn) {
  fake.registry.machine = {{"1", entry("C:\\SPB_16.6", "16.6.0")},
                           {"2", entry("C:\\SPB_17.4\\", "17.4.0")},
                           {"3", entry("C:\\SPB_17.4_second", "17.4.1")},
                           {"4", entry("C:\\Short", "17")}};
  for (const char* file :
       {"SPB_16.6\\tools\\capture", "SPB_17.4\\tools\\bin", "SPB_17.4_second\\tools\\bin", "Short\\tools\\bin"}) {
    fake.files.addFile("C:\\" + std::string(file) + "\\Capture.exe", "", readOnlyAttribute);
  }
  const std::pair<const char*, const char*> cases[] = {
      {"17.4-2019", "C:\\SPB_17.4\\tools\\bin\\Capture.exe"},
      {"16.6-2015", "C:\\SPB_16.6\\tools\\capture\\Capture.exe"},
      {"17", "C:\\Short\\tools\\bin\\Capture.exe"},
      {"17.2", ""},
      {"", ""},
  };
  for (const auto& [hostVersion, expected] : cases) {
    EXPECT_EQ(discover(hostVersion), expected) << hostVersion;
  }
}

TEST_F(HostDiscovery, SearchesThePlainFoldersBelowAndTakesTheLastHit) {
  fake.registry.user = {{"1", entry("C:\\SPB", "17.4")}};
  fake.files.addFolder("C:\\SPB\\tools\\bin\\Capture.exe");  // a folder of that name is no program
  EXPECT_EQ(discover("17.4"), "");
  fake.files.addFile("C:\\SPB\\a\\tools\\bin\\Capture.exe", "");
  fake.files.addFile("C:\\SPB\\b\\tools\\bin\\Capture.exe", "");
  fake.files.addFolder("C:\\SPB\\hidden", directoryAttribute | 2);
  fake.files.addFile("C:\\SPB\\hidden\\tools\\bin\\Capture.exe", "");
  fake.files.addFolder("C:\\SPB\\z");
  EXPECT_EQ(discover("17.4"), "C:\\SPB\\b\\tools\\bin\\Capture.exe");
}

TEST_F(HostDiscovery, WithoutAMatchTheSearchBeginsAtTheDrivesRoot) {
  fake.files.addFile("\\SPB_16.5\\tools\\capture\\Capture.exe", "");
  EXPECT_EQ(discover("16.5"), "\\SPB_16.5\\tools\\capture\\Capture.exe");
  EXPECT_EQ(discover("17.4"), "");
}

TEST_F(HostDiscovery, AnExceptionGoesToTheCrashLogAndLeavesTheStateAsItWas) {
  hostExecutable.set(pathOf("before"));
  host_.during = [](const std::string&) { throw std::bad_alloc(); };
  EXPECT_EQ(discover("17.4"), "before");
  EXPECT_EQ(crashes(), "setOrcadInstallPath");
}

}  // namespace
}  // namespace vernoxa::designs
