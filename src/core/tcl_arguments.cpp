#include "core/tcl_arguments.h"

#include <tcl.h>

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

TclList::TclList(Tcl_Obj* list) : list_(list) {
  if (list_ == nullptr) {
    return;
  }
  Tcl_IncrRefCount(list_);
  if (Tcl_ListObjGetElements(nullptr, list_, &count_, &elements_) != TCL_OK) {
    count_ = 0;
  }
}

TclList::~TclList() {
  if (list_ != nullptr) {
    Tcl_DecrRefCount(list_);
  }
}

std::string_view TclList::text(int index) const {
  return textOf(element(index));
}

Tcl_Obj* TclList::element(int index) const {
  return index >= 0 && index < count_ ? elements_[index] : nullptr;
}

std::string_view Arguments::text(int position) const {
  return textOf(object(position));
}

Tcl_Obj* Arguments::object(int position) const {
  return position >= 0 && position < count_ ? objects_[position] : nullptr;
}

}  // namespace vernoxa
