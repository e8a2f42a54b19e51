#include "support/tcl_interp_tcl.h"

#include <tcl.h>

#include "tcl/tcl_script_host.h"

namespace vernoxa {
namespace {

std::string textOf(Tcl_Obj* object) {
  int length = 0;
  const char* const text = Tcl_GetStringFromObj(object, &length);
  return {text, static_cast<std::size_t>(length)};
}

// Tcl's own start, once.
void startTcl() {
  static const bool started = (Tcl_FindExecutable(nullptr), true);
  static_cast<void>(started);
}

Tcl_Obj* newText(const std::string& text) {
  return Tcl_NewStringObj(text.data(), static_cast<int>(text.size()));
}

}  // namespace

struct TclInterp::Procedure {
  TclInterp& owner;
  std::string name;
  Answer answer;

  static int run(ClientData data, Tcl_Interp* interp, int count, Tcl_Obj* const objects[]) {
    auto& self = *static_cast<Procedure*>(data);
    Words words{self.name};  // as it was defined: Tcl itself calls "unknown" by two spellings
    for (int index = 1; index < count; ++index) {
      words.push_back(textOf(objects[index]));
    }
    self.owner.calls.push_back(words);
    const Evaluation result = self.answer(words);
    Tcl_SetObjResult(interp, newText(result.text));
    return result.ok ? TCL_OK : TCL_ERROR;
  }
};

TclInterp::TclInterp() {
  startTcl();
  interp_ = Tcl_CreateInterp();
  Tcl_Preserve(interp_);
}

TclInterp::~TclInterp() {
  if (Tcl_InterpDeleted(interp_) == 0) {
    Tcl_DeleteInterp(interp_);
  }
  Tcl_Release(interp_);
}

void TclInterp::define(const std::string& name, Answer answer) {
  procedures_.push_back(std::make_unique<Procedure>(Procedure{*this, name, std::move(answer)}));
  const std::size_t space = name.rfind("::");
  if (space != std::string::npos && space > 0) {
    Tcl_CreateNamespace(interp_, name.substr(0, space).c_str(), nullptr, nullptr);
  }
  Tcl_CreateObjCommand(interp_, name.c_str(), Procedure::run, procedures_.back().get(), nullptr);
}

void TclInterp::define(const std::string& name, const std::string& answer) {
  define(name, [answer](const Words&) { return Evaluation{true, answer}; });
}

void TclInterp::define(std::initializer_list<const char*> names) {
  for (const char* const name : names) {
    define(name);
  }
}

void TclInterp::recordEverything(std::string_view but) {
  const Words all = TclScriptHost(interp_).splitList(evaluate("info commands").text).value();
  for (const std::string& name : all) {
    if (name != but) {
      Tcl_DeleteCommand(interp_, name.c_str());
    }
  }
  define("unknown");
}

TclInterp::Evaluated TclInterp::evaluate(const std::string& script) {
  const int status = Tcl_EvalEx(interp_, script.data(), static_cast<int>(script.size()), TCL_EVAL_GLOBAL);
  return {status, textOf(Tcl_GetObjResult(interp_))};
}

TclInterp::Evaluated TclInterp::call(const Words& words) {
  const TclWords held(words);
  const int status = Tcl_EvalObjv(interp_, static_cast<int>(words.size()), held.objects(), TCL_EVAL_GLOBAL);
  return {status, textOf(Tcl_GetObjResult(interp_))};
}

TclWords::TclWords(const Words& words) {
  startTcl();
  for (const std::string& word : words) {
    objects_.push_back(newText(word));
    Tcl_IncrRefCount(objects_.back());
  }
}

TclWords::~TclWords() {
  for (Tcl_Obj* const object : objects_) {
    Tcl_DecrRefCount(object);
  }
}

}  // namespace vernoxa
