#include "bom/bom_lists.h"
#include "dispatch/script_values.h"
#include "dispatch/services.h"
#include "plugin/companion_handlers.h"
#include "tcl/script.h"
#include "tcl/script_host.h"
#include "text/code_page.h"

namespace vernoxa {
namespace {

std::string keyOr(const Request& request, HandlerContext& context, const char* member, const char* usual) {
  const auto key = request.data.member(member).text();
  return key && !key->empty() ? context.services.text.scriptValue(*key) : usual;
}

Script withPath(Literal procedure, const std::string& path) {
  return Script(procedure).literal(" ").quoted(path);
}

// Zooming in and out is how the host is made to draw anew.
void saveAndRedraw(HandlerContext& context, const std::string& path) {
  context.host.evaluate(withPath("saveFile", path));
  context.host.evaluate(Script("ZoomIn"));
  context.host.evaluate(Script("ZoomOut"));
}

void lockBomView(HandlerContext& context, const std::string& path, int locked) {
  context.host.evaluate(withPath("LockBomView", path).literal(" ").number(locked));
}

Outcome doneWithoutError() {
  return Outcome::success(Json::object(), "");
}

Outcome markParts(Literal procedure, const Request& request, HandlerContext& context) {
  const std::string path = doubledOnce(projectPath(request, context));
  for (const JsonView item : request.data.member("item")) {
    if (const auto reference = item.member("PartRef").text()) {
      const std::string value = context.services.text.scriptValue(*reference);
      context.host.evaluate(withPath(procedure, path).literal(" ").bare(value));
    }
  }
  saveAndRedraw(context, path);
  return doneWithoutError();
}

}  // namespace

Outcome generateBom(const Request& request, HandlerContext& context) {
  context.host.evaluate(Script("GetProductVersion"));
  generateBOMForPath(context.host, projectPath(request, context),
                     keyOr(request, context, "PartNumberKey", "Part Number"),
                     keyOr(request, context, "PartNameKey", "Part Name"));
  return Outcome::success(readBomLists(context.host, context.services));
}

Outcome switchStickOrNotStick(const Request&, HandlerContext& context) {
  Json data = Json::object();
  data.add("ErrInfo", replyValue(context, context.host.evaluate(Script("switchStickOrNotStick 0")).text));
  return Outcome::success(std::move(data));
}

Outcome setToNotStick(const Request& request, HandlerContext& context) {
  return markParts("setRefToNotUse", request, context);
}

Outcome setToStick(const Request& request, HandlerContext& context) {
  return markParts("setRefToUse", request, context);
}

Outcome exitBomViewMode(const Request& request, HandlerContext& context) {
  const std::string path = doubledOnce(projectPath(request, context));
  lockBomView(context, path, 0);
  saveAndRedraw(context, path);
  return doneWithoutError();
}

Outcome enterBomViewMode(const Request& request, HandlerContext& context) {
  const std::string path = doubledOnce(projectPath(request, context));
  context.host.evaluate(withPath("setAllNotStick", path));
  Script fitted = withPath("setEnterViewMode", path);
  fitted.literal(" ");
  for (const JsonView reference : request.data.member("Stick")) {
    if (const auto text = reference.text()) {
      fitted.bare(context.services.text.scriptValue(*text)).literal(",");
    }
  }
  context.host.evaluate(fitted);
  lockBomView(context, path, 1);
  saveAndRedraw(context, path);
  return Outcome::success();
}

}  // namespace vernoxa
