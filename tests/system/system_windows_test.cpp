// The real operating system, held against the stand-ins that all other tests rely on.
#include "system/system_windows.h"

#include <gmock/gmock.h>
#include <winsock2.h>

#include <thread>

#include "link/socket_client.h"
#include "system/fake_world.h"
#include "text/text.h"

namespace vernoxa::inline system {
namespace {

// The same story on any file system, below an empty folder.
std::vector<std::string> tell(Files& files, const FilePath& root) {
  std::vector<std::string> journal;
  const auto note = [&](const char* what, const auto& answer) {
    journal.push_back(std::string(what) + ": " + testing::PrintToString(answer));
  };
  // Characters of three bytes, one that no Chinese code page has, and one beyond the first 65,536.
  const FilePath folder = root / utf8(u8"原理图 한\U0001F600");
  const FilePath file = folder / "a.txt";
  note("file without its folder", files.create(file) != nullptr);
  note("folder two levels deep", files.createFolder(folder / "deeper"));
  note("folder", files.createFolder(folder));
  note("folder again", files.createFolder(folder));
  note("is a folder", files.isFolder(folder / ""));
  note("absent", files.exists(file));
  note("read nothing", files.read(file));
  note("read a folder", files.read(folder));
  note("append", files.openForAppending(file)->write("one\r\n"));
  note("append more", files.openForAppending(file)->write(std::string("\0two", 4)));
  note("content", files.read(FilePath::fromUtf8(folder.utf8() + "/A.TXT")));
  note("is no folder", files.isFolder(file));
  {
    const auto open = files.openForAppending(file);
    const auto second = files.openForAppending(file);
    open->write("first");
    second->write("second");
    note("read while it is written", files.read(file));
    note("removed while it is open", files.removeFile(file));
  }
  note("gone", files.exists(file));
  for (const char* const spelling :
       {"\\a.dsn\\.", "/x/..\\a.dsn", "\\a.dsn. .", "\\a.dsn\\x\\..", "\\.\\a.dsn", "\\a.dsn\\"}) {
    note(spelling, files.fullPath(FilePath::fromUtf8(folder.utf8() + spelling)) == files.fullPath(folder / "a.dsn"));
  }
  files.create(file)->write("old content");
  files.create(file)->write("new");
  note("made new", files.read(file));
  note("copy", files.copyFile(file, folder / "b.txt").error);
  note("copy over", files.copyFile(file, folder / "B.txt").error);
  note("copy nothing", files.copyFile(folder / "c.txt", folder / "d.txt").error);
  note("copy to nowhere", files.copyFile(file, folder / "none" / "d.txt").error);
  files.create(folder / "c.txt")->write("c's content");
  note("rename", files.replaceFile(folder / "c.txt", folder / "d.txt"));
  note("rename over", files.replaceFile(folder / "d.txt", folder / "b.txt"));
  note("start", files.readStart(folder / "b.txt", 3));
  note("rename nothing", files.replaceFile(folder / "c.txt", folder / "b.txt"));
  note("rename over a folder", files.replaceFile(folder / "b.txt", folder));
  note("no reparse point", files.reparseTag(folder) == 0 && files.reparseTag(folder / "c.txt") == 0);
  files.createFolder(folder / "sub");
  std::map<std::string, bool> folders;
  for (const FolderEntry& entry : files.entries(folder)) {
    folders[entry.name] = (entry.attributes & directoryAttribute) != 0;
  }
  note("entries, and which are folders", folders);
  note("entries of nothing", files.entries(folder / "absent").empty());
  note("remove a folder as a file", files.removeFile(folder / "sub"));
  note("remove a file as a folder", files.removeFolder(file));
  note("remove a full folder", files.removeFolder(folder));
  note("remove what is absent", files.removeFile(folder / "absent"));
  note("remove a file", files.removeFile(file));
  note("remove another", files.removeFile(folder / "b.txt"));
  note("remove", files.removeFolder(folder / "sub"));
  note("remove the folder", files.removeFolder(folder));
  return journal;
}

TEST(WindowsSystem, FilesBehaveAsTheirStandIn) {
  std::string temporary(MAX_PATH, '\0');
  temporary.resize(GetTempPathA(MAX_PATH, temporary.data()));
  const FilePath root = pathOf(temporary + "vernoxa-files-" + std::to_string(GetCurrentProcessId()));
  const auto real = windowsFiles();
  ASSERT_TRUE(real->createFolder(root));
  FakeFiles fake;
  fake.addFolder("C:\\root");
  EXPECT_EQ(tell(*real, root), tell(fake, pathOf("C:\\root")));
  EXPECT_FALSE(real->read(pathOf("NUL")).has_value());  // no file
  SetThreadErrorMode(SEM_NOGPFAULTERRORBOX, nullptr);
  EXPECT_FALSE(real->exists(pathOf("Q:\\Capture.exe")));  // a drive without a disk raises no box, and that only here
  EXPECT_EQ(GetThreadErrorMode(), DWORD{SEM_NOGPFAULTERRORBOX});
  EXPECT_TRUE(real->fullPath(root / std::string(300, 'a')).empty());
  EXPECT_TRUE(real->removeFolder(root));
}

// Every character of the code page, both ways, and what is none.
TEST(WindowsSystem, CodePageIsTheStandIns) {
  const auto real = windowsCodePage();
  const FakeCodePage fake;
  for (int lead = 0x81; lead <= 0xFE; ++lead) {
    for (int trail = 0x40; trail <= 0xFE; ++trail) {
      const std::string text = {static_cast<char>(lead), static_cast<char>(trail), '.'};
      const std::string utf8Text = fake.toUtf8(text);
      ASSERT_EQ(real->toUtf8(text), utf8Text) << lead << " " << trail;
      ASSERT_EQ(real->fromUtf8(utf8Text), fake.fromUtf8(utf8Text)) << lead << " " << trail;
    }
  }
  EXPECT_EQ(real->number(), fake.number());
  for (int byte = 0; byte < 256; ++byte) {
    EXPECT_EQ(real->isLeadByte(static_cast<char>(byte)), fake.isLeadByte(static_cast<char>(byte))) << byte;
  }
  for (const char8_t* const name : {u8"PA", u8"P\uFF21", u8"电阻", u8"P\u00F1", u8"\u00A5", u8"한", u8"\U0001F600"}) {
    EXPECT_EQ(real->nameFromUtf8(utf8(name)), fake.nameFromUtf8(utf8(name))) << utf8(name);
  }
  EXPECT_EQ(real->fromUtf8("a\xF0\x9F\x98\x80z").front(), 'a');
  EXPECT_EQ(real->toUtf8(""), "");
}

TEST(WindowsSystem, ClockLocksAndIdentifiers) {
  const auto clock = windowsClock();
  const auto before = clock->monotonic();
  const auto slept = std::chrono::steady_clock::now();
  clock->sleep(std::chrono::milliseconds(30));
  EXPECT_GE(std::chrono::steady_clock::now() - slept, std::chrono::milliseconds(25));
  // Wine's ticks stand still while its server gets no processor, and the one after a late one is short.
  for (int naps = 0; (clock->monotonic() - before).count() < 15 && naps < 300; ++naps) {
    clock->sleep(std::chrono::milliseconds(30));
  }
  EXPECT_GE((clock->monotonic() - before).count(), 15);
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
  processes->start("nobody has this file.exe", "AutoLogin");  // silent
}

// What no conversation of the built plug-in tries: a peer that takes the connection and says nothing, and none at all.
class WindowsSocketsTest : public testing::Test, protected FakeSession {
 protected:
  WindowsSocketsTest() {
    sockets_->startUp();
    server_ = ::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = inet_addr(link::localAddress);
    int size = sizeof address;
    ::bind(server_, reinterpret_cast<const sockaddr*>(&address), size);
    ::listen(server_, 5);
    ::getsockname(server_, reinterpret_cast<sockaddr*>(&address), &size);
    port_ = ntohs(address.sin_port);
  }
  ~WindowsSocketsTest() override {
    ::closesocket(server_);
    sockets_->cleanUp();
  }

  const std::unique_ptr<Sockets> sockets_ = windowsSockets();
  const std::unique_ptr<Clock> clock_ = windowsClock();
  link::SocketClient client_{*sockets_, *clock_, fake.output, logs};
  SOCKET server_ = INVALID_SOCKET;
  std::uint16_t port_ = 0;
};

TEST_F(WindowsSocketsTest, SilentPeerIsGivenUp) {
  ASSERT_EQ(client_.connect(link::localAddress, port_), 0);
  std::string message;
  const auto before = clock_->monotonic();
  EXPECT_EQ(client_.receivePacket(message, std::chrono::milliseconds(200)), -1);
  EXPECT_GE((clock_->monotonic() - before).count(), 150);
  EXPECT_LT((clock_->monotonic() - before).count(), 5000);
  ::closesocket(std::exchange(server_, INVALID_SOCKET));
  EXPECT_EQ(client_.connect(link::localAddress, port_), -1);
  EXPECT_EQ(fake.output.text(), "connect error !");
}

TEST_F(WindowsSocketsTest, RetiringEndsABlockedReceive) {
  ASSERT_EQ(client_.connect(link::localAddress, port_), 0);
  std::thread other([&] {
    Sleep(100);
    client_.retire();
  });
  std::string message;
  EXPECT_EQ(client_.receivePacket(message), -1);
  other.join();
  EXPECT_EQ(client_.connect(link::localAddress, port_), -1);
}

}  // namespace
}  // namespace vernoxa::inline system
