#include "text/json.h"

#include <cJSON.h>

#include <charconv>
#include <limits>
#include <mutex>
#include <new>

namespace vernoxa::inline text {
namespace {

// The library keeps a parse error in a global variable, and two threads parse.
std::mutex& parsing() {
  static std::mutex mutex;
  return mutex;
}

cJSON* writable(const cJSON* node) {
  return const_cast<cJSON*>(node);  // views are handed out by the document that is being changed
}

std::string takePrinted(char* printed) {
  if (printed == nullptr) {
    throw std::bad_alloc();
  }
  const std::unique_ptr<char, decltype(&cJSON_free)> owner(printed, &cJSON_free);
  return std::string(printed);
}

std::optional<int> decimal(std::string_view text) {
  const bool negative = !text.empty() && text.front() == '-';
  const std::string_view digits = text.substr(negative ? 1 : 0);
  if (digits.empty() || digits.find_first_not_of("0123456789") != std::string_view::npos) {
    return std::nullopt;
  }
  int value = 0;
  if (std::from_chars(text.begin(), text.end(), value).ec == std::errc::result_out_of_range) {
    return negative ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max();
  }
  return value;
}

}  // namespace

bool JsonView::isObject() const {
  return cJSON_IsObject(node_) != 0;
}

bool JsonView::isArray() const {
  return cJSON_IsArray(node_) != 0;
}

JsonView JsonView::member(std::string_view name) const {
  if (!isObject()) {
    return {};
  }
  for (const JsonView child : *this) {
    if (child.name() == name) {
      return child;
    }
  }
  return {};
}

std::optional<std::string_view> JsonView::text() const {
  if (cJSON_IsString(node_) == 0) {
    return std::nullopt;
  }
  return std::string_view(node_->valuestring);
}

std::optional<int> JsonView::wholeNumber() const {
  if (cJSON_IsNumber(node_) != 0) {
    return node_->valueint;  // the library cuts and saturates
  }
  const auto string = text();
  return string ? decimal(*string) : std::nullopt;
}

std::string_view JsonView::name() const {
  return node_ != nullptr && node_->string != nullptr ? std::string_view(node_->string) : std::string_view();
}

std::size_t JsonView::size() const {
  std::size_t count = 0;
  for (Iterator child = begin(); child != end(); ++child) {
    ++count;
  }
  return count;
}

JsonView::Iterator JsonView::begin() const {
  return Iterator(isObject() || isArray() ? node_->child : nullptr);
}

JsonView::Iterator& JsonView::Iterator::operator++() {
  node_ = node_->next;
  return *this;
}

void Json::Release::operator()(cJSON* node) const {
  cJSON_Delete(node);
}

Json::Json(cJSON* node) : node_(node) {
  if (node == nullptr) {
    throw std::bad_alloc();
  }
}

Json Json::object() {
  return Json(cJSON_CreateObject());
}

Json Json::array() {
  return Json(cJSON_CreateArray());
}

Json Json::string(std::string_view text) {
  return Json(cJSON_CreateString(std::string(text).c_str()));
}

Json Json::number(double value) {
  return Json(cJSON_CreateNumber(value));
}

Json Json::boolean(bool value) {
  return Json(cJSON_CreateBool(value));
}

Json Json::copyOf(JsonView view) {
  return Json(cJSON_Duplicate(view.node_, true));
}

Json::Parsed Json::parse(const std::string& text) {
  const char* const begin = text.c_str();
  const char* end = begin;
  cJSON* node = nullptr;
  {
    const std::lock_guard lock(parsing());
    // The library does not say whether the text is invalid or memory ran out, so it gets a second try.
    for (int look = 0; node == nullptr && look < 2; ++look) {
      // The terminating NUL belongs to what the library may read.
      node = cJSON_ParseWithLengthOpts(begin, std::string_view(begin).size() + 1, &end, 0);
    }
  }
  if (node == nullptr) {
    // Never false: the library says of every fault where it is.
    return {Json(), std::string(end != nullptr ? end : begin)};
  }
  return {Json(node), {}};
}

JsonView Json::add(std::string_view name, Json value) {
  return addTo(view(), name, std::move(value));
}

JsonView Json::append(Json value) {
  return appendTo(view(), std::move(value));
}

JsonView Json::addTo(JsonView object, std::string_view name, Json value) {
  const JsonView added = value.view();
  if (cJSON_AddItemToObject(writable(object.node_), std::string(name).c_str(), value.node_.get()) == 0) {
    throw std::bad_alloc();
  }
  static_cast<void>(value.node_.release());
  return added;
}

JsonView Json::appendTo(JsonView array, Json value) {
  const JsonView added = value.view();
  // Never true: it fails for a null pointer only, which the owner type cannot hold.
  if (cJSON_AddItemToArray(writable(array.node_), value.node_.get()) == 0) {
    throw std::bad_alloc();
  }
  static_cast<void>(value.node_.release());
  return added;
}

void Json::set(JsonView object, std::string_view name, std::string_view text) {
  const JsonView old = object.member(name);
  if (!old) {
    addTo(object, name, Json::string(text));
    return;
  }
  Json value = Json::string(text);
  cJSON* const node = value.node_.get();
  node->string = writable(old.node_)->string;  // the name moves over with the place
  writable(old.node_)->string = nullptr;
  cJSON_ReplaceItemViaPointer(writable(object.node_), writable(old.node_), value.node_.release());
}

std::string Json::printFormatted() const {
  return takePrinted(cJSON_Print(node_.get()));
}

std::string Json::printUnformatted() const {
  return takePrinted(cJSON_PrintUnformatted(node_.get()));
}

}  // namespace vernoxa::inline text
