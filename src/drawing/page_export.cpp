#include "drawing/page_export.h"

#include <chrono>
#include <utility>

#include "system/clock.h"
#include "system/files.h"
#include "system/shared_path.h"
#include "system/whole_file.h"
#include "text/code_page.h"
#include "text/file_name_escaping.h"

namespace vernoxa {
namespace {

// Windows finishes the removal of a folder only after its last watcher let it go.
constexpr std::chrono::milliseconds removalTime{200};

// How many objects and arrays are open around the page's group and the definitions, and around one of these.
constexpr std::size_t groupDepth = 2;
constexpr std::size_t symbolDepth = 4;

std::string pageFileName(const PageNames& names, const TextConverter& text) {
  return plainFileName(escapedFileName(text.trueName(names.schematic) + "@!@" + text.trueName(names.page) + "@!@" +
                                       text.trueName(names.key) + ".json"));
}

void removeTree(Files& files, const FilePath& folder, std::uint32_t attributes) {
  if (!files.isLink(folder, attributes)) {
    for (const FolderEntry& entry : files.entries(folder)) {
      const FilePath path = folder / entry.name;
      if ((entry.attributes & directoryAttribute) != 0) {
        removeTree(files, path, entry.attributes);
      } else {
        files.removeFile(path);
      }
    }
  }
  files.removeFolder(folder);
}

std::vector<Group> drawnPinShapes() {
  std::vector<Group> groups;
  for (const PinShape& shape : pinShapes()) {
    drawPinShape(shape, groups.emplace_back(Group{std::string(shape.name()), {}}).elements);
  }
  return groups;
}

// The shapes of pins stand before the symbols, whose pins refer to them.
void writeDefinitions(JsonFile& file, const std::vector<Group>& symbols) {
  static const std::vector<Group> pins = drawnPinShapes();
  file.put(R"({
	"name":	"defs",
	"children":	[)",
           groupDepth);
  for (const Group& pin : pins) {
    pin.writeTo(file, symbolDepth);
    file.put(elementSeparator);
  }
  for (const Group& symbol : symbols) {
    file.put(&symbol == &symbols.front() ? "" : elementSeparator);
    symbol.writeTo(file, symbolDepth);
  }
  file.put("]\n}, ", groupDepth);
}

}  // namespace

void PageExport::start() {
  const FilePath folder = project_.get() / "Cache" / "Output";
  if (const std::uint32_t attributes = files_.attributes(folder); attributes != noAttributes) {
    removeTree(files_, folder, attributes);
    clock_.sleep(removalTime);
  }
  files_.createFolder(folder);
  document_.emplace();
  oldHost.reset();
}

void PageExport::addPageRecord(const Record& record) {
  if (record.kind() == "Schematic") {
    schematicName_ = record.given(1);
  } else if (record.kind() == "Page") {
    if (document_ && document_->page) {
      write(PageNames(openPage_));
    }
    document_.reset();  // written; should memory run out now, what follows must not be drawn on it
    PageNames names{schematicName_, std::string(record.given(1)), std::string(record.given(4))};
    PageDocument::Page page{std::string(record[2]), std::string(record[3]), {std::string(record[1]), {}}};
    document_.emplace().page = std::move(page);
    openPage_ = std::move(names);
  } else if (Elements* const elements = openElements(Use::page)) {
    elements->add(Use::page, record);
  }
}

void PageExport::addSymbolRecord(const Record& record) {
  if (!document_ || !document_->page) {
    return;
  }
  if (record.kind() == "Name") {
    document_->symbolOpen = false;  // should memory run out, what follows must not be drawn into another symbol
    document_->symbols.push_back({std::string(record[1]), {}});
    document_->symbolOpen = true;
  } else if (Elements* const elements = openElements(Use::symbol)) {
    elements->add(Use::symbol, record);
  }
}

bool PageExport::addPlainRecord(Use use, const Record& record) {
  Elements* const elements = openElements(use);
  return elements != nullptr && elements->addPlain(use, record);
}

void PageExport::finish(const PageNames& names) {
  if (document_) {
    write(names);
    document_.reset();
  }
}

void PageExport::write(const PageNames& names) {
  // Converting a name may show a message box, in whose event loop the host may end or renew the export.
  const std::string name = pageFileName(names, text_);
  if (!document_) {
    return;
  }
  const FilePath cache = project_.get() / "Cache";
  const FilePath folder = cache / "Output";
  files_.createFolder(cache);
  files_.createFolder(folder);
  writeWholeFile(files_, processes_, folder / name, WhenHeld::writeInPlace,
                 [this](OutputFile& file) { return document_->writeTo(file); });
}

Elements* PageDocument::openElements(Use use) {
  if (!page) {
    return nullptr;
  }
  if (use == Use::page) {
    return &page->group.elements;
  }
  return symbolOpen ? &symbols.back().elements : nullptr;
}

bool PageDocument::writeTo(OutputFile& output) const {
  JsonFile file(output);
  file.put(R"({
	"id":	"SCH_View",
	"style":	"background:#FFFFFF")",
           0);
  if (page) {
    file.put(R"(,
	"height":	"%",
	"width":	"%",
	"children":	[)",
             0, {page->height, page->width});
    if (!symbols.empty()) {
      writeDefinitions(file, symbols);
    }
    page->group.writeTo(file, groupDepth);
    file.put("]");
  }
  file.put("\n}", 0);
  return file.finish();
}

}  // namespace vernoxa
