// What a real, hostile registry holds.
#include <windows.h>

#include <gmock/gmock.h>

#include "plugin/world.h"
#include "system/fake_code_page.h"
#include "system/registry.h"
#include "text/gbk_literal.h"

namespace vernoxa::designs {
namespace {

class RealRegistry : public testing::Test {
 protected:
  RealRegistry() {
    EXPECT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, path.key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr),
              ERROR_SUCCESS);
  }
  ~RealRegistry() override {
    RegCloseKey(key);
    RegDeleteTreeA(HKEY_CURRENT_USER, path.key.c_str());
  }

  const RegistryPath path{RegistryRoot::currentUser, "Software\\VernoxaTest"};
  const RegistryPath missing{RegistryRoot::currentUser, "Software\\VernoxaTest\\missing"};
  HKEY key = nullptr;
  plugin::World world = plugin::realWorld();
};

TEST_F(RealRegistry, ReadsNoValueThatIsNoTextOrTooLong) {
  const std::string long260(260, 'x');
  const std::tuple<const char*, DWORD, std::string, std::optional<std::string>> cases[] = {
      {"ended", REG_SZ, std::string(u8"C:\\软件\0"_gbk, 8), utf8(u8"C:\\软件")},
      {"not ended", REG_SZ, "C:\\SPB", "C:\\SPB"},
      {"zero inside", REG_SZ, std::string("C:\\A\0B\0", 7), "C:\\A"},
      {"empty", REG_SZ, std::string("\0", 1), ""},
      {"nothing", REG_SZ, "", ""},
      {"expandable", REG_EXPAND_SZ, std::string("%TEMP%\0", 7), "%TEMP%"},
      {"260 bytes with the zero", REG_SZ, long260.substr(1) + std::string("\0", 1), long260.substr(1)},
      {"261 bytes with the zero", REG_SZ, long260 + std::string("\0", 1), std::nullopt},
      {"very long", REG_SZ, std::string(70000, 'x'), std::nullopt},
      {"number", REG_DWORD, std::string("\1\0\0\0", 4), std::nullopt},
      {"bytes", REG_BINARY, "C:\\SPB", std::nullopt},
      {"several", REG_MULTI_SZ, std::string("C:\\A\0C:\\B\0\0", 11), std::nullopt},
  };
  for (const auto& [name, type, bytes, expected] : cases) {
    RegSetValueExA(key, name, 0, type, reinterpret_cast<const BYTE*>(bytes.data()), static_cast<DWORD>(bytes.size()));
    EXPECT_EQ(world.registry.text(path, name), expected) << name;
  }
  EXPECT_EQ(world.registry.text(path, "missing"), std::nullopt);
  EXPECT_EQ(world.registry.text(missing, "x"), std::nullopt);
}

TEST_F(RealRegistry, NamesTheKeysBelowUpToTheFirstThatFitsNoBuffer) {
  const auto add = [this](const std::wstring& name) {
    HKEY below = nullptr;
    EXPECT_EQ(RegCreateKeyExW(key, name.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &below, nullptr), ERROR_SUCCESS);
    RegCloseKey(below);
  };
  add(L"a");
  add(std::wstring(255, L'k'));
  add(L"软件");
  EXPECT_THAT(world.registry.subKeys(path), testing::ElementsAre("a", std::string(255, 'k'), utf8(u8"软件")));
  add(std::wstring(255, L'龟'));  // 510 bytes in the code page
  add(L"\uFF00");                 // behind it
  EXPECT_THAT(world.registry.subKeys(path), testing::SizeIs(3));
  EXPECT_THAT(world.registry.subKeys(missing), testing::IsEmpty());
}

}  // namespace
}  // namespace vernoxa::designs
