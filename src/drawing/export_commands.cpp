#include "drawing/export_commands.h"

#include "drawing/graphic_library.h"
#include "drawing/page_export.h"
#include "drawing/record.h"
#include "tcl/script_host.h"
#include "text/text.h"

namespace vernoxa {
namespace {

// Old hosts give the lines of a text in the code page, all others in UTF-8 that must fit into it. The host is asked at
// most once in an export.
bool isOldHost(CommandCall& call, PageExport& pages) {
  if (!pages.oldHost) {
    const bool oldHost = call.host.isOldHost();
    pages.oldHost = oldHost;
  }
  return *pages.oldHost;
}

template <class Add>
void withShownRecord(CommandCall& call, const TextConverter& text, PageExport& pages, Use use, Add add) {
  if (pages.addPlainRecord(use, Record(call.arguments.passingList(1)))) {
    return;
  }
  const TclList list = call.arguments.list(1);
  Record record(list);
  bool convertLines = false;
  if (record.kind() == textKind && looksLikeUtf8Chinese(record[textLines])) {
    convertLines = !isOldHost(call, pages);
    record.take(list);  // no view is kept while the host's script runs
  }
  record.showInCodePage(text, convertLines);
  add(record);
}

}  // namespace

CommandResult initSVGList(CommandCall&, PageExport& pages) {
  pages.start();
  return {};
}

CommandResult addToPageList(CommandCall& call, const TextConverter& text, PageExport& pages) {
  withShownRecord(call, text, pages, Use::page, [&](const Record& record) { pages.addPageRecord(record); });
  return {};
}

CommandResult addToLibList(CommandCall& call, const TextConverter& text, PageExport& pages) {
  withShownRecord(call, text, pages, Use::symbol, [&](const Record& record) { pages.addSymbolRecord(record); });
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
  Record record(call.arguments.passingList(1));
  if (!library.addPlainRecord(record)) {
    record.takeAsUtf8();
    library.addRecord(record);
  }
  return {};
}

CommandResult outputGraphicFile(CommandCall& call, GraphicLibrary& library) {
  return {library.finish(call.arguments.text(1))};
}

CommandResult checkCharIllegal(CommandCall& call) {
  return {hasNonAscii(call.arguments.text(1)) ? "1" : "0"};
}

}  // namespace vernoxa
