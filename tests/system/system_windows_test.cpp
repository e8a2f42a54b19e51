// The real operating system, held against the stand-ins that all other tests rely on.
#include "system/system_windows.h"

#include <gmock/gmock.h>
#include <windows.h>

#include <thread>

#include "system/fake_world.h"
#include "text/text.h"

namespace vernoxa::inline system {
namespace {

class Journal {
 public:
  void note(const char* what, const std::string& answer) { lines_.push_back(std::string(what) + ": " + answer); }
  void note(const char* what, bool answer) { note(what, std::string(answer ? "yes" : "no")); }
  const std::vector<std::string>& lines() const { return lines_; }

 private:
  std::vector<std::string> lines_;
};

std::string namesIn(Files& files, const FilePath& folder) {
  std::vector<std::string> names;
  for (const FolderEntry& entry : files.entries(folder)) {
    names.push_back(entry.name + ((entry.attributes & directoryAttribute) != 0 ? "\\" : ""));
  }
  std::sort(names.begin(), names.end());
  return testing::PrintToString(names);
}

// The same story on any file system, below an empty folder.
std::vector<std::string> tell(Files& files, const FilePath& root) {
  Journal journal;
  // Characters of three bytes, one that no Chinese code page has, and one beyond the first 65,536.
  const FilePath folder = root / utf8(u8"原理图 한\U0001F600");
  const FilePath file = folder / "a.txt";
  journal.note("file without its folder", files.create(file) != nullptr);
  journal.note("folder two levels deep", files.createFolder(folder / "deeper"));
  journal.note("folder", files.createFolder(folder));
  journal.note("folder again", files.createFolder(folder));
  journal.note("is a folder", files.isFolder(folder / ""));
  journal.note("absent", files.exists(file));
  journal.note("read nothing", files.read(file).value_or("nothing"));
  journal.note("read a folder", files.read(folder).value_or("nothing"));
  journal.note("append", files.openForAppending(file)->write("one\r\n"));
  journal.note("append more", files.openForAppending(file)->write(std::string("\0two", 4)));
  journal.note("content", files.read(FilePath::fromUtf8(folder.utf8() + "/A.TXT")).value_or("nothing"));
  journal.note("is no folder", files.isFolder(file));
  {
    const auto open = files.openForAppending(file);
    const auto second = files.openForAppending(file);
    open->write("first");
    second->write("second");
    journal.note("read while it is written", files.read(file).value_or("nothing"));
    journal.note("removed while it is open", files.removeFile(file));
  }
  journal.note("gone", files.exists(file));
  for (const char* const spelling :
       {"\\a.dsn\\.", "/x/..\\a.dsn", "\\a.dsn. .", "\\a.dsn\\x\\..", "\\.\\a.dsn", "\\a.dsn\\"}) {
    journal.note(spelling,
                 files.fullPath(FilePath::fromUtf8(folder.utf8() + spelling)) == files.fullPath(folder / "a.dsn"));
  }
  files.create(file)->write("old content");
  files.create(file)->write("new");
  journal.note("made new", files.read(file).value_or("nothing"));
  journal.note("copy", std::to_string(files.copyFile(file, folder / "b.txt").error));
  journal.note("copy over", std::to_string(files.copyFile(file, folder / "B.txt").error));
  journal.note("copy nothing", std::to_string(files.copyFile(folder / "c.txt", folder / "d.txt").error));
  journal.note("copy to nowhere", std::to_string(files.copyFile(file, folder / "none" / "d.txt").error));
  files.create(folder / "c.txt")->write("c's content");
  journal.note("rename", files.replaceFile(folder / "c.txt", folder / "d.txt"));
  journal.note("rename over", files.replaceFile(folder / "d.txt", folder / "b.txt"));
  journal.note("start", files.readStart(folder / "b.txt", 3).value_or("nothing"));
  journal.note("rename nothing", files.replaceFile(folder / "c.txt", folder / "b.txt"));
  journal.note("rename over a folder", files.replaceFile(folder / "b.txt", folder));
  journal.note("no reparse point", files.reparseTag(folder) == 0 && files.reparseTag(folder / "c.txt") == 0);
  files.createFolder(folder / "sub");
  journal.note("entries", namesIn(files, folder));
  journal.note("entries of nothing", namesIn(files, folder / "absent"));
  journal.note("remove a folder as a file", files.removeFile(folder / "sub"));
  journal.note("remove a file as a folder", files.removeFolder(file));
  journal.note("remove a full folder", files.removeFolder(folder));
  journal.note("remove what is absent", files.removeFile(folder / "absent"));
  for (const char* const name : {"a.txt", "b.txt"}) {
    journal.note(name, files.removeFile(folder / name));
  }
  journal.note("remove", files.removeFolder(folder / "sub"));
  journal.note("remove the folder", files.removeFolder(folder));
  return journal.lines();
}

TEST(WindowsSystem, FilesBehaveAsTheirStandIn) {
  std::string temporary(MAX_PATH, '\0');
  temporary.resize(GetTempPathA(MAX_PATH, temporary.data()));
  const FilePath root = pathOf(temporary + "vernoxa-files-" + std::to_string(GetCurrentProcessId()));
  const auto realFiles = windowsFiles();
  Files& real = *realFiles;
  ASSERT_TRUE(real.createFolder(root));
  FakeFiles fake;
  fake.addFolder("C:\\root");
  EXPECT_EQ(tell(real, root), tell(fake, pathOf("C:\\root")));
  EXPECT_FALSE(real.read(pathOf("NUL")).has_value());  // no file
  SetThreadErrorMode(SEM_NOGPFAULTERRORBOX, nullptr);
  EXPECT_FALSE(real.exists(pathOf("Q:\\Capture.exe")));  // a drive without a disk raises no box, and that only here
  EXPECT_EQ(GetThreadErrorMode(), DWORD{SEM_NOGPFAULTERRORBOX});
  EXPECT_TRUE(real.fullPath(root / std::string(300, 'a')).empty());
  const FilePath original = root / "read-only";
  real.create(original)->write("text");
  SetFileAttributesA(original.utf8().c_str(), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
  EXPECT_TRUE(real.copyFile(original, root / "copy"));
  const FilePath systemsCopy = root / "systems-copy";  // hidden with Wine 8, not hidden with Wine 10
  EXPECT_NE(CopyFileA(original.utf8().c_str(), systemsCopy.utf8().c_str(), TRUE), 0);
  EXPECT_EQ(real.attributes(root / "copy"), real.attributes(systemsCopy) & ~DWORD{FILE_ATTRIBUTE_READONLY});
  EXPECT_TRUE(real.removeFile(root / "copy"));
  for (const FilePath& file : {original, systemsCopy}) {
    SetFileAttributesA(file.utf8().c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_TRUE(real.removeFile(file));
  }
  EXPECT_TRUE(real.removeFolder(root));
}

// Every character of the code page, both ways, and what is none.
TEST(WindowsSystem, CodePageIsTheStandIns) {
  const auto realPage = windowsCodePage();
  const CodePage& real = *realPage;
  const FakeCodePage fake;
  for (int lead = 0x81; lead <= 0xFE; ++lead) {
    for (int trail = 0x40; trail <= 0xFE; ++trail) {
      const std::string text = {static_cast<char>(lead), static_cast<char>(trail), '.'};
      const std::string utf8Text = fake.toUtf8(text);
      ASSERT_EQ(real.toUtf8(text), utf8Text) << lead << " " << trail;
      ASSERT_EQ(real.fromUtf8(utf8Text), fake.fromUtf8(utf8Text)) << lead << " " << trail;
    }
  }
  EXPECT_EQ(real.number(), fake.number());
  for (int byte = 0; byte < 256; ++byte) {
    EXPECT_EQ(real.isLeadByte(static_cast<char>(byte)), fake.isLeadByte(static_cast<char>(byte))) << byte;
  }
  for (const char8_t* const name : {u8"PA", u8"P\uFF21", u8"电阻", u8"P\u00F1", u8"\u00A5", u8"한", u8"\U0001F600"}) {
    EXPECT_EQ(real.nameFromUtf8(utf8(name)), fake.nameFromUtf8(utf8(name))) << utf8(name);
  }
  EXPECT_EQ(real.fromUtf8("a\xF0\x9F\x98\x80z").front(), 'a');
  EXPECT_EQ(real.toUtf8(""), "");
}

TEST(WindowsSystem, ClockLocksAndIdentifiers) {
  const auto clock = windowsClock();
  const auto before = clock->monotonic();
  clock->sleep(std::chrono::milliseconds(30));
  EXPECT_GE((clock->monotonic() - before).count(), 15);  // its ticks are 16 ms long
  EXPECT_GE(clock->localTime().year, 2024);
  EXPECT_GE(clock->localTime().month, 1);

  const auto guids = windowsGuids();
  EXPECT_EQ(guidText(*guids).size(), 36U);
  EXPECT_NE(guidText(*guids), guidText(*guids));

  const auto lock = windowsLocks()->create();
  lock->acquire();
  lock->acquire();
  bool entered = false;
  std::thread other([&] {
    lock->acquire();
    entered = true;
    lock->release();
  });
  clock->sleep(std::chrono::milliseconds(50));
  lock->release();
  EXPECT_FALSE(entered);  // held once more
  lock->release();
  other.join();
  EXPECT_TRUE(entered);
}

TEST(WindowsSystem, ProcessesAndTheModule) {
  const auto processes = windowsProcesses();
  EXPECT_LE(modulePath().utf8().size(), 99U);
  EXPECT_THAT(processes->running(),
              testing::Contains(testing::Field(&Process::id, static_cast<std::uint32_t>(processes->ownId()))));
  const FilePath former = processes->currentFolder();
  processes->setCurrentFolder(pathOf("C:\\windows"));
  EXPECT_THAT(processes->currentFolder().utf8(), testing::StrCaseEq("C:\\windows"));
  processes->setCurrentFolder(former);
  EXPECT_EQ(processes->currentFolder(), former);
  processes->start("nobody has this file.exe", "AutoLogin");  // silent
}

}  // namespace
}  // namespace vernoxa::inline system
