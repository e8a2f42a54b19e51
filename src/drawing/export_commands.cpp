#include "drawing/export_commands.h"

#include "text/text.h"

namespace vernoxa::drawing {
namespace {

// Nearly all records are plain and may be read in passing. Whatever may show a message box needs a list of its own: a
// conversion, and the end of a page.
CommandResult addShown(CommandCall& call, const TextConverter& converter, PageExport& pages, Use use) {
  if (pages.draw(use, Record(call.arguments.passingList(1)), Encoding::asGiven)) {
    return {};
  }
  const TclList list = call.arguments.list(1);
  // Old hosts give the lines of a text in the code page, all others in UTF-8 that must fit into it.
  const bool convertLines =
      list.text(0) == textKind && looksLikeUtf8Chinese(list.text(textLines)) && !pages.isFromOldHost(call.host);
  Record record(list);
  record.showInCodePage(converter, convertLines);
  pages.addRecord(use, record, Record(list));
  return {};
}

}  // namespace

CommandResult initSVGList(CommandCall&, PageExport& pages) {
  pages.start();
  return {};
}

CommandResult addToPageList(CommandCall& call, const TextConverter& converter, PageExport& pages) {
  return addShown(call, converter, pages, Use::page);
}

CommandResult addToLibList(CommandCall& call, const TextConverter& converter, PageExport& pages) {
  return addShown(call, converter, pages, Use::symbol);
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
  if (!library.draw(record, Encoding::asGiven)) {
    record.takeAsUtf8();
    library.draw(record, Encoding::utf8);
  }
  return {};
}

CommandResult outputGraphicFile(CommandCall& call, GraphicLibrary& library) {
  return {library.finish(call.arguments.text(1))};
}

CommandResult checkCharIllegal(CommandCall& call) {
  return {hasNonAscii(call.arguments.text(1)) ? "1" : "0"};
}

}  // namespace vernoxa::drawing
