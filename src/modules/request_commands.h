// The host scripts' commands that talk to the companion about shared modules.
#pragma once

#include <map>
#include <string>

#include "tcl/command.h"

namespace vernoxa::inline dispatch {
class CompanionSender;
}  // namespace vernoxa::inline dispatch
namespace vernoxa::inline system {
class Files;
class Logs;
}  // namespace vernoxa::inline system
namespace vernoxa::inline text {
class TextConverter;
struct PreviewPicture;
}  // namespace vernoxa::inline text

namespace vernoxa::modules {

class CompanionQuery;
class LibraryFiles;
struct PlacementContext;

// Where the companion keeps the modules that were asked for: resource id to module file, code page.
struct ResourcePaths {
  std::map<std::string, std::string> known;
};

// Hands the exported module over to the companion, forgets the picture and the module file, and answers what the host's
// `sendPacketGlobalHandle` answered.
CommandResult sendUploadMarket(CommandCall& call, PlacementContext& placement, PreviewPicture& preview,
                               const TextConverter& converter, const CompanionSender& sender);

// The path of the module file for a resource id: code page, backslashes doubled; remembered as long as the file exists.
// Empty if there is no such file; the companion's number if it refuses; its whole reply if that names no path.
CommandResult getResPath(CommandCall& call, ResourcePaths& paths, const CompanionQuery& query, Files& files,
                         const TextConverter& converter, const Logs& logs);

// The signed-in user's id. It shares a field with a part's index: after a placement it is what that left there.
CommandResult getSelfUserId(CommandCall& call, PlacementContext& placement, const CompanionQuery& query);

// Removes the libraries of the last placement and the module file.
CommandResult removeDatFile(CommandCall& call, const PlacementContext& placement, LibraryFiles& libraries,
                            const TextConverter& converter);

}  // namespace vernoxa::modules
