#include "bom/bom_handlers.h"

#include "bom/bom_lists.h"
#include "dispatch/script_values.h"
#include "tcl/script_host.h"
#include "text/text_converter.h"

namespace vernoxa::bom {
namespace {

std::string keyOr(const Request& request, const TextConverter& converter, const char* member, const char* usual) {
  const auto key = request.data.member(member).text();
  return key && !key->empty() ? converter.scriptValue(*key) : usual;
}

Script withPath(Start procedure, const std::string& path) {
  return Script(procedure).literal(" ").quoted(path);
}

// Zooming in and out makes the host draw again.
void saveAndRedraw(ScriptHost& host, const std::string& path) {
  host.evaluate(withPath("saveFile", path));
  host.evaluate(Script("ZoomIn"));
  host.evaluate(Script("ZoomOut"));
}

void lockBomView(ScriptHost& host, const std::string& path, int locked) {
  host.evaluate(withPath("LockBomView", path).literal(" ").number(locked));
}

Outcome doneWithoutError() {
  return Outcome::success(Json::object(), "");
}

Outcome markParts(Start procedure, const Request& request, ScriptHost& host, const TextConverter& converter) {
  const std::string path = doubledOnce(projectPath(request, converter));
  for (const JsonView item : request.data.member("item")) {
    if (const auto reference = item.member("PartRef").text()) {
      const std::string value = converter.scriptValue(*reference);
      host.evaluate(withPath(procedure, path).literal(" ").bare(value));
    }
  }
  saveAndRedraw(host, path);
  return doneWithoutError();
}

}  // namespace

Outcome generateBom(const Request& request, ScriptHost& host, const TextConverter& converter, UserMessages& messages) {
  host.evaluate(Script("GetProductVersion"));
  generateBOMForPath(host, projectPath(request, converter), keyOr(request, converter, "PartNumberKey", "Part Number"),
                     keyOr(request, converter, "PartNameKey", "Part Name"));
  return Outcome::success(readBomLists(host, converter, messages));
}

Outcome switchStickOrNotStick(const Request&, ScriptHost& host, const TextConverter& converter) {
  Json data = Json::object();
  data.add("ErrInfo", converter.messageText(host.evaluate(Script("switchStickOrNotStick 0")).text));
  return Outcome::success(std::move(data));
}

Outcome setToNotStick(const Request& request, ScriptHost& host, const TextConverter& converter) {
  return markParts("setRefToNotUse", request, host, converter);
}

Outcome setToStick(const Request& request, ScriptHost& host, const TextConverter& converter) {
  return markParts("setRefToUse", request, host, converter);
}

Outcome exitBomViewMode(const Request& request, ScriptHost& host, const TextConverter& converter) {
  const std::string path = doubledOnce(projectPath(request, converter));
  lockBomView(host, path, 0);
  saveAndRedraw(host, path);
  return doneWithoutError();
}

Outcome enterBomViewMode(const Request& request, ScriptHost& host, const TextConverter& converter) {
  const std::string path = doubledOnce(projectPath(request, converter));
  host.evaluate(withPath("setAllNotStick", path));
  Script fitted = withPath("setEnterViewMode", path);
  fitted.literal(" ");
  for (const JsonView reference : request.data.member("Stick")) {
    if (const auto value = reference.text()) {
      fitted.bare(converter.scriptValue(*value)).literal(",");
    }
  }
  host.evaluate(fitted);
  lockBomView(host, path, 1);
  saveAndRedraw(host, path);
  return Outcome::success();
}

}  // namespace vernoxa::bom
