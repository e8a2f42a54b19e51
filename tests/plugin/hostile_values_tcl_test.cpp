// Whatever stands in a message, its row runs the same procedures of the host as ordinary values do: asked of a real
// interpreter, which records every command that it would run.
#include <gtest/gtest.h>

#include "plugin/request_table.h"
#include "support/hostile_values.h"
#include "support/tcl_interp_tcl.h"
#include "system/fake_world.h"
#include "tcl/tcl_script_host.h"

namespace vernoxa::plugin {
namespace {

constexpr int messagesOfEachRow = 4000;

class HostileValuesTest : public testing::Test, protected FakeSession {
 protected:
  HostileValuesTest() {
    interp_.recordEverything();
    interp_.define("unknown", "1");
    interp_.define("list", "inner");
  }

  // A text for each member that may be one, made by `next`; lists have two elements of both shapes that rows read.
  template <typename Next>
  static Json dataFor(const HandlerRow& row, Next next) {
    Json data = Json::object();
    for (const Member& member : row.members) {
      if (member.kind == MemberKind::array) {
        Json elements = Json::array();
        elements.append(Json::string(next()));
        Json part = Json::object();
        part.add("PartRef", next());
        elements.append(std::move(part));
        data.add(member.name, std::move(elements));
      } else if (member.kind == MemberKind::number) {
        data.add(member.name, Json::number(3));
      } else {
        data.add(member.name, next());
      }
    }
    return data;
  }

  // The procedures that a message has run, in their order.
  std::string ran(std::span<const HandlerRow> rows, const HandlerRow& row, Json data) {
    Json message = Json::object();
    message.add("Command", row.name);
    message.add("Data", std::move(data));
    text_ = message.printUnformatted();
    interp_.calls.clear();
    replyTo({rows, nullptr, ""}, text_, host_);
    std::string names;
    for (const Words& call : interp_.calls) {
      const std::string name = call.front() == "unknown" ? call[1] : call.front();
      names += name.substr(0, name.find('"')) + "\n";  // a joined text begins its command's name with the procedure's
    }
    return names;
  }

  void tryRows(std::span<const HandlerRow> rows) {
    for (const HandlerRow& row : rows) {
      const std::string expected = ran(rows, row, dataFor(row, [] { return std::string("a1"); }));
      for (int count = 0; count < messagesOfEachRow; ++count) {
        const std::string got = ran(rows, row, dataFor(row, [&] { return begun(values_.next()); }));
        ASSERT_EQ(got, expected) << text_;
      }
    }
  }

  // Rows tell an empty or blank value from others.
  static std::string begun(const std::string& value) {
    return value.find_first_not_of(" \t\n\r\v\f") == 0 ? value : "a" + value;
  }

  TclInterp interp_;
  TclScriptHost host_{interp_.get()};
  HostileValues values_;
  std::string text_;
};

TEST_F(HostileValuesTest, CompanionsMessages) {
  tryRows(companionHandlers());
}

TEST_F(HostileValuesTest, LinkThreadsMessages) {
  tryRows(threadHandlers());
}

}  // namespace
}  // namespace vernoxa::plugin
