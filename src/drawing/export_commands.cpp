#include "drawing/export_commands.h"

#include <algorithm>

#include "drawing/graphic_library.h"
#include "drawing/page_export.h"
#include "drawing/record.h"
#include "tcl/script_host.h"
#include "text/text.h"

namespace vernoxa {
namespace {

void readRecord(const TclList& list, Record& record) {
  const std::size_t count = std::min(static_cast<std::size_t>(list.size()), Record::size);
  for (std::size_t index = 0; index < count; ++index) {
    record.set(index, list.text(static_cast<int>(index)));
  }
}

// Old hosts give the lines of a text in the code page, all others in UTF-8 that must fit into it. To be called before
// the record is read: what the host does while it is asked may move the list's memory.
bool convertsLines(CommandCall& call, PageExport& pages) {
  {
    const TclList list = call.arguments.list(1);
    if (list.text(0) != textKind || !looksLikeUtf8Chinese(list.text(static_cast<int>(textLines)))) {
      return false;
    }
  }
  if (!pages.oldHost) {
    const bool oldHost = call.host.isOldHost();
    pages.oldHost = oldHost;
  }
  return !*pages.oldHost;
}

template <class Use>
void withShownRecord(CommandCall& call, const TextConverter& text, PageExport& pages, Use use) {
  const bool convertLines = convertsLines(call, pages);
  const TclList list = call.arguments.list(1);
  Record record;
  readRecord(list, record);
  record.showInCodePage(text, convertLines);
  use(record);
}

}  // namespace

CommandResult initSVGList(CommandCall&, PageExport& pages) {
  pages.start();
  return {};
}

CommandResult addToPageList(CommandCall& call, const TextConverter& text, PageExport& pages) {
  withShownRecord(call, text, pages, [&](const Record& record) { pages.addPageRecord(record); });
  return {};
}

CommandResult addToLibList(CommandCall& call, const TextConverter& text, PageExport& pages) {
  withShownRecord(call, text, pages, [&](const Record& record) { pages.addSymbolRecord(record); });
  return {};
}

CommandResult outputSVGFile(CommandCall& call, PageExport& pages) {
  const TclList names = call.arguments.list(1);
  pages.finish({std::string(names.text(0)), std::string(names.text(1)), std::string(names.text(4))});
  return {};
}

CommandResult initGraphicFile(CommandCall&, GraphicLibrary& library) {
  library.start();
  return {};
}

CommandResult addGraphicLibList(CommandCall& call, GraphicLibrary& library) {
  const TclList list = call.arguments.list(1);
  Record record;
  readRecord(list, record);
  record.takeAsUtf8();
  library.addRecord(record);
  return {};
}

CommandResult outputGraphicFile(CommandCall& call, GraphicLibrary& library) {
  return {library.finish(call.arguments.text(1))};
}

CommandResult checkCharIllegal(CommandCall& call) {
  return {hasNonAscii(call.arguments.text(1)) ? "1" : "0"};
}

}  // namespace vernoxa
