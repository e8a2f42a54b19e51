// Exports pages of 1,000 to 1,000,000 records through the plug-in's own Tcl commands, and compares with others that are
// sent the same records in the same run: one that only reads their elements, and one that builds the page as a tree of
// cJSON nodes and prints it. Symbols and graphic libraries are compared with pages by the bytes of their files.
#include <cJSON.h>
#include <malloc.h>
#include <tcl.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

#include "drawing/page_text.h"
#include "drawing/record.h"
#include "drawing/shapes.h"
#include "plugin/plug_in.h"
#include "plugin/start_up.h"
#include "system/fake_world.h"
#include "tcl/arguments.h"

namespace {

using namespace vernoxa;

constexpr int largest = 1'000'000;

std::size_t heapBytes() {
  const auto info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

// Takes every file, counts its bytes and keeps none.
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

  std::size_t bytes = 0;     // of the last file
  std::size_t mostHeap = 0;  // while it was written

 private:
  class Output final : public OutputFile {
   public:
    explicit Output(CountingFiles& files) : files_(files) { files_.bytes = 0; }
    bool write(std::string_view piece) override {
      files_.mostHeap = files_.bytes == 0 ? heapBytes() : files_.mostHeap;
      files_.bytes += piece.size();
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

cJSON* tree = nullptr;  // the array of elements

int addToTree(ClientData, Tcl_Interp*, int count, Tcl_Obj* const* objects) {
  const TclList list = Arguments(count, objects).list(1);
  const drawing::Record record(list);
  cJSON* const node = cJSON_CreateObject();
  cJSON* const attributes = cJSON_CreateObject();
  const drawing::Shape* const shape = drawing::shapeOf(drawing::Use::page, record.kind());
  cJSON_AddStringToObject(node, "name", std::string(shape->name).c_str());
  for (const drawing::ShapeMember& member : shape->members) {
    cJSON_AddStringToObject(member.name.empty() ? node : attributes,
                            member.name.empty() ? "value" : std::string(member.name).c_str(),
                            member.valueOf(record).c_str());
  }
  cJSON_AddItemToObject(node, "attr", attributes);
  cJSON_AddItemToArray(tree, node);
  return TCL_OK;
}

// The road of a record, as far as each stage goes: nothing stands around it as around a command of the plug-in.
enum Stage { readOnly, andKept, andConverted };
FakeWorld stageWorld;
const TextConverter stageText{stageWorld.codePage, stageWorld.messages};
drawing::Elements elements(drawing::Use::page, drawing::Elements::In::array, 4);

template <Stage stage>
int goTo(ClientData, Tcl_Interp*, int count, Tcl_Obj* const* objects) {
  drawing::Record record(Arguments(count, objects).passingList(1));
  const bool kept = stage >= andKept && elements.add(record, drawing::Encoding::asGiven);
  if (stage >= andConverted && !kept) {
    record.showInCodePage(stageText, true);
    elements.add(record, drawing::Encoding::utf8);
  }
  sink += record.kind().size();
  return TCL_OK;
}

class Bench {
 public:
  explicit Bench(const std::string& recordsScript) : world_(worldOf(fake_, files_)) {
    plugin::startUp(interp_, plugIn_);
    struct Command {
      const char* name;
      Tcl_ObjCmdProc* run;
    };
    for (const auto& [name, command] :
         {Command{"readElements", readElements}, Command{"addToTree", addToTree}, Command{"readOnly", goTo<readOnly>},
          Command{"andKept", goTo<andKept>}, Command{"andConverted", goTo<andConverted>}}) {
      Tcl_CreateObjCommand(interp_, name, command, nullptr, nullptr);
    }
    if (Tcl_EvalFile(interp_, recordsScript.c_str()) != TCL_OK) {
      std::fprintf(stderr, "%s\n", Tcl_GetStringResult(interp_));
    }
  }
  ~Bench() {
    plugin::setActivePlugIn(nullptr);
    Tcl_DeleteInterp(interp_);
  }
  Bench(const Bench&) = delete;
  Bench& operator=(const Bench&) = delete;

  double secondsFor(const std::string& procedure, int count) {
    const std::string script = procedure + " " + std::to_string(count);
    const double start = secondsUsed();
    run(script);
    return secondsUsed() - start;
  }
  double secondsFor(Stage stage, int count) {
    elements = drawing::Elements(drawing::Use::page, drawing::Elements::In::array, 4);
    return secondsFor(stage == readOnly  ? "sendRecords readOnly"
                      : stage == andKept ? "sendRecords andKept"
                                         : "sendRecords andConverted",
                      count);
  }
  double secondsToBuildTree(int count) {
    const double start = secondsUsed();
    cJSON* const page = cJSON_CreateObject();
    tree = cJSON_AddArrayToObject(page, "children");
    run("sendRecords addToTree " + std::to_string(count));
    char* const printed = cJSON_Print(page);
    sink += withDosLineEnds(printed).size();
    cJSON_free(printed);
    cJSON_Delete(page);
    return secondsUsed() - start;
  }
  void run(const std::string& script) {
    if (Tcl_Eval(interp_, script.c_str()) != TCL_OK) {
      throw std::runtime_error(script + ": " + Tcl_GetStringResult(interp_));
    }
  }
  CountingFiles& files() { return files_; }

 private:
  static plugin::World worldOf(FakeWorld& fake, CountingFiles& files) {
    const plugin::World all = fake.world();
    return {all.clock,   all.codePage, files,        all.guids,    all.locks,     all.processes, all.random,
            all.sockets, all.output,   all.messages, all.registry, all.clipboard, all.pictures,  all.desktop};
  }
  // Of the processor, in our code and in the system for us: other programs must not show.
  static double secondsUsed() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
  }
  FakeWorld fake_;
  CountingFiles files_;
  plugin::World world_;
  plugin::PlugIn plugIn_{world_, pathOf("C:\\App\\bin\\Vernoxa64.dll"),
                         plugin::crashLogsOf(world_, pathOf("C:\\App\\bin")), nullptr,
                         // NOLINTNEXTLINE(performance-unnecessary-value-param): the type is given
                         [](std::shared_ptr<plugin::LinkThreadParts>) {}};
  Tcl_Interp* interp_ = Tcl_CreateInterp();
};

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

double least(const std::vector<double>& values) {
  return *std::min_element(values.begin(), values.end());
}

bool allWithinLimits = true;

double within(double limit, double value) {
  allWithinLimits = allWithinLimits && value <= limit;
  return value;
}

// How often each is measured: enough for a median that stays the same when other programs run beside.
int runsOf(int count) {
  return std::clamp(6'000'000 / count, 15, 301);
}

// What one thing costs against another: both are measured in turns, and each of the one is compared with the mean of
// the other's just before and just after, so that whatever else the machine does touches both alike. The median of
// these, and the least times.
struct Compared {
  double ratio;
  double one;
  double other;
};

template <class One, class Other>
Compared compare(int runs, const One& one, const Other& other) {
  std::vector<double> ratios, ones, others{other()};
  for (int run = 0; run < runs; ++run) {
    ones.push_back(one());
    others.push_back(other());
    ratios.push_back(2 * ones.back() / (others.end()[-2] + others.back()));
  }
  return {median(ratios), least(ones), least(others)};
}

// What a record costs on each part of its road, in ns: the least times, one part less than the next.
void tellWhereTimeGoes(Bench& bench, int count) {
  std::vector<double> passing, kept, converted, commands, writes;
  for (int run = 0; run < runsOf(count) / 3; ++run) {
    passing.push_back(bench.secondsFor(readOnly, count));
    kept.push_back(bench.secondsFor(andKept, count));
    converted.push_back(bench.secondsFor(andConverted, count));
    bench.run("beginPage");
    commands.push_back(bench.secondsFor("sendRecords addToPageList", count));
    writes.push_back(bench.secondsFor("endPage;#", count));
  }
  const auto nanoseconds = [count](double seconds) { return seconds / count * 1e9; };
  std::printf(
      "%10s of a record's %.0f ns: Tcl's loop and reading %.0f, appending %.0f, converting (of one in a hundred) %.0f, "
      "the command around it %.0f, writing %.0f\n",
      "", nanoseconds(least(commands) + least(writes)), nanoseconds(least(passing)),
      nanoseconds(least(kept) - least(passing)), nanoseconds(least(converted) - least(kept)),
      nanoseconds(least(commands) - least(converted)), nanoseconds(least(writes)));
}

double measurePages(Bench& bench, int count) {
  std::size_t heap = 0;
  const auto read = [&] { return bench.secondsFor("sendRecords readElements", count); };
  const Compared exporting = compare(
      runsOf(count),
      [&] {
        const std::size_t before = heapBytes();
        const double seconds = bench.secondsFor("exportPage", count);
        heap = bench.files().mostHeap - before;
        return seconds;
      },
      read);
  const auto file = static_cast<double>(bench.files().bytes);
  const double memory = static_cast<double>(heap) / file;
  if (count >= 30'000) {
    within(2.0, exporting.ratio);
    within(0.4, memory);
  }
  std::printf("%10d %14.0f %16.0f %10.2f %10.0f %10.2f\n", count, exporting.other / count * 1e9,
              exporting.one / count * 1e9, exporting.ratio, file, memory);
  tellWhereTimeGoes(bench, count);
  return exporting.one;
}

// Time for a byte of the file, against that of a page, with reading the lists and Tcl's own loop in it. A page's record
// is mostly a line, seven values in 234 bytes; a symbol's is mostly a pin, four values in 157, or 145 in a library, and
// one in eleven opens a group. So for each byte more lists are read and more records found than on a page.
void measureOthers(Bench& bench) {
  constexpr int count = 100'000;
  const auto perByte = [&bench](const char* procedure) {
    const double seconds = bench.secondsFor(procedure, count);
    return seconds / static_cast<double>(bench.files().bytes);
  };
  for (const auto& [procedure, name] :
       {std::pair{"exportSymbols", "symbols"}, {"exportLibrary", "a graphic library"}}) {
    const Compared compared = compare(
        runsOf(count), [&, what = procedure] { return perByte(what); }, [&] { return perByte("exportPage"); });
    std::printf("a byte of %s against one of a page: %.2f (limit 1.3)\n", name, within(1.3, compared.ratio));
  }
}

void measure() {
  Bench bench(BENCH_FOLDER "/drawing_records.tcl");
  std::printf("%10s %14s %16s %10s %10s %10s\n", "records", "reading, ns", "exporting, ns", "ratio", "file, bytes",
              "memory");
  double seconds = 0;
  for (const int count : {1'000, 30'000, largest}) {
    seconds = measurePages(bench, count);
  }
  std::printf("(limits: ratio 2.0 and memory 0.4 of the file, from 30,000 records on)\n");
  measureOthers(bench);
  const double treeSeconds = bench.secondsToBuildTree(largest);
  std::printf("%d records: %.2f s as a tree of nodes, %.2f s here; share %.3f (limit 0.2)\n", largest, treeSeconds,
              seconds, within(0.2, seconds / treeSeconds));
}

}  // namespace

int main(int, char** arguments) {
  try {
    Tcl_FindExecutable(arguments[0]);
    measure();
    if (!allWithinLimits) {
      std::fputs("FAILED: more than a limit allows\n", stderr);
    }
    return sink == 0 || !allWithinLimits ? 1 : 0;
  } catch (const std::exception& error) {
    std::fputs(error.what(), stderr);
    return 1;
  }
}
