// The host scripts' commands that export a shared module.
#pragma once

#include "tcl/command.h"

namespace vernoxa::inline system {
class Files;
class Logs;
class Processes;
class ProjectFolder;
}  // namespace vernoxa::inline system
namespace vernoxa::inline text {
class MessagePaths;
}  // namespace vernoxa::inline text

namespace vernoxa::modules {

class ModuleDocument;
struct PlacementContext;

// Starts a document and creates the folder "\Cache\Share" below the project's folder.
CommandResult initMarketFile(CommandCall& call, const ProjectFolder& project, Files& files, ModuleDocument& document);

// One record each, a Tcl list.
CommandResult addMarketLibList(CommandCall& call, ModuleDocument& document);
CommandResult addMarketPartList(CommandCall& call, ModuleDocument& document);

// Takes name, width, height and one unused argument; writes the document as "\Cache\Share\ModuleLib.json" and answers
// that path in UTF-8, even if nothing could be written.
CommandResult outputMarketFile(CommandCall& call, const ProjectFolder& project, Files& files, Processes& processes,
                               const MessagePaths& paths, PlacementContext& placement, ModuleDocument& document,
                               const Logs& logs);

}  // namespace vernoxa::modules
