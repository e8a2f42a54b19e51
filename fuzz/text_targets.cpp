#include <algorithm>
#include <array>

#include "designs/host_discovery.h"
#include "desktop/metafile_check.h"
#include "desktop/metafile_extent.h"
#include "desktop/metafile_work.h"
#include "desktop/older_metafile.h"
#include "plugin/installation.h"
#include "support/tcl_interp_tcl.h"
#include "system/fake_world.h"
#include "target.h"
#include "tcl/script.h"
#include "text/decimal.h"
#include "text/json.h"
#include "text/text.h"

namespace vernoxa::fuzz {
namespace {

// Every way to write a value, beside words that must arrive unchanged.
std::string scriptOf(int form, std::string_view value) {
  Script script("target ");
  return form == 0   ? script.quoted(value).literal(" end").text()
         : form == 1 ? script.literal("x").bare(value).literal(" end").text()
         : form == 2 ? script.braced(value).literal(" end").text()
         : form == 3 ? Script("target").quoted(value).literal(" end").text()
                     : script.literal("[list x").bare(value).literal("] end").text();
}

}  // namespace

void configuration(std::string_view input) {
  const std::string text(input);
  const auto read = plugin::parseConfiguration(text, FakeSession().logs);
  const Json parsed = Json::parse(text).document;
  require(read.has_value() == static_cast<bool>(parsed), "a configuration out of what is no JSON, or none out of JSON");
  require(!read || !read->startCompanion || parsed.member("StartWithCadence").text() == "1",
          "the companion would be started unasked");
}

void texts(std::string_view input) {
  static constexpr std::array<unsigned, 5> pages = {936, 950, 932, 1252, 65001};
  FakeSession services;
  services.fake.codePage = FakeCodePage(pages[input.size() % pages.size()]);
  const TextConverter& convert = services.text;
  for (const std::string& text : {convert.ansiToUtf8(input), convert.scriptValue(input)}) {
    require(isValidUtf8(text) || text == input.substr(0, input.find('\0')), "a script text that is no UTF-8");
  }
  require(isValidUtf8(convert.trueName(input)), "a name of a file that is no UTF-8");
  require(convert.replaceInCodePage(input, '\\', "\\") == input, "replacing a character by itself changed a text");
  const FilePath path = convert.path(input);
  const auto name = convert.nameInCodePage(path);
  require(!name || convert.ansiToUtf8(*name) == path.utf8(), "a name in the code page that is another file's");
  convert.utf8ToAnsi(input);
  convert.messageText(input);
  convert.hostPath(input);
  std::string joined;
  for (const std::string& field : splitFields(input, ';')) {
    joined.append(field).append(";");
  }
  require(joined.substr(0, joined.size() - 1) == input, "splitting lost a byte");
  require(replaceAll(input, "\\", "\\\\") == doubleBackslashes(input), "backslashes doubled in two ways");
  require(convert.doubledBackslashes(input).size() >= input.size(), "a path of a packet lost a byte");
  const Decimal number = Decimal::read(input);
  require(Decimal::read(number.text()) == number, "a number is another than its own text");
  require(number - number == Decimal::whole(0) && number + number == number * 2,
          "a number is not the sum of its parts");
}

// First line: the host's version; then an installed product a line, its values between tabs.
void registry(std::string_view input) {
  FakeSession services;
  const std::string version(takeUntil(input, '\n'));
  while (!input.empty()) {
    std::string_view line = takeUntil(input, '\n');
    FakeRegistry::Values values;
    for (const char* const name : {"Publisher", "InstallLocation", "DisplayName", "DisplayVersion"}) {
      if (!line.empty()) {
        values[name] = takeUntil(line, '\t');
      }
    }
    auto& entries = line.empty() ? services.fake.registry.machine : services.fake.registry.user;
    entries.emplace_back("product " + std::to_string(entries.size()), std::move(values));
  }
  services.fake.files.addFile("C:\\Cadence\\tools\\bin\\Capture.exe", "the host");
  const auto installations = designs::readOrcadInstallInfo(services.fake.registry, services.logs);
  const FilePath found = designs::findHostExecutable(services.fake.files, version, installations);
  require(found.empty() || services.fake.files.exists(found), "a host that is not there");
  require(services.crashes().empty(), "reading the registry ended in an exception");
}

void metafile(std::string_view input) {
  desktop::olderMetafileFault(input);
  if (desktop::metafileFault(input)) {
    return;
  }
  require(!desktop::metafileFault(std::string(input) + "x"), "bytes behind a metafile count");
  std::size_t end = 0;
  desktop::FilledShapes shapes;
  for (std::uint32_t type = 0; type != 14; type = desktop::MetafileRecord(input.substr(end)).type()) {
    const desktop::MetafileRecord rest(input.substr(end));
    const desktop::MetafileRecord record(rest.part(0, rest.number(4)));
    const auto extent = desktop::drawnExtent(record);
    require(!extent || (extent->left <= extent->right && extent->top <= extent->bottom), "an extent is turned round");
    const auto filled = shapes.next(record, extent);
    require(!filled || filled->crossings >= 0, "an outline of no length");
    end += record.size();
  }
  require(desktop::metafileFault(input.substr(0, end)).has_value(), "a metafile without its end is taken");
}

// The first byte chooses how the value is written.
void scriptText(std::string_view input) {
  static TclInterp interp;
  static const bool isPrepared = [] {
    interp.recordEverything();
    interp.define("target");
    interp.define("list", [](const Words& words) { return Evaluation{true, words.size() > 1 ? words[1] : ""}; });
    return true;
  }();
  if (input.empty() || !isPrepared) {
    return;
  }
  const int form = (input.front() & 0x7F) % 5;
  const std::string_view value = input.substr(1).substr(0, input.substr(1).find('\0'));
  interp.calls.clear();
  interp.evaluate(scriptOf(form, value));
  if (form == 3) {
    // One word with the command's own: no such command, or no script at all when the value ends in a space.
    require(interp.calls.empty() || (interp.calls.size() == 1 && interp.calls[0].front() == "unknown"),
            "a joined value ran something");
    require(interp.calls.empty() || interp.calls[0][1].starts_with("target\""), "a joined value chose the procedure");
    return;
  }
  std::string called;
  for (const Words& words : interp.calls) {
    called += words.front() + " ";
  }
  require(called == (form == 4 ? "list target " : "target "), "other procedures than the intended ones were called");
  const Words& words = interp.calls.back();
  require(words.back() == "end", "a value swallowed the word after it");
  const bool arrivesAsText =
      value.find_first_of(std::string_view("\\ \t\v\f\r\n\0", 8)) == std::string_view::npos && isValidUtf8(value);
  if (arrivesAsText && form != 2) {
    const std::string expected = (form == 0 ? "" : "x") + std::string(value);
    require(words.size() == 3 && words[1] == expected, "a value arrived changed");
  }
}

}  // namespace vernoxa::fuzz
