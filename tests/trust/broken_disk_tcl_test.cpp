// A disk that stays full, folders that stay read-only, a log folder that comes and goes: every kept conversation again.
#include <gtest/gtest.h>

#include "trust/trust_rig_tcl.h"
#include "wire/packet_text.h"

namespace vernoxa {
namespace {

enum class Trouble { full, readOnly, logFolderComesAndGoes };

class FullFile final : public OutputFile {
 public:
  bool write(std::string_view) override { return false; }
};

// What is there can be read; what is new depends on the trouble.
class BrokenDisk final : public Files {
 public:
  explicit BrokenDisk(Trouble trouble) : trouble_(trouble) {}

  FakeFiles* there = nullptr;

  std::uint32_t attributes(const FilePath& path) override {
    const bool gone = writable() && path.utf8().ends_with("\\Log") && ++asked_ % 3 == 0;
    return gone ? noAttributes : there->attributes(path);
  }
  FilePath fullPath(const FilePath& path) override { return there->fullPath(path); }
  FilePath shortPath(const FilePath& path) override { return there->shortPath(path); }
  std::uint32_t reparseTag(const FilePath& path) override { return there->reparseTag(path); }
  std::optional<std::string> readStart(const FilePath& path, std::size_t most) override {
    return there->readStart(path, most);
  }
  std::unique_ptr<OutputFile> openForAppending(const FilePath& path) override {
    return writable() && ++asked_ % 3 != 0 ? there->openForAppending(path) : newFile();
  }
  std::unique_ptr<OutputFile> create(const FilePath& path) override {
    return writable() ? there->create(path) : newFile();
  }
  bool createFolder(const FilePath& path) override { return writable() && there->createFolder(path); }
  bool removeFile(const FilePath& path) override { return removable() && there->removeFile(path); }
  bool removeFolder(const FilePath& path) override { return removable() && there->removeFolder(path); }
  bool replaceFile(const FilePath& from, const FilePath& to) override {
    return removable() && there->replaceFile(from, to);
  }
  CopyResult copyFile(const FilePath& from, const FilePath& to) override {
    return writable() ? there->copyFile(from, to) : CopyResult{1};
  }
  std::vector<FolderEntry> entries(const FilePath& folder) override { return there->entries(folder); }
  bool writable() const { return trouble_ == Trouble::logFolderComesAndGoes; }

 private:
  bool removable() const { return trouble_ != Trouble::readOnly; }  // a full disk lets go
  std::unique_ptr<OutputFile> newFile() const {
    return trouble_ == Trouble::full ? std::make_unique<FullFile>() : nullptr;
  }

  Trouble trouble_;
  int asked_ = 0;
};

// Of an export before, which nothing replaces on a broken disk.
constexpr const char* formerModule = "C:\\App\\Cache\\Share\\ModuleLib.json";

// Statuses and texts.
std::vector<std::string> answersOn(BrokenDisk* disk, TrustHost& host, const KeptInput& input) {
  TrustLoad load(disk);
  if (disk != nullptr) {
    disk->there = &load.fake.files;
  }
  load.fake.files.addFile(formerModule, "{}");
  load.beginSession();
  host.answer = input.answer;
  std::vector<std::string> answers;
  for (const Words& words : input.calls) {
    const TrustHost::Answer given = host.call(words);
    answers.push_back(std::to_string(given.status) + " " + messageOf(given.text).message + " " + given.text);
  }
  EXPECT_EQ(load.harmToTheUsersFiles(), "");
  EXPECT_TRUE(disk == nullptr || disk->writable() || load.fake.files.bytes(formerModule) == "{}");
  EXPECT_EQ(load.fake.locks.held, 0);
  return answers;
}

TEST(BrokenDisk, EveryKeptConversationEndsAsOnAGoodOne) {
  TrustHost host;
  int conversations = 0;
  for (const std::string target : {"companion_packet", "thread_packet", "commands"}) {
    for (const KeptInput& input : keptInputs(target)) {
      SCOPED_TRACE(target + "/" + input.name);
      const std::vector<std::string> good = answersOn(nullptr, host, input);
      for (const Trouble trouble : {Trouble::full, Trouble::readOnly, Trouble::logFolderComesAndGoes}) {
        BrokenDisk disk(trouble);
        EXPECT_EQ(answersOn(&disk, host, input), good);
        ++conversations;
      }
    }
  }
  EXPECT_GT(conversations, 100);
  RecordProperty("conversations", conversations);
}

}  // namespace
}  // namespace vernoxa
