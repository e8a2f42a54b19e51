#include "drawing/graphic_library.h"

#include <utility>

#include "system/files.h"
#include "system/shared_path.h"
#include "system/whole_file.h"
#include "text/code_page.h"
#include "text/file_name_escaping.h"
#include "text/json.h"
#include "text/outside_json.h"
#include "text/text.h"

namespace vernoxa {
namespace {

// How many objects and arrays are open around an entry of "lib", and around an element of "children".
constexpr std::size_t entryDepth = 2;

// The member "padstacks" with the eight shapes of pins, as it stands in the file.
std::string padStacks() {
  Json stacks = Json::array();
  for (const PinShape& shape : pinShapes()) {
    stacks.append(padStack(shape));
  }
  Json document = Json::object();
  document.add("padstacks", std::move(stacks));
  const std::string printed = withDosLineEnds(document.printFormatted());
  constexpr std::string_view before = "{";
  constexpr std::string_view behind = "\r\n}";
  return printed.substr(before.size(), printed.size() - before.size() - behind.size());
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
  document_.emplace();
}

void GraphicLibrary::addRecord(const Record& record) {
  if (!document_) {
    return;
  }
  if (record.kind() == "Name") {
    document_->open = false;  // should memory run out, what follows must not be drawn into another symbol
    document_->library.push_back({std::string(record[1]), {}});
    document_->open = true;
  } else if (Elements* const elements = document_->openElements()) {
    elements->add(Use::symbol, record);
  }
}

bool GraphicLibrary::addPlainRecord(const Record& record) {
  Elements* const elements = document_ ? document_->openElements() : nullptr;
  return elements != nullptr && elements->addPlain(Use::symbol, record);
}

std::string GraphicLibrary::finish(std::string_view name) {
  const std::optional<LibraryDocument> document = std::exchange(document_, std::nullopt);
  const FilePath base = project_.get();
  const FilePath cache = base / "Cache";
  const FilePath folder = cache / "Library";
  const FilePath path = folder / fileName(text_.trueName(name), text_);
  if (document && !mustStay(files_, path)) {
    files_.createFolder(cache);
    files_.createFolder(folder);
    writeWholeFile(files_, processes_, path, WhenHeld::leave,
                   [&document](OutputFile& file) { return document->writeTo(file); });
  }
  return replaceAll(base.utf8(), "\\", "/") + "/Cache/Library/" + fileName(name, text_);
}

Elements* LibraryDocument::openElements() {
  Elements& last = library.empty() ? children : library.back().elements;
  return open ? &last : nullptr;
}

bool LibraryDocument::writeTo(OutputFile& output) const {
  JsonFile file(output);
  file.put("{\n\t\"children\":\t[", 0);
  children.writeTo(file, entryDepth);
  file.put("],");
  file.put(padStacks());
  file.put(",\n\t\"lib\":\t[", 0);
  for (const Group& entry : library) {
    file.put(&entry == &library.front() ? "" : elementSeparator);
    entry.writeTo(file, entryDepth);
  }
  file.put("]\n}", 0);
  return file.finish();
}

}  // namespace vernoxa
