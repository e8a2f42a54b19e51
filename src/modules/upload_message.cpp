#include "modules/upload_message.h"

#include <vector>

#include "text/text.h"
#include "text/text_converter.h"

namespace vernoxa::modules {
namespace {

void appendItems(Json& message, JsonView array, std::string_view items, const TextConverter& converter) {
  for (const std::string& item : splitItems(items, ';')) {
    message.appendTo(array, Json::string(converter.messageText(item)));
  }
}

void appendParts(Json& message, JsonView array, std::string_view parts, const TextConverter& converter) {
  for (const std::string& item : splitItems(parts, ';')) {
    const std::vector<std::string> fields = splitFields(item, ',');
    if (fields.size() < 2) {
      continue;
    }
    Json part = Json::object();
    part.add("Id", converter.messageText(fields[0]));
    part.add("Ref", converter.messageText(fields[1]));
    if (fields.size() > 2) {
      part.add("Package", converter.messageText(fields[2]));
    }
    message.appendTo(array, std::move(part));
  }
}

}  // namespace

Json uploadMessage(const UploadedSelection& selection, const std::string& preview, const std::string& module,
                   const TextConverter& converter) {
  Json message = Json::object();
  const JsonView data = message.add("Data", Json::object());
  message.add("Command", "SelectModule_EndResult");
  message.addTo(data, "dsnBmpPath", Json::string(preview));
  message.addTo(data, "dsnDatPath", Json::string(module));
  const JsonView parts = message.addTo(data, "Part", Json::array());
  const JsonView wires = message.addTo(data, "Wire", Json::array());
  const JsonView keys = message.addTo(data, "Keys", Json::array());
  message.addTo(data, "sumPins", Json::string(converter.messageText(selection.sumPins)));
  message.addTo(data, "selfPins", Json::string(converter.messageText(selection.selfPins)));
  message.addTo(data, "copyPrice", Json::string(converter.messageText(selection.copyPrice)));
  appendItems(message, keys, selection.keys, converter);
  appendParts(message, parts, selection.parts, converter);
  appendItems(message, wires, selection.wires, converter);
  message.add("Result", "0");
  return message;
}

}  // namespace vernoxa::modules
