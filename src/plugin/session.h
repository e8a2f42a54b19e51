// Everything that one load of the plug-in creates.
#pragma once

#include <string>
#include <tuple>
#include <type_traits>

#include "designs/open_designs.h"
#include "desktop/clipboard_picture.h"
#include "dispatch/companion_sender.h"
#include "dispatch/dispatcher.h"
#include "drawing/graphic_library.h"
#include "drawing/page_export.h"
#include "link/companion_link.h"
#include "link/file_status.h"
#include "link/socket_client.h"
#include "modules/companion_query.h"
#include "modules/library_files.h"
#include "modules/module_document.h"
#include "modules/placement.h"
#include "modules/placement_context.h"
#include "modules/request_commands.h"
#include "plugin/installation.h"
#include "plugin/world.h"
#include "system/log.h"
#include "system/shared_path.h"
#include "text/message_paths.h"
#include "text/text_converter.h"

namespace vernoxa::plugin {

template <class Part, class... Parts>
constexpr bool isAmong(const std::tuple<Parts&...>*) {
  return (std::is_same_v<std::remove_const_t<Part>, std::remove_const_t<Parts>> || ...);
}

// The part of that type in a tuple of references.
template <class Part, class... Parts>
Part& partIn(const std::tuple<Parts&...>& parts) {
  if constexpr ((std::is_same_v<Part, Parts> || ...)) {
    return std::get<Part&>(parts);
  } else {
    return std::get<std::remove_const_t<Part>&>(parts);
  }
}

// What the host's thread and the link thread share: the operating system, and classes that guard themselves.
class SharedParts {
 public:
  SharedParts(World& world, const Logs& crashLogs, const Directories& directories);

  template <class Part>
  static constexpr bool has() {
    return isAmong<Part>(static_cast<const Parts*>(nullptr));
  }
  template <class Part>
  Part& part() {
    static_assert(has<Part>(), "this part belongs to the host's thread");
    return partIn<Part>(parts_);
  }

 private:
  using Parts =
      std::tuple<Clock&, Files&, Processes&, Sockets&, StandardOutput&, const Logs&, const TextConverter&,
                 ProjectFolder&, HostExecutable&, MessagePaths&, const link::FileStatus&, link::CompanionLink&>;

  Logs logs_;
  TextConverter converter_;
  ProjectFolder project_;
  HostExecutable hostExecutable_;
  MessagePaths paths_;
  link::FileStatus fileStatus_;
  link::CompanionLink link_;
  Parts parts_;
};

template <auto function>
struct Run;

// What the link thread works on: what the threads share, and its own connection, which others may only retire.
class LinkThreadParts {
 public:
  LinkThreadParts(World& world, const Logs& crashLogs, const Directories& directories);

  SharedParts& shared() { return shared_; }
  void retire() { client_.retire(); }

 private:
  template <auto function>
  friend struct Run;

  template <class Part>
  Part& part() {
    if constexpr (std::is_same_v<Part, link::SocketClient>) {
      return client_;
    } else {
      return shared_.part<Part>();
    }
  }

  SharedParts shared_;
  link::SocketClient client_;
};

// Owned together: by the process until the next load, by each command while it runs, and by the link thread for ever.
// So a load during a command, or beside the thread, leaves both on valid memory.
class Session {
 public:
  Session(World& world, const Logs& crashLogs, Directories directories);

  LinkThreadParts& linkThread() { return linkThread_; }

  // The part of that type, as the functions in the rows of the tables name it.
  template <class Part>
  Part& part() {
    if constexpr (SharedParts::has<Part>()) {
      return linkThread_.shared().part<Part>();
    } else {
      static_assert(isAmong<Part>(static_cast<const Parts*>(nullptr)), "this part belongs to the link thread");
      return partIn<Part>(parts_);
    }
  }

  std::string language = "EN";

 private:
  using Parts = std::tuple<GuidSource&, Registry&, UserMessages&, Clipboard&, Desktop&, const Directories&,
                           modules::PlacementContext&, PreviewPicture&, const CompanionSender&, designs::OpenDesigns&,
                           modules::LibraryFiles&, modules::ModulePlacer&, const modules::CompanionQuery&,
                           modules::ResourcePaths&, modules::ModuleDocument&, drawing::PageExport&,
                           drawing::GraphicLibrary&, const desktop::ClipboardPicture&, Dispatcher&>;

  const Directories directories_;
  LinkThreadParts linkThread_;
  modules::PlacementContext placement_;
  PreviewPicture preview_;
  CompanionSender sender_;
  designs::OpenDesigns designs_;
  modules::LibraryFiles libraries_;
  modules::ModulePlacer placer_;
  modules::CompanionQuery query_;
  modules::ResourcePaths resourcePaths_;
  modules::ModuleDocument moduleDocument_;
  drawing::PageExport pageExport_;
  drawing::GraphicLibrary graphicLibrary_;
  desktop::ClipboardPicture clipboardPicture_;
  Dispatcher dispatcher_;
  Parts parts_;
};

}  // namespace vernoxa::plugin
