// One page of a drawing, with the symbols that it uses, until it becomes a file.
//
// The file is JSON in one piece: the root's own members, the definitions (when there are symbols) and the page's group.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "drawing/element_list.h"

namespace vernoxa {

class OutputFile;

struct PageStart {
  std::string_view name;
  std::string_view height;
  std::string_view width;
};

// Texts are UTF-8.
class PageDocument {
 public:
  PageDocument() = default;  // without a page: only what all roots have
  explicit PageDocument(const PageStart& start);

  bool hasPage() const { return page_.has_value(); }
  // Opens the next symbol, and before the first one those of the eight pin shapes. When memory runs out
  // (std::bad_alloc) none of them is there, and no symbol is open.
  void startSymbol(std::string_view symbolName);

  // Where elements go; nothing without a page, or without a symbol.
  ElementSink* page() { return page_ ? &page_->group.elements : nullptr; }
  ElementSink* symbol() { return symbolOpen_ ? &symbols_.back().elements : nullptr; }

  // As cJSON's formatted printer prints it, with CR LF between lines. False when the file takes no more.
  bool writeTo(OutputFile& file) const;

 private:
  struct Group {
    std::string id;
    ElementList elements;
  };
  struct Page {
    std::string height;
    std::string width;
    Group group;
  };

  static void writeGroup(const Group& group, std::size_t depth, PageWriter& writer);
  void writeDefinitions(PageWriter& writer) const;

  std::optional<Page> page_;
  std::deque<Group> symbols_;
  bool symbolOpen_ = false;
};

}  // namespace vernoxa
