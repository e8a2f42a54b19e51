// A Tcl interpreter of the tests' own, with recording stand-ins for the host's procedures.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tcl/arguments.h"
#include "tcl/script_host.h"

struct Tcl_Interp;
struct Tcl_Obj;

namespace vernoxa {

using Words = std::vector<std::string>;

class TclInterp {
 public:
  using Answer = std::function<Evaluation(const Words& words)>;

  TclInterp();
  ~TclInterp();
  TclInterp(const TclInterp&) = delete;
  TclInterp& operator=(const TclInterp&) = delete;

  Tcl_Interp* get() const { return interp_; }

  // A command that is recorded with all its words and then answers.
  void define(const std::string& name, Answer answer);
  void define(const std::string& name, const std::string& answer = "");
  void define(std::initializer_list<const char*> names);
  // Leaves only that command, and records each call of one not defined later as "unknown NAME ...".
  void recordEverything(std::string_view but = "");

  std::vector<Words> calls;

  struct Evaluated {
    int status = 0;  // Tcl's completion code
    std::string text;
  };
  Evaluated evaluate(const std::string& script);
  Evaluated call(const Words& words);

 private:
  struct Procedure;
  std::vector<std::unique_ptr<Procedure>> procedures_;
  Tcl_Interp* interp_;
};

// The arguments of one call, the command's name first.
class TclWords {
 public:
  explicit TclWords(const Words& words);
  ~TclWords();
  TclWords(const TclWords&) = delete;
  TclWords& operator=(const TclWords&) = delete;

  Tcl_Obj* const* objects() const { return objects_.data(); }
  Arguments arguments() const { return {static_cast<int>(objects_.size()), objects_.data()}; }

 private:
  std::vector<Tcl_Obj*> objects_;
};

}  // namespace vernoxa
