// The host scripts' commands for opened, saved and closed designs.
#pragma once

#include "tcl/command.h"

namespace vernoxa::inline dispatch {
class CompanionSender;
}  // namespace vernoxa::inline dispatch
namespace vernoxa::link {
class CompanionLink;
class FileStatus;
}  // namespace vernoxa::link
namespace vernoxa::inline system {
class Logs;
}  // namespace vernoxa::inline system

namespace vernoxa::designs {

class OpenDesigns;

// Each takes the design's path as the host gives it and answers the packet text of its message, which the script then
// sends; an empty path gives an empty answer and no message.
// ReadOpenPath asks the host for the pin count when the first three characters of the extension are "dsn" or "DSN".
CommandResult readOpenPath(CommandCall& call, const link::FileStatus& status, const CompanionSender& sender,
                           const Logs& logs);
CommandResult sendSaveFile(CommandCall& call, const link::FileStatus& status, const CompanionSender& sender,
                           const Logs& logs);
CommandResult sendCloseFile(CommandCall& call, const link::FileStatus& status, const CompanionSender& sender,
                            const Logs& logs);

// The number of open designs as decimal text.
CommandResult getOpenFileCount(CommandCall& call, const OpenDesigns& designs);

// Notes that the host's connection to the companion broke: the link thread makes a new one.
CommandResult serverLinkBreak(CommandCall& call, link::CompanionLink& link);

}  // namespace vernoxa::designs
