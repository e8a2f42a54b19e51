#include "drawing/page_document.h"

#include "drawing/json_text.h"
#include "drawing/page_writer.h"
#include "drawing/pin_shapes.h"
#include "system/files.h"

namespace vernoxa {
namespace {

// How many objects and arrays are open around the page's group and the definitions.
constexpr std::size_t groupDepth = 2;

void openList(JsonText& json) {
  json.name("children");
  json.openArray();
}

void closeList(JsonText& json) {
  json.closeArray();
  json.closeObject();
}

}  // namespace

PageDocument::PageDocument(const PageStart& start) {
  Page& page = page_.emplace();
  page.height = start.height;
  page.width = start.width;
  page.group.id = start.name;
}

void PageDocument::startSymbol(std::string_view symbolName) {
  symbolOpen_ = false;
  if (!symbols_.empty()) {
    symbols_.push_back({std::string(symbolName), {}});
  } else {
    std::deque<Group> first;
    for (const PinShape& shape : pinShapes()) {
      drawPinShape(shape, first.emplace_back(Group{std::string(shape.name()), {}}).elements);
    }
    first.push_back({std::string(symbolName), {}});
    symbols_.swap(first);
  }
  symbolOpen_ = true;
}

bool PageDocument::writeTo(OutputFile& file) const {
  PageWriter writer(file);
  JsonText root(writer.text(), 0);
  root.openObject();
  root.member("id", "SCH_View");
  root.member("style", "background:#FFFFFF");
  if (page_) {
    root.member("height", page_->height);
    root.member("width", page_->width);
    openList(root);
    if (!symbols_.empty()) {
      writeDefinitions(writer);
      writer.text().append(elementSeparator);
    }
    writeGroup(page_->group, groupDepth, writer);
    root.closeArray();
  }
  root.closeObject();
  return writer.finish();
}

void PageDocument::writeGroup(const Group& group, std::size_t depth, PageWriter& writer) {
  JsonText json(writer.text(), depth);
  json.openObject();
  json.member("name", "g");
  json.name("attr");
  json.openObject();
  json.member("id", group.id);
  json.closeObject();
  openList(json);
  group.elements.writeTo(writer);
  closeList(json);
}

void PageDocument::writeDefinitions(PageWriter& writer) const {
  JsonText json(writer.text(), groupDepth);
  json.openObject();
  json.member("name", "defs");
  openList(json);
  for (const Group& symbol : symbols_) {
    writer.text().append(&symbol == &symbols_.front() ? "" : elementSeparator);
    writeGroup(symbol, symbolElementDepth - 2, writer);
  }
  closeList(json);
}

}  // namespace vernoxa
