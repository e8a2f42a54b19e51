#include "plugin/session.h"

#include "system/system.h"

namespace vernoxa::plugin {

SharedParts::SharedParts(World& world, const Logs& crashLogs, const Directories& directories)
    : logs_(crashLogs, directories.logDirectory),
      converter_(world.codePage, world.messages),
      project_(directories.baseDirectory),
      paths_(converter_, world.files, logs_),
      fileStatus_(paths_, converter_, world.files, world.processes, hostExecutable_, project_),
      parts_(world.clock, world.files, world.processes, world.sockets, world.output, logs_, converter_, project_,
             hostExecutable_, paths_, fileStatus_, link_) {}

LinkThreadParts::LinkThreadParts(World& world, const Logs& crashLogs, const Directories& directories)
    : shared_(world, crashLogs, directories),
      client_(world.sockets, world.clock, world.output, shared_.part<const Logs>()) {}

Session::Session(World& world, const Logs& crashLogs, Directories directories)
    : directories_(std::move(directories)),
      linkThread_(world, crashLogs, directories_),
      sender_(part<const Logs>(), world.messages),
      designs_(part<MessagePaths>(), part<const TextConverter>(), part<link::CompanionLink>()),
      libraries_(directories_.baseDirectory, part<HostExecutable>(), placement_, world.files, world.random,
                 part<const TextConverter>(), part<const Logs>()),
      placer_(placement_, libraries_, world.files, part<const TextConverter>(), part<const Logs>()),
      query_(part<link::CompanionLink>(), world.sockets, world.clock, world.output, part<const Logs>()),
      pageExport_(part<ProjectFolder>(), world.files, world.processes, world.clock, part<const TextConverter>(),
                  part<const Logs>()),
      graphicLibrary_(part<ProjectFolder>(), world.files, world.processes, part<const TextConverter>(),
                      part<const Logs>()),
      clipboardPicture_(world.clipboard, world.clock, world.pictures, world.files, world.processes,
                        part<ProjectFolder>(), part<const TextConverter>(), part<const Logs>()),
      dispatcher_(part<const Logs>(), world.messages, world.output, world.locks.create(), *this),
      parts_(world.guids, world.registry, world.messages, world.clipboard, world.desktop, directories_, placement_,
             preview_, sender_, designs_, libraries_, placer_, query_, resourcePaths_, moduleDocument_, pageExport_,
             graphicLibrary_, clipboardPicture_, dispatcher_) {}

}  // namespace vernoxa::plugin
