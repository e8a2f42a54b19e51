#include "bom/bom_lists.h"

#include <array>

#include "bom/bom_line.h"
#include "core/code_page.h"
#include "core/script_host.h"
#include "core/script_text.h"
#include "core/services.h"
#include "core/user_messages.h"
#include "core/world.h"

namespace vernoxa {
namespace {

struct BomList {
  const char* member;
  const char* procedure;
};

constexpr std::array bomLists = {
    BomList{"Stick", "::capGenerateBOMUtil::getStickList"},
    BomList{"NotStick", "::capGenerateBOMUtil::getNotStickList"},
    BomList{"NotPartNumber", "::capGenerateBOMUtil::getNoPartNumberList"},
};

// The host's mark for a property that is not there.
void clearMissing(std::vector<std::string>& fields) {
  for (std::string& field : fields) {
    if (field == "NULL") {
      field.clear();
    }
  }
}

std::vector<std::string> elementsOf(ScriptHost& host, const char* procedure) {
  const Evaluation list = host.evaluate(procedure);
  return list.ok ? host.splitList(list.text) : std::vector<std::string>();
}

// False when an element was too short.
bool readList(ScriptHost& host, const TextConverter& text, bool oldHost, const char* procedure, Json& data,
              JsonView array) {
  for (const std::string& element : elementsOf(host, procedure)) {
    std::vector<std::string> fields = bomFields(oldHost ? text.utf8ToAnsi(element) : element);
    if (fields.empty()) {
      return false;
    }
    clearMissing(fields);
    data.appendTo(array, bomLine(fields));
  }
  return true;
}

}  // namespace

bool generateBOMForPath(ScriptHost& host, const std::string& path, const std::string& partNumberKey,
                        const std::string& partNameKey) {
  ScriptText script("generateBOMForPath ");
  script.quoted(path).literal(" ").quoted(partNumberKey).literal(" ").quoted(partNameKey);
  return host.evaluate(script.text()).ok;
}

Json readBomLists(ScriptHost& host, const Services& services) {
  const bool oldHost = host.isOldHost();
  Json data = Json::object();
  std::array<JsonView, bomLists.size()> arrays;
  for (std::size_t index = 0; index < bomLists.size(); ++index) {
    arrays[index] = data.add(bomLists[index].member, Json::array());
  }
  for (std::size_t index = 0; index < bomLists.size(); ++index) {
    if (!readList(host, services.text, oldHost, bomLists[index].procedure, data, arrays[index])) {
      services.world.messages.show(u8"BOM读取出错", MessageIcon::none);
      break;
    }
  }
  return data;
}

}  // namespace vernoxa
