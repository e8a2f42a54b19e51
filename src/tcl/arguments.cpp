#include "tcl/arguments.h"

#include <tcl.h>

#include <algorithm>
#include <cstddef>

namespace vernoxa {
namespace {

std::string_view textOf(Tcl_Obj* object) {
  if (object == nullptr) {
    return {};
  }
  int length = 0;
  const char* const text = Tcl_GetStringFromObj(object, &length);
  return {text, static_cast<std::size_t>(length)};
}

}  // namespace

TclList::TclList(Tcl_Obj* list) {
  int count = 0;
  Tcl_Obj** elements = nullptr;
  if (list != nullptr && Tcl_ListObjGetElements(nullptr, list, &count, &elements) == TCL_OK) {
    elements_.assign(elements, elements + count);
  }
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
  const std::size_t count = std::min(elements_.size(), most);
  for (std::size_t index = 0; index < count; ++index) {
    const std::string_view text = textOf(elements_[index]);
    starts[index] = text.data();
    sizes[index] = text.size();
  }
  return count;
}

Tcl_Obj* TclList::element(int index) const {
  return index >= 0 && index < size() ? elements_[static_cast<std::size_t>(index)] : nullptr;
}

std::string_view Arguments::text(int position) const {
  return textOf(object(position));
}

Tcl_Obj* Arguments::object(int position) const {
  return position >= 0 && position < count_ ? objects_[position] : nullptr;
}

}  // namespace vernoxa
