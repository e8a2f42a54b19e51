#include "plugin/session.h"

#include "system/system.h"

namespace vernoxa {

Session::Session(World& world, const Logs& crashLogs, Directories directories)
    : directories_(std::move(directories)),
      logs_(crashLogs, directories_.logDirectory),
      text_(world.codePage, world.messages),
      services_{world, logs_, state_, text_},
      client_(world, logs_),
      packetLock_{world.locks.create()},
      pageExport_(state_.folder, world.files, world.processes, world.clock, text_),
      graphicLibrary_(state_.folder, world.files, world.processes, text_),
      parts_(services_, text_, packetLock_, directories_, pageExport_, graphicLibrary_, moduleDocument_) {
  state_.folder.set(directories_.baseDirectory);
  state_.installDirectory = directories_.baseDirectory;
  state_.logDirectory = directories_.logDirectory;
}

}  // namespace vernoxa
