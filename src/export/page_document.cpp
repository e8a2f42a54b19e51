#include "export/page_document.h"

#include "core/files.h"
#include "export/json_text.h"
#include "export/pin_shapes.h"

namespace vernoxa {
namespace {

// How many objects and arrays are open where each list of elements stands.
constexpr std::size_t rootElements = 2;    // the root and its "children"
constexpr std::size_t groupElements = 4;   // and the page's group, or the definitions, with their "children"
constexpr std::size_t symbolElements = 6;  // and a symbol with its "children"

constexpr std::string_view pinColour = "#FF0000";

// A group up to its first child.
void openGroup(JsonText& text, std::string_view id) {
  text.openObject();
  text.member("name", "g");
  text.name("attr");
  text.openObject();
  text.member("id", id);
  text.closeObject();
  text.name("children");
  text.openArray();
}

// Ends the list of elements at that depth and the object that it belongs to.
std::string endOf(std::size_t depth) {
  std::string end;
  JsonText text(end, depth);
  text.closeArray();
  text.closeObject();
  return end;
}

std::string endOfBareRoot() {
  std::string end;
  JsonText(end, 1).closeObject();
  return end;
}

void writeRoot(JsonText& text) {
  text.openObject();
  text.member("id", "SCH_View");
  text.member("style", "background:#FFFFFF");
}

}  // namespace

void ElementList::add(const Element& element) {
  element_ = first_ ? "" : elementSeparator;
  JsonText(element_, depth_).element(element);
  text_.append(element_);
  first_ = false;
}

PageDocument::PageDocument() : symbolElements_(definitions_, symbolElements), pageElements_(group_, groupElements) {
  JsonText text(root_, 0);
  writeRoot(text);
}

PageDocument::PageDocument(std::string_view pageName, std::string_view height, std::string_view width)
    : symbolElements_(definitions_, symbolElements), pageElements_(group_, groupElements) {
  JsonText text(root_, 0);
  writeRoot(text);
  text.member("height", height);
  text.member("width", width);
  text.name("children");
  text.openArray();
  std::string start;
  JsonText group(start, rootElements);
  openGroup(group, pageName);
  group_.append(start);
}

void PageDocument::startSymbol(std::string_view symbolName) {
  if (definitions_.empty()) {
    startDefinitions();
  }
  openSymbol(symbolName);
}

void PageDocument::startDefinitions() {
  std::string start;
  JsonText text(start, rootElements);
  text.openObject();
  text.member("name", "defs");
  text.name("children");
  text.openArray();
  definitions_.append(start);
  for (const PinShape& shape : pinShapes()) {
    openSymbol(shape.name);
    drawPinShape(shape, pinColour, symbolElements_);
  }
}

void PageDocument::openSymbol(std::string_view symbolName) {
  std::string start;
  if (symbolOpen_) {
    start.append(endOf(symbolElements)).append(elementSeparator);
  }
  JsonText text(start, groupElements);
  openGroup(text, symbolName);
  definitions_.append(start);
  symbolOpen_ = true;
  symbolElements_.startArray();
}

bool PageDocument::writeTo(OutputFile& file) const {
  if (!hasPage()) {
    return file.write(root_ + endOfBareRoot());
  }
  if (!file.write(root_)) {
    return false;
  }
  if (symbolOpen_) {
    const std::string end = endOf(symbolElements).append(endOf(groupElements)).append(elementSeparator);
    if (!definitions_.writeTo(file) || !file.write(end)) {
      return false;
    }
  }
  return group_.writeTo(file) && file.write(endOf(groupElements) + endOf(rootElements));
}

}  // namespace vernoxa
