// Types and functions to write the tables of requests, commands, messages and host procedures with.
//
// A row says what it takes, what it calls and what it answers, with a sentence for each. Dispatch and its checks, the
// fuzzer, the tests and the documents all read the same rows. Everything is known when compiling. The sentences are
// plain ASCII, since the documents are in UTF-8, but string literals of the plug-in in the code page.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <string>

namespace vernoxa::plugin {
class Session;
}  // namespace vernoxa::plugin

namespace vernoxa::inline dispatch {

// A short list that is stored in the row itself.
template <class Item, std::size_t most>
struct Few {
  std::array<Item, most> items{};
  std::size_t count = 0;

  constexpr const Item* begin() const { return items.data(); }
  constexpr const Item* end() const { return items.data() + count; }
};

// Whether the longest of these lists in a table fills its place: room that no row needs is kept in all of them.
template <class Rows, class List>
consteval bool longestFills(const Rows& rows, List list) {
  const auto length = [list](const auto& row) { return std::invoke(list, row).count; };
  const auto longest = std::invoke(list, *std::ranges::max_element(rows, {}, length));
  return longest.count == longest.items.size();
}

enum class MemberKind { text, number, textOrNumber, array };

// A member of "Data".
struct Member {
  const char* name = nullptr;  // "*" stands for all members that the row does not name
  const char* meaning = nullptr;
  MemberKind kind = MemberKind::text;
  // A request that lacks a needed member, or has it in another kind, is refused before anything is evaluated. The
  // plug-in's own messages always have their needed members.
  bool needed = true;
  // Stores the text before anything is evaluated, "" if the member is missing. "Data" is needed then.
  void (*keep)(plugin::Session&, const std::string& text) = nullptr;
  const char* values = nullptr;  // the only values allowed, with | between them; "" allows only the empty text
  // What the objects of an array hold; an array without it holds texts.
  const Member* itemMembers = nullptr;
  std::size_t itemMemberCount = 0;

  consteval Member oneOf(const char* allowed) const {
    Member member = *this;
    member.values = allowed;
    return member;
  }
  consteval Member keptBy(void (*function)(plugin::Session&, const std::string& text)) const {
    Member member = *this;
    member.keep = function;
    return member;
  }
};

constexpr std::size_t mostMembers = 13;
using Members = Few<Member, mostMembers>;

// All procedures of the host that may be called, each a row of the table of host procedures.
constexpr std::size_t mostCalls = 8;
using Calls = Few<const char*, mostCalls>;

// An argument of one of the plug-in's Tcl commands or of a procedure of the host.
struct Argument {
  const char* name;
  const char* meaning;
  bool optional = false;
};

// The answer to a request that was accepted. A refused request is answered with "command error", whatever its row says.
struct Answer {
  Few<Member, 3> data;            // members of "Data" when "Result" is "0"
  bool emptyErrInfo = false;      // then an empty "ErrInfo" stands beside "Result"
  const char* failure = nullptr;  // what "ErrInfo" says when "Result" is "1"; null if it never is
  bool failureInData = false;     // "ErrInfo" is the one member of "Data" then, else it stands beside "Result"
  bool given = true;              // false: there is no reply
  const char* follows = nullptr;  // the message that comes instead of a reply

  consteval Answer withEmptyErrInfo() const {
    Answer answer = *this;
    answer.emptyErrInfo = true;
    return answer;
  }
  consteval Answer orFails(const char* errInfo) const {
    Answer answer = *this;
    answer.failure = errInfo;
    return answer;
  }
  consteval Answer orFailsInData(const char* errInfo) const {
    Answer answer = orFails(errInfo);
    answer.failureInData = true;
    return answer;
  }
};

namespace row {

consteval Member text(const char* name, const char* meaning) {
  return {name, meaning, MemberKind::text};
}

// A JSON number, whose fraction is cut off, or a text that is a whole decimal number.
consteval Member number(const char* name, const char* meaning) {
  return {name, meaning, MemberKind::number};
}

consteval Member textOrNumber(const char* name, const char* meaning) {
  return {name, meaning, MemberKind::textOrNumber};
}

consteval Member texts(const char* name, const char* meaning) {
  return {name, meaning, MemberKind::array};
}

template <std::size_t count>
consteval Member objects(const char* name, const std::array<Member, count>& members, const char* meaning) {
  return {name, meaning, MemberKind::array, true, nullptr, nullptr, members.data(), count};
}

consteval Member optional(Member member) {
  member.needed = false;
  return member;
}

template <class... Each>
consteval Members needs(Each... members) {
  return {{members...}, sizeof...(members)};
}

template <class... Names>
consteval Calls calls(Names... procedures) {
  return {{procedures...}, sizeof...(procedures)};
}

consteval Argument argument(const char* name, const char* meaning) {
  return {name, meaning};
}

consteval Argument optional(Argument argument) {
  argument.optional = true;
  return argument;
}

template <class... Each>
consteval Answer answers(Each... members) {
  Answer answer;
  answer.data = {{members...}, sizeof...(members)};
  return answer;
}

consteval Answer answersNothing() {
  Answer answer;
  answer.given = false;
  return answer;
}

consteval Answer isFollowedBy(const char* message) {
  Answer answer = answersNothing();
  answer.follows = message;
  return answer;
}

}  // namespace row
}  // namespace vernoxa::inline dispatch
