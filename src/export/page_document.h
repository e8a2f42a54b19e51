// One page of a drawing as JSON text that grows at two places: the symbols that the page uses, and the page itself.
//
// The text is in pieces, in the order of the file: the root's own members, the definitions (when there are symbols),
// the page's group, the end. An element is written once, at the end of its piece; nothing is kept in another form.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "export/block_text.h"
#include "export/element.h"

namespace vernoxa {

class OutputFile;

// Appends elements to an array whose end is the end of the text.
class ElementList final : public ElementSink {
 public:
  // `depth`: how many objects and arrays are open around the elements.
  ElementList(BlockText& text, std::size_t depth) : text_(text), depth_(depth) {}

  void add(const Element& element) override;
  void startArray() { first_ = true; }

 private:
  BlockText& text_;
  std::size_t depth_;
  bool first_ = true;
  std::string element_;  // kept for its memory
};

// Texts are UTF-8. When memory runs out (std::bad_alloc) the document stays well-formed.
class PageDocument {
 public:
  PageDocument();  // without a page: the root's first two members
  PageDocument(std::string_view pageName, std::string_view height, std::string_view width);
  PageDocument(const PageDocument&) = delete;
  PageDocument& operator=(const PageDocument&) = delete;

  bool hasPage() const { return !group_.empty(); }
  // Opens the next symbol, and before the first one the definitions with the eight pin shapes. Needs a page.
  void startSymbol(std::string_view symbolName);

  // Nothing without a page, or without a symbol.
  ElementSink* page() { return hasPage() ? &pageElements_ : nullptr; }
  ElementSink* symbol() { return symbolOpen_ ? &symbolElements_ : nullptr; }

  // False when not all could be written. The document can go on growing.
  bool writeTo(OutputFile& file) const;

 private:
  void startDefinitions();
  void openSymbol(std::string_view symbolName);

  std::string root_;
  BlockText definitions_;
  BlockText group_;
  ElementList symbolElements_;
  ElementList pageElements_;
  bool symbolOpen_ = false;
};

}  // namespace vernoxa
