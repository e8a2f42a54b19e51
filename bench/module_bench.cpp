// Export and placement of shared modules by their number of library parts: the cost of a part must not grow with it.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "sharing/module_document.h"
#include "sharing/placement.h"
#include "support/fake_script_host.h"
#include "system/fake_world.h"

namespace {

using namespace vernoxa;
using Record = std::vector<std::string>;

constexpr int runs = 5;
constexpr const char* moduleFile = "C:\\Mods\\ModuleLib.json";

void add(ModuleDocument& document, const Record& record) {
  document.addLibraryRecord([&](int index) {
    return static_cast<std::size_t>(index) < record.size() ? std::string_view(record[static_cast<std::size_t>(index)])
                                                           : std::string_view();
  });
}

// Each part has a body and two pins, as a resistor has.
std::string exportModule(int parts) {
  ModuleDocument document;
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

std::size_t place(const std::string& module) {
  FakeServices with;
  with.state.installDirectory = pathOf("C:\\App");
  with.fake.files.addFile("C:\\App\\config\\Resource\\Empty.olb", "OLB");
  with.fake.files.addFile(moduleFile, module);
  with.state.placement.dsnDatPath = moduleFile;
  FakeScriptHost host;
  placeModule(host, with.services);
  return host.scripts.size();
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
  return 0;
}
