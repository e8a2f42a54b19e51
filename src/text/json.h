// JSON documents: `Json` owns one, `JsonView` reads it.
//
// Texts are byte strings: messages hold the host's code page (GBK), modules hold UTF-8, and both pass through
// unchanged. A text ends at its first NUL byte, since the library works on C strings. Member names are compared with
// case. Everything here may be used from any thread, one document from one thread at a time.
#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct cJSON;

namespace vernoxa::inline text {

// Reads a node that somebody else owns; valid as long as its document. An empty view has no members, no text and no
// number.
class JsonView {
 public:
  JsonView() = default;
  explicit JsonView(const cJSON* node) : node_(node) {}

  explicit operator bool() const { return node_ != nullptr; }
  bool isObject() const;
  bool isArray() const;

  // The first member of that name; an empty view if there is none.
  JsonView member(std::string_view name) const;
  // The text of a string node; `nullopt` for every other kind.
  std::optional<std::string_view> text() const;
  // A JSON number without its fraction, or a string that is a whole decimal number. A value that does not fit
  // saturates.
  std::optional<int> wholeNumber() const;
  // This node's name within its object; empty elsewhere.
  std::string_view name() const;
  // Members of an object or elements of an array.
  std::size_t size() const;

  class Iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = JsonView;
    using difference_type = std::ptrdiff_t;
    using pointer = const JsonView*;
    using reference = JsonView;
    explicit Iterator(const cJSON* node) : node_(node) {}
    JsonView operator*() const { return JsonView(node_); }
    Iterator& operator++();
    bool operator!=(const Iterator& other) const { return node_ != other.node_; }

   private:
    const cJSON* node_;
  };
  Iterator begin() const;
  Iterator end() const { return Iterator(nullptr); }

 private:
  friend class Json;
  const cJSON* node_ = nullptr;
};

// Owns a whole document. When memory runs out, adding throws std::bad_alloc and frees the value that was to be added.
class Json {
 public:
  struct Parsed;

  Json() = default;
  static Json object();
  static Json array();
  static Json string(std::string_view text);
  static Json number(double value);
  static Json boolean(bool value);
  static Json copyOf(JsonView view);

  // Parses the text up to its first NUL byte. What follows a complete value is ignored; nesting deeper than the
  // library's limit (1000) is a failure.
  static Parsed parse(const std::string& text);

  explicit operator bool() const { return node_ != nullptr; }
  JsonView view() const { return JsonView(node_.get()); }
  JsonView member(std::string_view name) const { return view().member(name); }

  // Adds at the end, also when a member of that name is there already. The added document becomes part of this one;
  // the view of it stays valid as long as this document.
  JsonView add(std::string_view name, Json value);
  JsonView add(std::string_view name, std::string_view text) { return add(name, Json::string(text)); }
  JsonView append(Json value);
  // The same on a node inside this document.
  JsonView addTo(JsonView object, std::string_view name, Json value);
  JsonView appendTo(JsonView array, Json value);
  // Gives the member a new value in its old place, or adds it.
  void set(JsonView object, std::string_view name, std::string_view text);

  // Indented with tabs, members one a line, "\n" between lines.
  std::string printFormatted() const;
  std::string printUnformatted() const;

 private:
  struct Release {
    void operator()(cJSON* node) const;
  };
  explicit Json(cJSON* node);
  std::unique_ptr<cJSON, Release> node_;
};

struct Json::Parsed {
  Json document;          // empty if the text is not valid JSON
  std::string errorRest;  // then: the text from the place where parsing stopped
};

}  // namespace vernoxa::inline text
