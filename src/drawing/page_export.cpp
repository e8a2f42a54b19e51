#include "drawing/page_export.h"

#include <chrono>
#include <utility>

#include "system/whole_file.h"
#include "text/file_name_escaping.h"
#include "text/json.h"

namespace vernoxa::drawing {
namespace {

// Windows finishes the removal of a folder only after its last watcher let it go.
constexpr std::chrono::milliseconds removalTime{200};

std::string pageFileName(const PageNames& names, const TextConverter& converter) {
  return plainFileName(escapedFileName(converter.trueName(names.schematic) + "@!@" + converter.trueName(names.page) +
                                       "@!@" + converter.trueName(names.key) + ".json"));
}

// In red: dot, line, wedge.
Elements drawnPinShapes() {
  Elements pins(Use::pin, Elements::In::groups, 4);
  for (const PinShape& shape : pinShapes) {
    pins.add({"Name", shape.name()}, Encoding::utf8);
    if (shape.dot) {
      pins.add({"dot"}, Encoding::utf8);
    }
    pins.add({"line", shape.lineStart, shape.lineEnd}, Encoding::utf8);
    if (shape.clock) {
      pins.add({"wedge down"}, Encoding::utf8);
      pins.add({"wedge up"}, Encoding::utf8);
    }
  }
  return pins;
}

}  // namespace

void PageExport::start() {
  document_.reset();
  const FilePath folder = project_.get() / "Cache" / "Output";
  if (const std::uint32_t attributes = files_.attributes(folder); attributes != noAttributes) {
    files_.removeTree(folder, attributes);
    clock_.sleep(removalTime);
  }
  files_.createFolder(folder);
  document_.emplace();
  ++begun_;
  isFromOldHost_.reset();
}

bool PageExport::draw(Use use, const Record& record, Encoding encoding) {
  if (!document_ || document_->ended || !document_->page.isOpen()) {
    return false;
  }
  return (use == Use::page ? document_->page : document_->symbols).add(record, encoding);
}

void PageExport::addRecord(Use use, const Record& record, const Record& given) {
  if (draw(use, record, Encoding::utf8) || use != Use::page) {
    return;
  }
  if (record.kind() == "Schematic") {
    schematicName_ = given[1];
  } else if (record.kind() == "Page") {
    if (document_ && document_->page.isOpen()) {
      endPage();
    }
    document_.reset();  // written; should memory run out now, what follows must not be drawn on it
    PageNames names{schematicName_, std::string(given[1]), std::string(given[4])};
    PageDocument next;
    next.height = record[2];
    next.width = record[3];
    next.page.add(record, Encoding::utf8);
    document_ = std::move(next);
    ++begun_;
    openPage_ = std::move(names);
  }
}

void PageExport::endPage() {
  try {
    write(PageNames(openPage_));
  } catch (...) {
    // Never false: it takes a box in which the host ends the page, and memory that runs out right after it.
    if (document_) {
      document_->ended = true;
    }
    throw;
  }
}

void PageExport::finish(const PageNames& names) {
  if (document_ && write(document_->ended ? PageNames(openPage_) : names)) {
    document_.reset();
  }
}

bool PageExport::isFromOldHost(ScriptHost& host) {
  if (!isFromOldHost_) {
    isFromOldHost_ = host.isOldHost();  // meanwhile it may begin another export
  }
  return *isFromOldHost_;
}

bool PageExport::write(const PageNames& names) {
  // Converting a name may show a message box, in whose event loop the host may end or renew the export.
  const std::uint64_t begun = begun_;
  const std::string name = pageFileName(names, converter_);
  if (!document_ || begun_ != begun) {
    return false;
  }
  const FilePath cache = project_.get() / "Cache";
  const FilePath folder = cache / "Output";
  files_.createFolder(cache);
  files_.createFolder(folder);
  writeWholeFile(
      files_, processes_, folder / name, WhenHeld::writeInPlace,
      [this](OutputFile& file) { return document_->writeTo(file); }, logs_);
  return true;
}

bool PageDocument::writeTo(OutputFile& output) const {
  BufferedFile file(output);
  file.put("{\r\n\t\"id\":\t\"SCH_View\",\r\n\t\"style\":\t\"background:#FFFFFF\"");
  if (page.isOpen()) {
    file.put(",\r\n\t\"height\":\t" + Json::string(height).printUnformatted());
    file.put(",\r\n\t\"width\":\t" + Json::string(width).printUnformatted() + ",\r\n\t\"children\":\t[");
    if (!symbols.isEmpty()) {
      // The shapes of pins stand before the symbols, whose pins refer to them.
      static const Elements pins = drawnPinShapes();
      file.put("{\r\n\t\t\t\"name\":\t\"defs\",\r\n\t\t\t\"children\":\t[");
      pins.writeTo(file);
      file.put(elementSeparator);
      symbols.writeTo(file);
      file.put("]\r\n\t\t}, ");
    }
    page.writeTo(file);
    file.put("]");
  }
  file.put("\r\n}");
  return file.finish();
}

}  // namespace vernoxa::drawing
