// Export and placement of shared modules by their number of library parts: the cost of a part must not grow with it.
// Then modules as long as any that is read, sound and hostile ones: what placing them takes of time and memory.
#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <optional>
#include <string>
#include <vector>

#include "modules/module_document.h"
#include "modules/placement.h"
#include "system/fake_world.h"
#include "tcl/script_host.h"
#include "text/outside_json.h"

namespace {

using namespace vernoxa;

constexpr int runs = 5;
constexpr const char* moduleFile = "C:\\Mods\\ModuleLib.json";

void add(modules::ModuleDocument& document, std::initializer_list<std::string_view> words) {
  document.addLibraryRecord(drawing::Record(words));
}

// Each part has a body and two pins, as a resistor has.
std::string exportModule(int parts) {
  modules::ModuleDocument document;
  document.start();
  for (int part = 0; part < parts; ++part) {
    add(document, {"Name", "RES_" + std::to_string(part), "Part", "0", "0", "40", "20", "0", "A"});
    add(document, {"PartProperty", "Value", "10k"});
    add(document, {"Box", "0", "0", "40", "20", "48", "0", "0", "1", "0"});
    add(document, {"Pin", "0", "10", "-10", "10", "1", "IN", "Passive"});
    add(document, {"Pin", "40", "10", "50", "10", "2", "OUT", "Passive"});
  }
  return document.finish("100", "100");
}

// Carries out nothing, and keeps no scripts: what the plug-in takes is measured.
class CountingHost final : public ScriptHost {
 public:
  Evaluation evaluate(const Script&) override {
    ++scripts;
    return {true, "1"};
  }
  std::optional<std::vector<std::string>> splitList(const std::string&) override { return {}; }

  std::size_t scripts = 0;
};

std::size_t place(const std::string& module) {
  FakeSession with;
  with.fake.files.addFile("C:\\App\\config\\Resource\\Empty.olb", "OLB");
  with.fake.files.addFile(moduleFile, module);
  with.placement.dsnDatPath = moduleFile;
  CountingHost host;
  with.part<modules::ModulePlacer>().placeModule(host);
  return host.scripts;
}

template <class Body>
double medianMicroseconds(int parts, Body body) {
  std::vector<double> times;
  for (int run = 0; run < runs; ++run) {
    const auto start = std::chrono::steady_clock::now();
    body();
    times.push_back(std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count() /
                    parts);
  }
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

// `head`, then the piece as often as the longest text holds it, each "#" in it a number of its own, then `tail`.
std::string longModule(const std::string& head, const std::string& piece, const std::string& tail) {
  const std::size_t number = piece.find('#');
  std::string text = head;
  for (int count = 0;; ++count) {
    std::string next = piece;
    if (number != std::string::npos) {
      next.replace(number, 1, std::to_string(count));
    }
    if (text.size() + next.size() + tail.size() > longestOutsideJson) {
      return text + tail;
    }
    text += next;
  }
}

// The largest of our own exports that is still read.
std::string longestExport() {
  const std::size_t partSize = (exportModule(2000).size() - exportModule(1000).size()) / 1000;
  return exportModule(static_cast<int>(longestOutsideJson / (partSize + 8)));
}

struct LongModule {
  const char* what;
  std::string (*make)();
};

constexpr LongModule longModules[] = {
    {"a sound one", longestExport},
    {"only numbers", [] { return longModule("[", "0,", "0]"); }},
    {"only empty objects", [] { return longModule(R"({"lib":[)", "{},", "{}]}"); }},
    {"most values", [] { return longModule(R"({"lib":[)", R"("texts_2",)", "{}]}"); }},
    {"parts that are a name", [] { return longModule(R"({"lib":[)", R"({"Name":"#"},)", "{}]}"); }},
    {"the most parts",
     [] {
       const std::string rest = R"(","Type":")" + std::string(120, 'x') + R"("},)";
       return longModule(R"({"lib":[)", R"({"Name":"#)" + rest, "{}]}");
     }},
    {"objects that are a name", [] { return longModule(R"({"lib":[],"children":[)", R"({"Name":"#"},)", "{}]}"); }},
    {"one path", [] { return longModule(R"({"lib":[{"children":[{"Data":{"path":")", "1 ", R"("}}]}]})"); }},
    {"one path of most points",
     [] { return longModule(R"({"lib":[{"children":[{"Data":{"path":")", "1000,200 ", R"("}}]}]})"); }},
    {"one text", [] { return longModule(R"({"lib":[{"Name":")", "\\n", R"("}]})"); }},
    {"one part's properties", [] { return longModule(R"({"lib":[{"Property":{)", R"("#":"[",)", R"("":""}}]})"); }},
    {"deep everywhere", [] { return longModule("[", std::string(900, '[') + std::string(900, ']') + ",", "0]"); }},
    {"three times as long", [] { return std::string(3 * longestOutsideJson, '['); }},
};

// Places a module in a process of its own, and prints what it took.
bool placesWithinBounds(const LongModule& module) {
  constexpr double mostSeconds = 3;
  constexpr double mostMegabytes = 1536;
  const std::string text = module.make();
  std::fflush(stdout);
  malloc_trim(0);  // what the child begins with counts as taken
  const pid_t child = fork();
  if (child == 0) {
    const std::clock_t start = std::clock();
    const std::size_t scripts = place(text);
    const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;  // nothing in it waits
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    const double megabytes = static_cast<double>(used.ru_maxrss) / 1024;
    std::printf("%-28s %9.1f %9zu %9.2f %9.0f\n", module.what, static_cast<double>(text.size()) / (1U << 20U), scripts,
                seconds, megabytes);
    std::fflush(stdout);
    _exit(seconds <= mostSeconds && megabytes <= mostMegabytes ? 0 : 1);
  }
  int status = 1;
  return waitpid(child, &status, 0) == child && status == 0;
}

bool placeLongModules() {
  std::printf("\n%-28s %9s %9s %9s %9s\n", "module", "MB", "scripts", "s", "MB taken");
  bool within = true;
  for (const LongModule& module : longModules) {
    within = placesWithinBounds(module) && within;
  }
  return within;
}

}  // namespace

int main() {
  std::printf("%10s %18s %18s\n", "parts", "export, us each", "placing, us each");
  std::vector<double> exporting;
  std::vector<double> placing;
  for (const int parts : {2500, 5000, 10000}) {
    const std::string module = exportModule(parts);
    if (place(module) < static_cast<std::size_t>(parts) * 2) {
      std::fprintf(stderr, "not every part was placed\n");
      return 1;
    }
    exporting.push_back(medianMicroseconds(parts, [&] { exportModule(parts); }));
    placing.push_back(medianMicroseconds(parts, [&] { place(module); }));
    std::printf("%10d %18.2f %18.2f\n", parts, exporting.back(), placing.back());
  }
  std::printf("a part of 10000 against one of 2500: export %.2f, placing %.2f (1 is linear)\n",
              exporting.back() / exporting.front(), placing.back() / placing.front());
  if (!placeLongModules()) {
    std::fprintf(stderr, "a module took more than 3 s or 1.5 GB\n");
    return 1;
  }
  return 0;
}
