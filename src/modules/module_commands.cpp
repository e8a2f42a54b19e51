#include "modules/module_commands.h"

#include <forward_list>

#include "dispatch/services.h"
#include "dispatch/state.h"
#include "modules/module_document.h"
#include "system/files.h"
#include "system/whole_file.h"
#include "system/world.h"
#include "text/path_text.h"
#include "text/text.h"

namespace vernoxa {
namespace {

FilePath cacheFolder(const Services& services) {
  return services.state.folder.get() / "Cache";
}

void makeFolder(Services& services, const FilePath& path) {
  if (!services.world.files.exists(path)) {
    services.world.files.createFolder(path);
  }
}

std::string utf8(std::string_view tclText) {
  return utf8OfTcl(tclText).value_or(std::string(tclText));
}

// The elements of a record in plain UTF-8; one in the code page stays as it is.
class RecordTexts {
 public:
  explicit RecordTexts(CommandCall& call) : list_(call.arguments.list(1)) {}

  std::string_view operator()(int index) {
    const std::string_view text = list_.text(index);
    return text.empty() || !hasNonAscii(text) ? text : kept_.emplace_front(utf8(text));
  }

 private:
  const TclList list_;
  std::forward_list<std::string> kept_;
};

}  // namespace

CommandResult initMarketFile(CommandCall&, Services& services, ModuleDocument& document) {
  makeFolder(services, cacheFolder(services) / "Share");
  document.start();
  return {};
}

CommandResult addMarketLibList(CommandCall& call, ModuleDocument& document) {
  RecordTexts texts(call);
  document.addLibraryRecord([&texts](int index) { return texts(index); });
  return {};
}

CommandResult addMarketPartList(CommandCall& call, ModuleDocument& document) {
  RecordTexts texts(call);
  document.addSchematicRecord([&texts](int index) { return texts(index); });
  return {};
}

CommandResult outputMarketFile(CommandCall& call, Services& services, ModuleDocument& document) {
  const FilePath folder = cacheFolder(services) / "Share";
  const FilePath path = folder / "ModuleLib.json";
  if (document.started()) {
    const std::string text = document.finish(utf8(call.arguments.text(2)), utf8(call.arguments.text(3)));
    makeFolder(services, cacheFolder(services));
    makeFolder(services, folder);
    const std::string content = withDosLineEnds(text);
    writeWholeFile(services.world.files, services.world.processes, path, WhenHeld::writeInPlace,
                   [&](OutputFile& file) { return file.write(content); });
  }
  services.state.placement.dsnDatPath = pathText(services, path);
  return {path.utf8()};
}

}  // namespace vernoxa
