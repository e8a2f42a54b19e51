#include "modules/placement_commands.h"

#include <array>
#include <optional>
#include <string_view>

#include "modules/library_files.h"
#include "modules/placement.h"
#include "modules/placement_context.h"
#include "modules/placement_scripts.h"
#include "system/user_messages.h"
#include "tcl/script_host.h"
#include "text/text_converter.h"

namespace vernoxa::modules {
namespace {

struct ErrorText {
  std::string_view code;
  std::u8string_view text;
};

// "InvaildObject" is how the host's scripts spell it.
constexpr std::array errorTexts = {
    ErrorText{"OtherProject", u8"请在同一个项目中选择"},
    ErrorText{"NoObject", u8"请选择元件"},
    ErrorText{"MoreThanPage", u8"超过page范围,请重新摆放"},
    ErrorText{"InvaildObject", u8"非法器件,选择其他器件"},
};

std::optional<std::u8string_view> textFor(std::string_view code) {
  for (const ErrorText& each : errorTexts) {
    if (each.code == code) {
      return each.text;
    }
  }
  return std::nullopt;
}

}  // namespace

CommandResult placeMarketPart(CommandCall& call, ModulePlacer& placer) {
  placer.placeModule(call.host);
  return {};
}

CommandResult placePartProperty(CommandCall& call, const PlacementContext& placement, const TextConverter& converter) {
  const std::string package = converter.scriptValue(placement.package);
  call.host.evaluate(cataloguePartScript("SetProperty", package, placement, converter));
  return {};
}

CommandResult getOlbPath(CommandCall&, const LibraryFiles& libraries) {
  return {libraries.temporaryPath().utf8()};
}

CommandResult getNewOlbPath(CommandCall&, const LibraryFiles& libraries) {
  return {libraries.newPath().utf8()};
}

CommandResult outputError(CommandCall& call, UserMessages& messages, const TextConverter& converter,
                          LibraryFiles& libraries) {
  if (call.arguments.count() < 2) {
    return {};
  }
  const std::string code(call.arguments.text(1));
  if (code == "MoreThanPage") {
    libraries.remove(libraries.newPath());
  }
  const std::string name = converter.trueName(code);
  const std::u8string unknown(name.begin(), name.end());
  messages.show(textFor(code).value_or(unknown), MessageIcon::none);
  return {};
}

}  // namespace vernoxa::modules
