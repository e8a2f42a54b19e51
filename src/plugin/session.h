// Everything that one load of the plug-in creates.
#pragma once

#include <string>
#include <tuple>

#include "dispatch/packet_door.h"
#include "dispatch/services.h"
#include "dispatch/state.h"
#include "drawing/graphic_library.h"
#include "drawing/page_export.h"
#include "link/socket_client.h"
#include "modules/module_document.h"
#include "plugin/installation.h"
#include "system/log.h"
#include "system/world.h"
#include "text/code_page.h"

namespace vernoxa {

// Held by shared ownership: by the process until the next load, by each command while it runs, and by the link thread
// for ever, so that a load inside a command or beside the thread leaves both on valid memory.
class Session {
 public:
  Session(World& world, const Logs& crashLogs, Directories directories);

  Services& services() { return services_; }
  SocketClient& client() { return client_; }
  const Directories& directories() const { return directories_; }

  // The part of that type, as the rows of the command table ask for it.
  template <class Part>
  Part& part() {
    return std::get<Part&>(parts_);
  }

 private:
  Directories directories_;
  GlobalState state_;
  Logs logs_;
  TextConverter text_;
  Services services_;
  SocketClient client_;
  PacketLock packetLock_;
  PageExport pageExport_;
  GraphicLibrary graphicLibrary_;
  ModuleDocument moduleDocument_;
  std::tuple<Services&, const TextConverter&, PacketLock&, const Directories&, PageExport&, GraphicLibrary&,
             ModuleDocument&>
      parts_;
};

}  // namespace vernoxa
