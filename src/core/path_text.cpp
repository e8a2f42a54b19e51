#include "core/path_text.h"

#include "core/code_page.h"
#include "core/files.h"
#include "core/log.h"
#include "core/services.h"
#include "core/text.h"
#include "core/world.h"

namespace vernoxa {

std::string pathText(const Services& services, const FilePath& path) {
  if (const auto name = services.text.nameInCodePage(path)) {
    return *name;
  }
  const FilePath shortPath = services.world.files.shortPath(path);
  if (const auto name = services.text.nameInCodePage(shortPath); name && !name->empty()) {
    return *name;
  }
  if (isUtf8WithThreeByteSequence(path.utf8())) {
    return path.utf8();
  }
  services.logs.openTraffic().writeLine("no name in the code page: " + services.text.utf8ToAnsi(path.utf8()));
  return {};
}

}  // namespace vernoxa
