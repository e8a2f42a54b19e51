// Exports pages of 10,000 to 1,000,000 records through the plug-in's own Tcl commands, and compares with two others
// that are sent the same records in the same run: one that only reads their elements, and one that builds the page as a
// tree of cJSON nodes and prints it.
//
// Times are taken with a file that takes every byte and keeps none, memory with a real file.
#include <cJSON.h>
#include <sys/resource.h>
#include <tcl.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "drawing/page_elements.h"
#include "drawing/record.h"
#include "plugin/plug_in.h"
#include "plugin/start_up.h"
#include "system/fake_world.h"
#include "tcl/arguments.h"

namespace {

using namespace vernoxa;

constexpr int runs = 5;
constexpr int largest = 1'000'000;

// Takes page files and counts their bytes; keeps them in `target` when that is open.
class CountingFiles final : public Files {
 public:
  std::uint32_t attributes(const FilePath&) override { return noAttributes; }
  FilePath fullPath(const FilePath& path) override { return path; }
  FilePath shortPath(const FilePath& path) override { return path; }
  std::uint32_t reparseTag(const FilePath&) override { return 0; }
  std::optional<std::string> readStart(const FilePath&, std::size_t) override { return std::nullopt; }
  std::unique_ptr<OutputFile> openForAppending(const FilePath&) override { return nullptr; }
  std::unique_ptr<OutputFile> create(const FilePath&) override { return std::make_unique<Output>(*this); }
  bool createFolder(const FilePath&) override { return true; }
  bool removeFile(const FilePath&) override { return true; }
  bool removeFolder(const FilePath&) override { return true; }
  bool replaceFile(const FilePath&, const FilePath&) override { return true; }
  CopyResult copyFile(const FilePath&, const FilePath&) override { return {1}; }
  std::vector<FolderEntry> entries(const FilePath&) override { return {}; }

  std::ofstream target;
  std::size_t bytes = 0;

 private:
  class Output final : public OutputFile {
   public:
    explicit Output(CountingFiles& files) : files_(files) { files_.bytes = 0; }
    bool write(std::string_view piece) override {
      files_.bytes += piece.size();
      if (files_.target.is_open()) {
        files_.target.write(piece.data(), static_cast<std::streamsize>(piece.size()));
      }
      return true;
    }

   private:
    CountingFiles& files_;
  };
};

std::size_t sink = 0;  // what is read goes here, so that the reading is not left out

int readElements(ClientData, Tcl_Interp*, int count, Tcl_Obj* const* objects) {
  const TclList list = Arguments(count, objects).list(1);
  for (int index = 0; index < list.size(); ++index) {
    sink += list.text(index).size();
  }
  return TCL_OK;
}

class TreeSink final : public ElementSink {
 public:
  cJSON* children = nullptr;

  void add(const ElementForm& form, const Record& record) override {
    cJSON* const node = cJSON_CreateObject();
    cJSON_AddStringToObject(node, "name", std::string(form.tag()).c_str());
    if (form.shownText() != nullptr) {
      cJSON_AddStringToObject(node, "value", std::string(form.shownText()(record)).c_str());
    }
    cJSON* const attributes = cJSON_AddObjectToObject(node, "attr");
    for (const Attribute& attribute : form.attributes()) {
      value_.clear();
      for (const ValuePiece& piece : attribute.pieces) {
        value_.append(piece.value != nullptr ? piece.value(record) : piece.text);
      }
      cJSON_AddStringToObject(attributes, std::string(attribute.name).c_str(), value_.c_str());
    }
    cJSON_AddItemToArray(children, node);
  }

 private:
  std::string value_;
};

TreeSink tree;

int addToTree(ClientData, Tcl_Interp*, int count, Tcl_Obj* const* objects) {
  const TclList list = Arguments(count, objects).list(1);
  Record record;
  for (int index = 0; index < std::min(list.size(), static_cast<int>(Record::size)); ++index) {
    record.set(static_cast<std::size_t>(index), list.text(index));
  }
  drawPageRecord(record, tree);
  return TCL_OK;
}

class Bench {
 public:
  explicit Bench(const std::string& recordsScript) : world_(worldOf(fake_, files_)) {
    startUp(interp_, plugIn_);
    Tcl_CreateObjCommand(interp_, "readElements", readElements, nullptr, nullptr);
    Tcl_CreateObjCommand(interp_, "addToTree", addToTree, nullptr, nullptr);
    if (Tcl_EvalFile(interp_, recordsScript.c_str()) != TCL_OK) {
      std::fprintf(stderr, "%s\n", Tcl_GetStringResult(interp_));
    }
  }
  ~Bench() {
    setActivePlugIn(nullptr);
    Tcl_DeleteInterp(interp_);
  }
  Bench(const Bench&) = delete;
  Bench& operator=(const Bench&) = delete;

  double secondsToRead(int count) { return secondsFor("sendRecords readElements " + std::to_string(count)); }
  double secondsToExport(int count) { return secondsFor("exportPage " + std::to_string(count)); }
  double secondsToBuildTree(int count) {
    const double start = secondsUsed();
    cJSON* const page = cJSON_CreateObject();
    tree.children = cJSON_AddArrayToObject(page, "children");
    run("sendRecords addToTree " + std::to_string(count));
    char* const printed = cJSON_Print(page);
    sink += withDosLineEnds(printed).size();
    cJSON_free(printed);
    cJSON_Delete(page);
    return secondsUsed() - start;
  }
  CountingFiles& files() { return files_; }

 private:
  static World worldOf(FakeWorld& fake, CountingFiles& files) {
    const World all = fake.world();
    return {all.clock,   all.codePage, files,        all.guids,    all.locks,     all.processes, all.random,
            all.sockets, all.output,   all.messages, all.registry, all.clipboard, all.pictures,  all.desktop};
  }
  // Of the processor, in our code and in the system for us: other programs must not show.
  static double secondsUsed() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
  }
  double secondsFor(const std::string& script) {
    const double start = secondsUsed();
    run(script);
    return secondsUsed() - start;
  }
  void run(const std::string& script) {
    if (Tcl_Eval(interp_, script.c_str()) != TCL_OK) {
      throw std::runtime_error(script + ": " + Tcl_GetStringResult(interp_));
    }
  }

  FakeWorld fake_;
  CountingFiles files_;
  World world_;
  PlugIn plugIn_{world_, pathOf("C:\\App\\bin\\Vernoxa64.dll"), crashLogsOf(world_, pathOf("C:\\App\\bin")), nullptr,
                 [](std::shared_ptr<Session>) {}};  // NOLINT(performance-unnecessary-value-param): the type is given
  Tcl_Interp* interp_ = Tcl_CreateInterp();
};

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

double peakMegabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024;
}

// Must be the first export of the process, whose peak is measured.
void measureMemory(Bench& bench) {
  const std::filesystem::path path = std::filesystem::temp_directory_path() / "vernoxa_export_bench.json";
  const double before = peakMegabytes();
  bench.files().target.open(path, std::ios::binary);
  bench.secondsToExport(largest);
  bench.files().target.close();
  const double fileMegabytes = static_cast<double>(std::filesystem::file_size(path)) / 1024 / 1024;
  std::filesystem::remove(path);
  std::printf(
      "peak memory of the process at %d records, file on disk: %.0f MB, %.0f MB of them before; "
      "file %.0f MB; ratio %.2f (limit 1.5)\n",
      largest, peakMegabytes(), before, fileMegabytes, peakMegabytes() / fileMegabytes);
}

struct Measured {
  double exportSeconds;
  double ratio;
};

// Medians of five pairs.
Measured measureTimes(Bench& bench, int count) {
  std::vector<double> reads;
  std::vector<double> exports;
  std::vector<double> ratios;
  for (int run = 0; run < runs; ++run) {
    reads.push_back(bench.secondsToRead(count));
    exports.push_back(bench.secondsToExport(count));
    ratios.push_back(exports.back() / reads.back());
  }
  std::printf("%10d %14.0f %16.0f %10.2f %10zu\n", count, median(reads) / count * 1e9, median(exports) / count * 1e9,
              median(ratios), bench.files().bytes);
  return {median(exports), median(ratios)};
}

void measure() {
  Bench bench(BENCH_FOLDER "/drawing_records.tcl");
  measureMemory(bench);
  std::printf("%10s %14s %16s %10s %10s\n", "records", "reading, ns", "exporting, ns", "ratio", "file, bytes");
  std::vector<Measured> measured;
  for (const int count : {10'000, 100'000, largest}) {
    measured.push_back(measureTimes(bench, count));
  }
  const auto [least, most] = std::minmax_element(measured.begin(), measured.end(),
                                                 [](const auto& a, const auto& b) { return a.ratio < b.ratio; });
  std::printf("ratio at %d records: %.2f (limit 4); most to least ratio: %.2f (limit 1.25)\n", largest,
              measured.back().ratio, most->ratio / least->ratio);
  const double treeSeconds = bench.secondsToBuildTree(largest);
  std::printf("%d records: %.2f s as a tree of nodes, %.2f s here; share %.3f (limit 0.2)\n", largest, treeSeconds,
              measured.back().exportSeconds, measured.back().exportSeconds / treeSeconds);
}

}  // namespace

int main(int, char** arguments) {
  try {
    Tcl_FindExecutable(arguments[0]);
    measure();
    return sink == 0 ? 1 : 0;
  } catch (const std::exception& error) {
    std::fputs(error.what(), stderr);
    return 1;
  }
}
