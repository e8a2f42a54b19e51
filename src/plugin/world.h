// All that the plug-in needs from the operating system: the real thing in the DLL, stand-ins in tests.
#pragma once

#include <utility>

#include "system/log.h"

namespace vernoxa::inline system {
class Clipboard;
class Clock;
class CodePage;
class Desktop;
class Files;
class GuidSource;
class LockSource;
class Pictures;
class Processes;
class RandomNumbers;
class Registry;
class Sockets;
class StandardOutput;
class UserMessages;
}  // namespace vernoxa::inline system

namespace vernoxa::plugin {

struct World {
  Clock& clock;
  CodePage& codePage;
  Files& files;
  GuidSource& guids;
  LockSource& locks;
  Processes& processes;
  RandomNumbers& random;
  Sockets& sockets;
  StandardOutput& output;
  UserMessages& messages;
  Registry& registry;
  Clipboard& clipboard;
  Pictures& pictures;
  Desktop& desktop;
};

// Logs for the time before the installation is known: only crashes, below the plug-in's own folder.
inline Logs crashLogsOf(const World& world, FilePath pluginFolder) {
  return {world.clock, world.codePage, world.files, std::move(pluginFolder)};
}

// The operating system that the DLL runs on; defined in the Windows ring. Refers to objects that live until the process
// ends.
World realWorld();

}  // namespace vernoxa::plugin
