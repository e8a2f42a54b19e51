#include "modules/module_commands.h"

#include "drawing/record.h"
#include "modules/module_document.h"
#include "modules/placement_context.h"
#include "system/files.h"
#include "system/shared_path.h"
#include "system/whole_file.h"
#include "text/message_paths.h"
#include "text/text.h"

namespace vernoxa::modules {
namespace {

FilePath cacheFolder(const ProjectFolder& project) {
  return project.get() / "Cache";
}

void makeFolder(Files& files, const FilePath& path) {
  if (!files.exists(path)) {
    files.createFolder(path);
  }
}

std::string utf8(std::string_view tclText) {
  return utf8OfTcl(tclText).value_or(std::string(tclText));
}

using AddRecord = void (ModuleDocument::*)(const drawing::Record& record);

void addRecord(CommandCall& call, ModuleDocument& document, AddRecord add) {
  drawing::Record record(call.arguments.passingList(1));
  record.takeAsUtf8();
  (document.*add)(record);
}

}  // namespace

CommandResult initMarketFile(CommandCall&, const ProjectFolder& project, Files& files, ModuleDocument& document) {
  makeFolder(files, cacheFolder(project) / "Share");
  document.start();
  return {};
}

CommandResult addMarketLibList(CommandCall& call, ModuleDocument& document) {
  addRecord(call, document, &ModuleDocument::addLibraryRecord);
  return {};
}

CommandResult addMarketPartList(CommandCall& call, ModuleDocument& document) {
  addRecord(call, document, &ModuleDocument::addSchematicRecord);
  return {};
}

CommandResult outputMarketFile(CommandCall& call, const ProjectFolder& project, Files& files, Processes& processes,
                               const MessagePaths& paths, PlacementContext& placement, ModuleDocument& document,
                               const Logs& logs) {
  const FilePath folder = cacheFolder(project) / "Share";
  const FilePath path = folder / "ModuleLib.json";
  if (document.started()) {
    const std::string text = document.finish(utf8(call.arguments.text(2)), utf8(call.arguments.text(3)));
    makeFolder(files, cacheFolder(project));
    makeFolder(files, folder);
    const std::string content = withDosLineEnds(text);
    writeWholeFile(
        files, processes, path, WhenHeld::writeInPlace, [&](OutputFile& file) { return file.write(content); }, logs);
  }
  placement.dsnDatPath = paths.of(path);
  return {path.utf8()};
}

}  // namespace vernoxa::modules
