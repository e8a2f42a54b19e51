#include "drawing/graphic_library.h"

#include "drawing/cache_folders.h"
#include "drawing/pin_shapes.h"
#include "drawing/symbol_elements.h"
#include "system/files.h"
#include "system/shared_path.h"
#include "system/whole_file.h"
#include "text/code_page.h"
#include "text/file_name_escaping.h"
#include "text/outside_json.h"
#include "text/text.h"

namespace vernoxa {
namespace {

std::string valueOf(const Attribute& attribute, const Record& record) {
  std::string value;
  for (const ValuePiece& piece : attribute.pieces) {
    value.append(piece.value != nullptr ? piece.value(record) : piece.text);
  }
  return value;
}

Json jsonOf(const ElementForm& form, const Record& record) {
  Json object = Json::object();
  object.add("name", form.tag());
  if (form.shownText() != nullptr) {
    object.add("value", form.shownText()(record));
  }
  Json attributes = Json::object();
  for (const Attribute& attribute : form.attributes()) {
    attributes.add(attribute.name, valueOf(attribute, record));
  }
  object.add("attr", std::move(attributes));
  return object;
}

// A name in the code page may hold "\" as the second half of a character.
std::string fileName(std::string_view name, const TextConverter& text) {
  const std::string flat = utf8OfTcl(name) ? replaceAll(name, "\\", "-") : text.replaceInCodePage(name, '\\', "-");
  return plainFileName(replaceAll(flat, "/", "-") + ".json");
}

// A library that is there never changes under its readers; what is empty or does not parse was left by a crash. One
// that cannot be looked into stays.
bool mustStay(Files& files, const FilePath& path) {
  if (!files.exists(path)) {
    return false;
  }
  const auto text = files.readStart(path, longestOutsideJson + 1);
  return !text || !outsideJsonRefusal(*text).empty() || Json::parse(*text).document;
}

}  // namespace

void GraphicLibrary::start() {
  Json document = Json::object();
  const JsonView children = document.add("children", Json::array());
  const JsonView padStacks = document.add("padstacks", Json::array());
  for (const PinShape& shape : pinShapes()) {
    document.appendTo(padStacks, padStack(shape));
  }
  libraries_ = document.add("lib", Json::array());
  target_ = children;
  document_ = std::move(document);
}

void GraphicLibrary::addRecord(const Record& record) {
  if (!document_) {
    return;
  }
  if (record.kind() != "Name") {
    drawSymbolRecord(record, *this);
    return;
  }
  target_ = {};  // should memory run out, what follows must not be drawn into another symbol
  Json entry = Json::object();
  entry.add("name", "g");
  Json attributes = Json::object();
  attributes.add("id", record[1]);
  entry.add("attr", std::move(attributes));
  const JsonView children = entry.add("children", Json::array());
  document_.appendTo(libraries_, std::move(entry));
  target_ = children;
}

std::string GraphicLibrary::finish(std::string_view name) {
  const Json document = std::move(document_);
  const FilePath base = project_.get();
  const FilePath path = base / "Cache" / "Library" / fileName(text_.trueName(name), text_);
  if (document && !mustStay(files_, path)) {
    makeLibraryFolder(files_, base);
    const std::string content = withDosLineEnds(document.printFormatted());
    writeWholeFile(files_, processes_, path, WhenHeld::leave, [&](OutputFile& file) { return file.write(content); });
  }
  return replaceAll(base.utf8(), "\\", "/") + "/Cache/Library/" + fileName(name, text_);
}

void GraphicLibrary::add(const ElementForm& form, const Record& record) {
  if (target_) {
    document_.appendTo(target_, jsonOf(form, record));
  }
}

}  // namespace vernoxa
