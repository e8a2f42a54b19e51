#include "sharing/module_commands.h"

#include "core/code_page.h"
#include "core/files.h"
#include "core/services.h"
#include "core/state.h"
#include "core/text.h"
#include "core/world.h"
#include "sharing/module_document.h"

namespace vernoxa {
namespace {

// In the code page. A folder may have been told in UTF-8; two bytes of the code page that happen to be UTF-8 too are
// none, which a three-byte sequence tells apart.
std::string cacheFolder(const Services& services) {
  const std::string base = services.state.link.baseDirectory();
  return (isUtf8WithThreeByteSequence(base) ? services.text.utf8ToAnsi(base) : base) + "\\Cache";
}

void makeFolder(Services& services, const std::string& path) {
  if (!services.world.files.exists(path)) {
    services.world.files.createFolder(path);
  }
}

}  // namespace

CommandResult initMarketFile(CommandCall&, Services& services, ModuleDocument& document) {
  makeFolder(services, cacheFolder(services) + "\\Share");
  document.start();
  return {};
}

CommandResult addMarketLibList(CommandCall& call, ModuleDocument& document) {
  const TclList record = call.arguments.list(1);
  document.addLibraryRecord([&record](int index) { return record.text(index); });
  return {};
}

CommandResult addMarketPartList(CommandCall& call, ModuleDocument& document) {
  const TclList record = call.arguments.list(1);
  document.addSchematicRecord([&record](int index) { return record.text(index); });
  return {};
}

CommandResult outputMarketFile(CommandCall& call, Services& services, ModuleDocument& document) {
  const std::string folder = cacheFolder(services) + "\\Share";
  const std::string path = folder + "\\ModuleLib.json";
  if (document.started()) {
    const std::string text = document.finish(call.arguments.text(2), call.arguments.text(3));
    makeFolder(services, cacheFolder(services));
    makeFolder(services, folder);
    if (const auto file = services.world.files.create(path)) {
      file->write(withDosLineEnds(text));
    }
  }
  services.state.placement.dsnDatPath = path;
  return {services.text.scriptValue(path)};
}

}  // namespace vernoxa
