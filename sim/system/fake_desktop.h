// A registry, a clipboard, pictures and a user at the desk, all in memory.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "system/clipboard.h"
#include "system/desktop.h"
#include "system/fake_files.h"
#include "system/pictures.h"
#include "system/registry.h"

namespace vernoxa {

class FakeRegistry final : public Registry {
 public:
  using Values = std::map<std::string, std::string>;

  std::vector<std::pair<std::string, Values>> machine;  // uninstall entries by name, in their order
  std::vector<std::pair<std::string, Values>> user;
  std::optional<RegistryRoot> throwing;  // reading that root throws std::bad_alloc
  std::vector<std::string> listed;       // keys whose sub-keys were asked for

  std::vector<std::string> subKeys(const RegistryPath& path) override {
    listed.push_back((path.root == RegistryRoot::localMachine ? "machine " : "user ") + path.key);
    std::vector<std::string> names;
    for (const auto& [name, values] : entries(path.root)) {
      names.push_back(name);
    }
    return names;
  }

  std::optional<std::string> text(const RegistryPath& path, const std::string& name) override {
    if (throwing == path.root) {
      throw std::bad_alloc();
    }
    for (const auto& [entry, values] : entries(path.root)) {
      const auto found = values.find(name);
      if (path.key == listed.back().substr(listed.back().find(' ') + 1) + "\\" + entry && found != values.end()) {
        return found->second;
      }
    }
    return std::nullopt;
  }

 private:
  const std::vector<std::pair<std::string, Values>>& entries(RegistryRoot root) const {
    return root == RegistryRoot::localMachine ? machine : user;
  }
};

class FakeClipboard final : public Clipboard {
 public:
  explicit FakeClipboard(FakeFiles& files) : files_(files) {}

  bool held = false;                    // by another program
  int heldOnce = 0;                     // so many times more
  std::optional<std::string> metafile;  // bytes of the picture on it
  std::optional<std::string> older;     // bytes of the older one of which it is made
  std::optional<std::string> text;
  int openNow = 0;  // by us, now

  std::unique_ptr<ClipboardAccess> open() override {
    return held || heldOnce-- > 0 ? nullptr : std::make_unique<Opened>(*this);
  }

 private:
  class Opened final : public ClipboardAccess {
   public:
    explicit Opened(FakeClipboard& clipboard) : clipboard_(clipboard) { ++clipboard_.openNow; }
    ~Opened() override { --clipboard_.openNow; }
    bool hasMetafile() override { return clipboard_.metafile.has_value(); }
    std::optional<std::string> olderMetafile() override { return clipboard_.older; }
    bool saveMetafile(const FilePath& path) override {
      const auto file = clipboard_.files_.create(path);
      return file && clipboard_.metafile && file->write(*clipboard_.metafile);
    }
    void replaceByText(const std::string& newText) override {
      clipboard_.metafile.reset();
      clipboard_.text = newText;
    }

   private:
    FakeClipboard& clipboard_;
  };

  FakeFiles& files_;
};

class FakePictures final : public Pictures {
 public:
  ScreenMeasures measures{1920, 1080, 508, 286};
  std::optional<PictureFrame> frame = PictureFrame{0, 0, 2540, 1270};
  std::optional<PackedBitmap> bitmap = PackedBitmap{32, "packed"};
  bool drawThrows = false;
  std::vector<std::string> opened;  // bytes of metafiles
  std::vector<PixelSize> drawn;
  std::chrono::milliseconds allowed{};  // for drawing the last one

  ScreenMeasures screen() override { return measures; }
  std::unique_ptr<Metafile> openMetafile(std::string_view bytes) override {
    opened.emplace_back(bytes);
    return std::make_unique<Opened>(*this);
  }

 private:
  class Opened final : public Metafile {
   public:
    explicit Opened(FakePictures& pictures) : pictures_(pictures) {}
    std::optional<PictureFrame> frame() override { return pictures_.frame; }
    std::optional<PackedBitmap> draw(PixelSize size, std::chrono::milliseconds longest) override {
      pictures_.drawn.push_back(size);
      pictures_.allowed = longest;
      return pictures_.drawThrows ? throw std::bad_alloc() : pictures_.bitmap;
    }

   private:
    FakePictures& pictures_;
  };
};

class FakeDesktop final : public Desktop {
 public:
  ScreenPoint position{640, -20};
  std::function<std::optional<std::size_t>(const std::vector<std::string>&)> user;  // nobody: nothing is chosen
  std::vector<std::vector<std::string>> offered;
  std::vector<std::pair<Key, KeyMove>> keys;
  std::vector<std::function<void()>> waiting;  // background actions that have not run yet

  ScreenPoint cursor() override { return position; }
  void moveKey(Key key, KeyMove move) override { keys.emplace_back(key, move); }
  void runInBackground(std::function<void()> action) override { waiting.push_back(std::move(action)); }
  std::optional<std::size_t> choose(const std::vector<std::string>& texts) override {
    offered.push_back(texts);
    return user ? user(texts) : std::nullopt;
  }
};

}  // namespace vernoxa
