#include "drawing/page_export.h"

#include <utility>

#include "drawing/cache_folders.h"
#include "drawing/page_elements.h"
#include "drawing/symbol_elements.h"
#include "system/files.h"
#include "system/shared_path.h"
#include "system/whole_file.h"
#include "text/code_page.h"
#include "text/file_name_escaping.h"

namespace vernoxa {
namespace {

std::string pageFileName(const PageNames& names, const TextConverter& text) {
  return plainFileName(escapedFileName(text.trueName(names.schematic) + "@!@" + text.trueName(names.page) + "@!@" +
                                       text.trueName(names.key) + ".json"));
}

}  // namespace

void PageExport::start() {
  renewOutputFolder(files_, clock_, project_.get());
  document_.emplace();
  oldHost.reset();
}

void PageExport::addPageRecord(const Record& record) {
  if (record.kind() == "Schematic") {
    schematicName_ = record.given(1);
  } else if (record.kind() == "Page") {
    if (document_ && document_->hasPage()) {
      write(PageNames(openPage_));
    }
    document_.reset();  // written; should memory run out now, what follows must not be drawn on it
    PageNames names{schematicName_, std::string(record.given(1)), std::string(record.given(4))};
    document_.emplace(PageStart{record[1], record[2], record[3]});
    openPage_ = std::move(names);
  } else if (ElementSink* const page = document_ ? document_->page() : nullptr) {
    drawPageRecord(record, *page);
  }
}

void PageExport::addSymbolRecord(const Record& record) {
  if (!document_ || !document_->hasPage()) {
    return;
  }
  if (record.kind() == "Name") {
    document_->startSymbol(record[1]);
  } else if (ElementSink* const symbol = document_->symbol()) {
    drawSymbolRecord(record, *symbol);
  }
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
  const FilePath folder = makeOutputFolder(files_, project_.get());
  writeWholeFile(files_, processes_, folder / name, WhenHeld::writeInPlace,
                 [this](OutputFile& file) { return document_->writeTo(file); });
}

}  // namespace vernoxa
