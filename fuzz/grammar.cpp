// Inputs that are right in form, made from the plug-in's own tables of requests, commands and records: what would take
// a fuzzer long to spell.
#include <array>
#include <random>

#include "drawing/shapes.h"
#include "plugin/command_table.h"
#include "plugin/request_table.h"
#include "support/hostile_values.h"
#include "system/fake_sockets.h"
#include "target.h"
#include "text/gbk_literal.h"
#include "text/json.h"

namespace vernoxa::fuzz {
namespace {

class Writer {
 public:
  explicit Writer(std::uint32_t seed) : random_(seed), hostile_(seed) {}

  std::size_t below(std::size_t limit) { return random_() % limit; }

  // A value as a host or companion sends it, now and then one that somebody made up.
  std::string value() {
    static constexpr std::array ordinary = {"R1",      "10k",   "0",          "1",       "-2.5",          "1e3",
                                            "100 200", "a.dsn", "C:\\a.dsn",  "Page",    u8"电阻[1]"_gbk, "Open",
                                            "{}",      "",      "C:\\m.json", "1,2 3,4", "RES",           "No file!"};
    return below(3) == 0 ? hostile_.next() : ordinary[below(ordinary.size())];
  }

  std::string request(std::span<const HandlerRow> rows) {
    const HandlerRow& row = rows[below(rows.size())];
    Json message = Json::object();
    message.add("Command", row.name);
    const JsonView data = message.add("Data", Json::object());
    for (const Member& member : row.members) {
      if (below(8) != 0) {
        message.addTo(data, member.name, memberValue(member));
      }
    }
    return value() + "\n" + message.printUnformatted();
  }

  // Commands one a line, their words between tabs; lists of records among them.
  std::string commands() {
    std::string text = value() + "\n";
    for (std::size_t lines = 1 + below(8); lines > 0; --lines) {
      const plugin::CommandRow& row = plugin::commandTable()[below(plugin::commandTable().size())];
      text += row.name;
      for (const Argument& argument : row.arguments.each) {
        text += "\t" + (argument.name != nullptr && below(2) == 0 ? record() : value());
      }
      text += "\n";
    }
    return text;
  }

  std::string module() {
    Json document = Json::object();
    const JsonView objects = document.add("children", Json::array());
    const JsonView library = document.add("lib", Json::array());
    for (std::size_t count = below(4); count > 0; --count) {
      document.appendTo(objects, item(drawing::Use::moduleObject, "name"));
      Json part = item(drawing::Use::nowhere, "Name");
      const JsonView elements = part.add("children", Json::array());
      for (std::size_t inner = below(3); inner > 0; --inner) {
        part.appendTo(elements, item(drawing::Use::modulePart, "Name"));
      }
      document.appendTo(library, std::move(part));
    }
    document.add("BoundingBox", std::to_string(below(500)) + " " + value());
    return document.printFormatted();
  }

  // Answers of a host to the link thread, one a line.
  std::string answers() {
    std::string text;
    for (std::size_t lines = 1 + below(8); lines > 0; --lines) {
      Json answer = Json::object();
      const JsonView data = answer.add("Data", Json::object());
      for (const char* const name : {"ProjectPath", "CloseFile", "PinCount", "Path"}) {
        if (below(2) == 0) {
          answer.addTo(data, name, Json::string(value()));
        }
      }
      answer.add("Result", below(4) == 0 ? "1" : "0");
      text += answer.printUnformatted() + "\n";
    }
    return text;
  }

  // Frames in pieces, each behind its size.
  std::string frames() {
    std::string stream;
    for (std::size_t count = 1 + below(3); count > 0; --count) {
      stream += frameOf(value());
    }
    std::string pieces;
    while (!stream.empty()) {
      const std::size_t size = std::min<std::size_t>(1 + below(below(2) == 0 ? 5 : 255), stream.size());
      pieces += static_cast<char>(size - 1) + stream.substr(0, size);
      stream.erase(0, size);
    }
    return pieces;
  }

 private:
  Json memberValue(const Member& member) {
    if (member.kind == MemberKind::number || (member.kind == MemberKind::textOrNumber && below(2) == 0)) {
      return Json::number(static_cast<double>(below(5)));
    }
    if (member.kind != MemberKind::array) {
      return Json::string(value());
    }
    Json elements = Json::array();
    for (std::size_t count = below(3); count > 0; --count) {
      if (below(2) == 0) {
        elements.append(Json::string(value()));
      } else {
        Json part = Json::object();
        part.add("PartRef", value());
        elements.append(std::move(part));
      }
    }
    return elements;
  }
  // A record of a kind of the table, as a Tcl list.
  std::string record() {
    const drawing::Shape& shape = drawing::shapes()[below(drawing::shapes().size())];
    std::string list(shape.kind);
    for (std::size_t count = below(drawing::Record::size + 2); count > 0; --count) {
      list += " {" + value() + "}";
    }
    return list;
  }
  // With members of the shapes for that use, properties and what is shown of them.
  Json item(drawing::Use use, const char* nameMember) {
    const drawing::Shape* shape = nullptr;
    do {
      shape = &drawing::shapes()[below(drawing::shapes().size())];
    } while (!shape->isFor(use));
    Json made = Json::object();
    made.add(nameMember, shape->name);
    const JsonView data = made.add("Data", Json::object());
    for (const drawing::ShapeMember& member : shape->members) {
      made.addTo(data, member.name, Json::string(value()));
    }
    const JsonView properties = made.add("Property", Json::object());
    made.addTo(properties, value(), Json::string(value()));
    for (const char* const name : {"PartIndex", "Designator", "Type", "BoundingBox"}) {
      made.add(name, value());
    }
    const JsonView shown = made.add("DispProperty", Json::array());
    made.addTo(made.appendTo(shown, Json::object()), "Name", Json::string(value()));
    return made;
  }

  std::mt19937 random_;
  HostileValues hostile_;
};

}  // namespace

std::string rightInForm(std::string_view target, std::uint32_t seed) {
  Writer writer(seed);
  return target == "companion_packet" ? writer.request(plugin::companionHandlers())
         : target == "thread_packet"  ? writer.request(plugin::threadHandlers())
         : target == "commands"       ? writer.commands()
         : target == "module_file"    ? writer.module()
         : target == "link_thread"    ? writer.answers()
         : target == "frame"          ? writer.frames()
                                      : std::string();
}

}  // namespace vernoxa::fuzz
