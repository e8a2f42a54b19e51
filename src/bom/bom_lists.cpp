#include "bom/bom_lists.h"

#include <array>
#include <optional>

#include "system/user_messages.h"
#include "tcl/script_host.h"
#include "text/text.h"
#include "text/text_converter.h"

namespace vernoxa::bom {
namespace {

struct BomList {
  const char* member;
  Start procedure;
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

using ListArrays = std::array<JsonView, bomLists.size()>;

// What the procedure answered; empty when it ended in an error, `nullopt` for a text that is not a list.
std::optional<std::vector<std::string>> elementsOf(ScriptHost& host, Start procedure) {
  const Evaluation list = host.evaluate(Script(procedure));
  return list.ok ? host.splitList(list.text) : std::vector<std::string>();
}

// False for a text that is not a list, or when an element was too short.
bool readList(ScriptHost& host, const TextConverter& converter, bool oldHost, Start procedure, Json& data,
              JsonView array) {
  const auto elements = elementsOf(host, procedure);
  if (!elements) {
    return false;
  }
  for (const std::string& element : *elements) {
    std::vector<std::string> fields = bomFields(oldHost ? converter.utf8ToAnsi(element) : element);
    if (fields.empty()) {
      return false;
    }
    clearMissing(fields);
    data.appendTo(array, bomLine(fields));
  }
  return true;
}

// False when a list could not be read, for whatever reason.
bool readAll(ScriptHost& host, const TextConverter& converter, Json& data, const ListArrays& arrays) {
  try {
    const bool oldHost = host.isOldHost();
    for (std::size_t index = 0; index < bomLists.size(); ++index) {
      if (!readList(host, converter, oldHost, bomLists[index].procedure, data, arrays[index])) {
        return false;
      }
    }
    return true;
  } catch (...) {  // the companion waits for a reply: it gets what was read so far
    return false;
  }
}

}  // namespace

std::vector<std::string> bomFields(std::string_view text) {
  std::vector<std::string> fields = splitFields(text, ';');
  fields.resize(fields.size() < bomMembers.size() ? 0 : bomMembers.size());
  return fields;
}

Json bomLine(const std::vector<std::string>& fields) {
  Json line = Json::object();
  for (std::size_t index = 0; index < bomMembers.size(); ++index) {
    line.add(bomMembers[index].name, fields[index]);
  }
  return line;
}

bool generateBOMForPath(ScriptHost& host, const std::string& path, const std::string& partNumberKey,
                        const std::string& partNameKey) {
  Script script("generateBOMForPath ");
  script.quoted(path).literal(" ").quoted(partNumberKey).literal(" ").quoted(partNameKey);
  return host.evaluate(script).ok;
}

Json readBomLists(ScriptHost& host, const TextConverter& converter, UserMessages& messages) {
  Json data = Json::object();
  ListArrays arrays;
  for (std::size_t index = 0; index < bomLists.size(); ++index) {
    arrays[index] = data.add(bomLists[index].member, Json::array());
  }
  if (!readAll(host, converter, data, arrays)) {
    messages.show(u8"BOM读取出错", MessageIcon::none);
  }
  return data;
}

}  // namespace vernoxa::bom
