// The process's one plug-in: what it found at its first load, and the session of its latest.
#pragma once

#include <memory>

#include "plugin/session.h"
#include "plugin/world.h"
#include "system/file_path.h"
#include "system/log.h"

namespace vernoxa::plugin {

struct PlugIn {
  World world;
  FilePath modulePath;
  Logs crashLogs;
  std::shared_ptr<Session> session;  // null until the first start-up has made it
  // Starts the link thread of a session. The pointer keeps the whole session alive.
  void (*startLinkThread)(std::shared_ptr<LinkThreadParts> thread);
};

// The plug-in whose commands are registered; host thread only. Null before the first load.
PlugIn* activePlugIn();
void setActivePlugIn(PlugIn* plugIn);

}  // namespace vernoxa::plugin
