// The host scripts' commands around a placement.
#pragma once

#include "tcl/command.h"

namespace vernoxa::inline system {
class UserMessages;
}  // namespace vernoxa::inline system
namespace vernoxa::inline text {
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::modules {

class LibraryFiles;
class ModulePlacer;
struct PlacementContext;

// Places what the companion named. Answers nothing.
CommandResult placeMarketPart(CommandCall& call, ModulePlacer& placer);

// Gives the placed part the properties that the companion named.
CommandResult placePartProperty(CommandCall& call, const PlacementContext& placement, const TextConverter& converter);

// The temporary and the new library of the latest placement; UTF-8, "/" between folders.
CommandResult getOlbPath(CommandCall& call, const LibraryFiles& libraries);
CommandResult getNewOlbPath(CommandCall& call, const LibraryFiles& libraries);

// Shows the text of an error code, or the code itself if it has none; without an argument shows nothing. The code
// "MoreThanPage" also removes the new library of the placement that failed.
CommandResult outputError(CommandCall& call, UserMessages& messages, const TextConverter& converter,
                          LibraryFiles& libraries);

}  // namespace vernoxa::modules
