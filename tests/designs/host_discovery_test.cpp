#include "designs/host_discovery.h"

#include <gmock/gmock.h>

#include "support/fake_script_host.h"
#include "system/fake_world.h"

namespace vernoxa::designs {
namespace {

using testing::ElementsAre;

FakeRegistry::Values entry(const std::string& location, const std::string& version,
                           const std::string& name = "OrCAD Capture", const std::string& publisher = "Cadence Design") {
  return {{"Publisher", publisher}, {"InstallLocation", location}, {"DisplayName", name}, {"DisplayVersion", version}};
}

FakeRegistry::Values without(const char* value) {
  FakeRegistry::Values values = entry("C:\\X", "17.4");
  values.erase(value);
  return values;
}

class HostDiscovery : public testing::Test {
 protected:
  std::string discover(const std::string& hostVersion) {
    host.answer("GetProductVersion", hostVersion);
    setOrcadInstallPath(host, fake.fake.registry, fake.fake.files, fake.logs, fake.hostExecutable);
    return fake.hostExecutable.get().utf8();
  }
  std::vector<std::string> readLocations() {
    std::vector<std::string> found;
    for (const Installation& each : readOrcadInstallInfo(registry(), fake.logs)) {
      found.push_back(each.location.utf8() + "|" + each.version);
    }
    return found;
  }
  FakeRegistry& registry() { return fake.fake.registry; }
  FakeFiles& files() { return fake.fake.files; }

  FakeSession fake;
  FakeScriptHost host;
};

TEST_F(HostDiscovery, ReadsTheMachineThenTheUserAndKeepsOnlyTheHostsProducts) {
  registry().machine = {
      {"1", entry("C:\\Cadence\\SPB_16.6\\", "16.6.0")},
      {"2", entry("C:\\Sigrity", "17.4", "Cadence Sigrity 2019")},
      {"3", entry("C:\\Manage", "17.4", "Cadence Download Manager")},
      {"4", entry("C:\\Other", "17.4", "Capture", "Somebody")},
      {"5", without("Publisher")},
      {"6", without("InstallLocation")},
      {"7", without("DisplayName")},
      {"8", without("DisplayVersion")},
      {"9", entry("C:\\Two\\\\", "17.2")},
      {"11", entry("", "17.2")},
  };
  registry().user = {{"1", entry("D:\\Cadence\\SPB_17.4", "17.4.0")}};
  EXPECT_THAT(readLocations(),
              ElementsAre("C:\\Cadence\\SPB_16.6|16.6.0", "C:\\Two\\|17.2", "|17.2", "D:\\Cadence\\SPB_17.4|17.4.0"));
  EXPECT_THAT(registry().listed,
              ElementsAre("machine SOFTWARE\\Wow6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall",
                          "user Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall"));
}

TEST_F(HostDiscovery, AnExceptionEndsOneHalfOnly) {
  registry().machine = {{"1", entry("C:\\A", "17.4")}};
  registry().user = {{"1", entry("D:\\B", "17.4")}};
  registry().throwing = RegistryRoot::localMachine;
  EXPECT_THAT(readLocations(), ElementsAre("D:\\B|17.4"));
  registry().throwing = RegistryRoot::currentUser;
  EXPECT_THAT(readLocations(), ElementsAre("C:\\A|17.4"));
  EXPECT_EQ(fake.crashes(), "readOrcadInstallInfo1\nreadOrcadInstallInfo");
}

TEST_F(HostDiscovery, TakesTheVersionThatLoadedThePlugIn) {
  registry().machine = {{"1", entry("C:\\SPB_16.6", "16.6.0")},
                        {"2", entry("C:\\SPB_17.4\\", "17.4.0")},
                        {"3", entry("C:\\SPB_17.4_second", "17.4.1")},
                        {"4", entry("C:\\Short", "17")}};
  for (const char* file : {"C:\\SPB_16.6\\tools\\capture\\Capture.exe", "C:\\SPB_17.4\\tools\\bin\\Capture.exe",
                           "C:\\SPB_17.4_second\\tools\\bin\\Capture.exe", "C:\\Short\\tools\\bin\\Capture.exe"}) {
    files().addFile(file, "");
  }
  const struct {
    const char* hostVersion;
    const char* expected;
  } cases[] = {
      {"17.4-2019", "C:\\SPB_17.4\\tools\\bin\\Capture.exe"},
      {"16.6-2015", "C:\\SPB_16.6\\tools\\capture\\Capture.exe"},
      {"16.6", "C:\\SPB_16.6\\tools\\capture\\Capture.exe"},
      {"17", "C:\\Short\\tools\\bin\\Capture.exe"},
      {"17.2", ""},
      {"invalid command name \"GetProductVersion\"", ""},
      {"", ""},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(discover(each.hostVersion), each.expected) << each.hostVersion;
  }
}

TEST_F(HostDiscovery, SearchesThePlainFoldersBelowAndTakesTheLastHit) {
  registry().user = {{"1", entry("C:\\SPB", "17.4")}};
  files().addFolder("C:\\SPB\\tools\\bin\\Capture.exe");  // a folder of that name is no program
  EXPECT_EQ(discover("17.4"), "");
  files().addFile("C:\\SPB\\a\\tools\\bin\\Capture.exe", "");
  files().addFile("C:\\SPB\\b\\tools\\bin\\Capture.exe", "");
  files().addFolder("C:\\SPB\\hidden", directoryAttribute | 2);
  files().addFile("C:\\SPB\\hidden\\tools\\bin\\Capture.exe", "");
  files().addFolder("C:\\SPB\\z");
  EXPECT_EQ(discover("17.4"), "C:\\SPB\\b\\tools\\bin\\Capture.exe");
}

TEST_F(HostDiscovery, WithoutAMatchTheSearchBeginsAtTheDrivesRoot) {
  files().addFile("\\SPB_16.5\\tools\\capture\\Capture.exe", "");
  EXPECT_EQ(discover("16.5"), "\\SPB_16.5\\tools\\capture\\Capture.exe");
  EXPECT_EQ(discover("17.4"), "");
}

TEST_F(HostDiscovery, AnExceptionGoesToTheCrashLogAndLeavesTheStateAsItWas) {
  fake.hostExecutable.set(pathOf("before"));
  host.during = [](const std::string&) { throw std::bad_alloc(); };
  EXPECT_EQ(discover("17.4"), "before");
  EXPECT_EQ(fake.crashes(), "setOrcadInstallPath");
}

}  // namespace
}  // namespace vernoxa::designs
