// The elements of a page or of a symbol while it is open.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "drawing/element_form.h"

namespace vernoxa {

class PageWriter;

// Keeps of each element its form and its values, which is a third of its text; they stand one behind the other in
// blocks, so that what is there never moves. Forms must outlive the list.
class ElementList final : public ElementSink {
 public:
  // When memory runs out (std::bad_alloc) the list is as before.
  void add(const ElementForm& form, const Record& record) override;

  // Writes the elements as those of one array, in their order.
  void writeTo(PageWriter& writer) const;

 private:
  struct Block {
    std::unique_ptr<char[]> bytes;
    std::size_t size = 0;
    std::size_t used = 0;
  };

  char* room(std::size_t size);

  std::vector<Block> blocks_;
};

}  // namespace vernoxa
