#include "tcl/arguments.h"

#include <tcl.h>

#include <algorithm>
#include <cstddef>
#include <span>

namespace vernoxa::inline tcl {
namespace {

std::string_view textOf(Tcl_Obj* object) {
  if (object == nullptr) {
    return {};
  }
  int length = 0;
  const char* const text = Tcl_GetStringFromObj(object, &length);
  return {text, static_cast<std::size_t>(length)};
}

std::span<Tcl_Obj* const> elementsOf(Tcl_Obj* list) {
  int count = 0;
  Tcl_Obj** elements = nullptr;
  const bool isList = list != nullptr && Tcl_ListObjGetElements(nullptr, list, &count, &elements) == TCL_OK;
  return {elements, isList ? static_cast<std::size_t>(count) : 0};
}

std::size_t textsOf(std::span<Tcl_Obj* const> elements, const char** starts, std::size_t* sizes, std::size_t most) {
  const std::size_t count = std::min(elements.size(), most);
  for (std::size_t index = 0; index < count; ++index) {
    const std::string_view text = textOf(elements[index]);
    starts[index] = text.data();
    sizes[index] = text.size();
  }
  return count;
}

}  // namespace

TclList::TclList(Tcl_Obj* list) {
  const std::span<Tcl_Obj* const> elements = elementsOf(list);
  elements_.assign(elements.begin(), elements.end());
  for (Tcl_Obj* const element : elements_) {
    Tcl_IncrRefCount(element);
  }
}

TclList::~TclList() {
  for (Tcl_Obj* const element : elements_) {
    Tcl_DecrRefCount(element);
  }
}

std::string_view TclList::text(int index) const {
  return textOf(element(index));
}

std::size_t TclList::texts(const char** starts, std::size_t* sizes, std::size_t most) const {
  return textsOf({elements_.data(), elements_.size()}, starts, sizes, most);
}

Tcl_Obj* TclList::element(int index) const {
  return index >= 0 && index < size() ? elements_[static_cast<std::size_t>(index)] : nullptr;
}

std::size_t PassingList::texts(const char** starts, std::size_t* sizes, std::size_t most) const {
  return textsOf(elementsOf(list_), starts, sizes, most);
}

std::string_view Arguments::text(int position) const {
  return textOf(object(position));
}

Tcl_Obj* Arguments::object(int position) const {
  return position >= 0 && position < count_ ? objects_[position] : nullptr;
}

}  // namespace vernoxa::inline tcl
