#include "drawing/graphic_library.h"

#include "system/whole_file.h"
#include "text/file_name_escaping.h"
#include "text/json.h"
#include "text/outside_json.h"
#include "text/text.h"

namespace vernoxa::drawing {
namespace {

// The member "padstacks" with the eight shapes of pins, as it stands in the file.
std::string padStacks() {
  // left, top, width, height, start angle, sweep
  constexpr std::string_view dot = R"({"fill":false,"type":"Arc","xy":[0,0],"segs":[[0,-3,6,6,0,360]]},)";
  constexpr std::string_view line = R"({"fill":false,"type":"line","xy":[0,0],"segs":[[)";
  std::string text = R"({"padstacks":[)";
  for (const PinShape& pin : pinShapes) {
    text.append(&pin == pinShapes.begin() ? R"({"pads":[)" : R"(,{"pads":[)").append(pin.dot ? dot : "").append(line);
    text.append(pin.padStart)
        .append(",0,")
        .append(pin.lineEnd)
        .append(pin.clock ? ",0],[-3,0,0,3],[-3,0,0,-3]" : ",0]");
    text.append(R"(]}],"name":")").append(pin.name()).append(R"("})");
  }
  text = withDosLineEnds(Json::parse(text + "]}").document.printFormatted());
  constexpr std::string_view before = "{";
  constexpr std::string_view behind = "\r\n}";
  return text.substr(before.size(), text.size() - before.size() - behind.size());
}

// A name in the code page may hold "\" as the second half of a character.
std::string fileName(std::string_view name, const TextConverter& converter) {
  const std::string flat = utf8OfTcl(name) ? replaceAll(name, "\\", "-") : converter.replaceInCodePage(name, '\\', "-");
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
  ++begun_;
}

bool GraphicLibrary::draw(const Record& record, Encoding encoding) {
  if (!document_) {
    return false;
  }
  document_->named = document_->named || record.kind() == "Name";
  return (document_->named ? document_->library : document_->children).add(record, encoding);
}

std::string GraphicLibrary::finish(std::string_view name) {
  // Converting the name may show a message box, in whose event loop the host may begin another document.
  const std::uint64_t begun = begun_;
  const FilePath base = project_.get();
  const FilePath cache = base / "Cache";
  const FilePath folder = cache / "Library";
  const FilePath path = folder / fileName(converter_.trueName(name), converter_);
  std::string answer = replaceAll(base.utf8(), "\\", "/") + "/Cache/Library/" + fileName(name, converter_);
  if (document_ && begun_ == begun) {
    if (!mustStay(files_, path)) {
      files_.createFolder(cache);
      files_.createFolder(folder);
      writeWholeFile(
          files_, processes_, path, WhenHeld::leave, [this](OutputFile& file) { return document_->writeTo(file); },
          logs_);
    }
    document_.reset();
  }
  return answer;
}

bool LibraryDocument::writeTo(OutputFile& output) const {
  BufferedFile file(output);
  file.put("{\r\n\t\"children\":\t[");
  children.writeTo(file);
  file.put("],");
  file.put(padStacks());
  file.put(",\r\n\t\"lib\":\t[");
  library.writeTo(file);
  file.put("]\r\n}");
  return file.finish();
}

}  // namespace vernoxa::drawing
