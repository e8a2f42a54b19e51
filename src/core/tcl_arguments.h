// Reads the arguments of a Tcl command, and the lists among them.
//
// Texts are UTF-8 as Tcl holds them (NUL is held as C0 80, so none is cut). A missing argument or element reads as the
// empty text, a malformed list as empty elements; neither leaves an error text, and nothing reads past what came.
#pragma once

#include <string_view>

struct Tcl_Obj;

namespace vernoxa {

// The elements of one list. Keeps the list alive; views of texts are valid as long as this object.
class TclList {
 public:
  explicit TclList(Tcl_Obj* list);  // nullptr: empty
  ~TclList();
  TclList(const TclList&) = delete;
  TclList& operator=(const TclList&) = delete;

  int size() const { return count_; }
  std::string_view text(int index) const;
  TclList list(int index) const { return TclList(element(index)); }

 private:
  Tcl_Obj* element(int index) const;

  Tcl_Obj* list_;
  Tcl_Obj** elements_ = nullptr;
  int count_ = 0;
};

class Arguments {
 public:
  Arguments(int count, Tcl_Obj* const* objects) : count_(count), objects_(objects) {}

  // The command word counts.
  int count() const { return count_; }
  // Position 1 is the first after the command word.
  std::string_view text(int position) const;
  TclList list(int position) const { return TclList(object(position)); }

 private:
  Tcl_Obj* object(int position) const;

  int count_;
  Tcl_Obj* const* objects_;
};

}  // namespace vernoxa
