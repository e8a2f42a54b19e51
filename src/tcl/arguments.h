// Reads the arguments of a Tcl command, and the lists among them.
//
// Texts are UTF-8 as Tcl holds them (NUL is held as C0 80, so none is cut). A missing argument or element reads as the
// empty text, a malformed list as empty elements; neither leaves an error in Tcl, and nothing reads past the end.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

struct Tcl_Obj;

namespace vernoxa::inline tcl {

// The elements of one list as it was when this object was made. A message box or an evaluation may run the host's event
// loop, and that may rewrite the list, read it as something else (which frees Tcl's own array of elements) or unset the
// variable that holds it. So each element is held by a reference of its own: Tcl changes no object that others hold,
// and views of texts are valid as long as this object.
class TclList {
 public:
  explicit TclList(Tcl_Obj* list);  // nullptr: empty
  ~TclList();
  TclList(const TclList&) = delete;
  TclList& operator=(const TclList&) = delete;

  int size() const { return static_cast<int>(elements_.size()); }
  std::string_view text(int index) const;
  // Writes where each of the first `most` texts begins, and its size. Gives the number of texts written.
  std::size_t texts(const char** starts, std::size_t* sizes, std::size_t most) const;
  TclList list(int index) const { return TclList(element(index)); }

 private:
  Tcl_Obj* element(int index) const;

  std::vector<Tcl_Obj*> elements_;
};

// A list that is read without holding its elements, which takes a third of the time. Its texts are valid until anything
// is evaluated or shown.
class PassingList {
 public:
  explicit PassingList(Tcl_Obj* list) : list_(list) {}  // nullptr: empty

  std::size_t texts(const char** starts, std::size_t* sizes, std::size_t most) const;

 private:
  Tcl_Obj* list_;
};

// Tcl holds the arguments until the call ends, even if the variables that they came from change.
class Arguments {
 public:
  Arguments(int count, Tcl_Obj* const* objects) : count_(count), objects_(objects) {}

  // With the command word.
  int count() const { return count_; }
  // Position 1 is the first after the command word.
  std::string_view text(int position) const;
  TclList list(int position) const { return TclList(object(position)); }
  PassingList passingList(int position) const { return PassingList(object(position)); }

 private:
  Tcl_Obj* object(int position) const;

  int count_;
  Tcl_Obj* const* objects_;
};

}  // namespace vernoxa::inline tcl
