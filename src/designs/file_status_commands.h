// The host scripts' commands for opened, saved and closed designs.
#pragma once

#include "tcl/command.h"

namespace vernoxa {

class CompanionLink;
class CompanionSender;
class FileStatus;
class Logs;
class OpenDesigns;

// Each takes the design's path as the host gives it and answers the packet text of its message, which the script then
// sends; an empty path gives an empty answer and no message.
// ReadOpenPath asks the host for the pin count when the first three characters of the extension are "dsn" or "DSN".
CommandResult readOpenPath(CommandCall& call, const FileStatus& status, const CompanionSender& sender,
                           const Logs& logs);
CommandResult sendSaveFile(CommandCall& call, const FileStatus& status, const CompanionSender& sender,
                           const Logs& logs);
CommandResult sendCloseFile(CommandCall& call, const FileStatus& status, const CompanionSender& sender,
                            const Logs& logs);

// The number of open designs as decimal text.
CommandResult getOpenFileCount(CommandCall& call, const OpenDesigns& designs);

// The host's connection to the companion broke: the link thread makes a new one.
CommandResult serverLinkBreak(CommandCall& call, CompanionLink& link);

}  // namespace vernoxa
