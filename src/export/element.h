// A drawing element without children: an SVG tag and its attributes, all values texts.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace vernoxa {

// A value in the pieces that it is joined from: most are views of tables and records, and are copied only once, to
// their place in the document.
using TextPieces = std::span<const std::string_view>;

// Tag, names and texts are views that must outlive the element. UTF-8.
class Element {
 public:
  explicit Element(std::string_view tag) : tag_(tag) {}

  // Adds an attribute behind the others. std::out_of_range when there are more than any element has.
  template <class... Pieces>
  Element& attribute(std::string_view name, Pieces... pieces) {
    (addPiece(pieces), ...);
    names_.at(attributeCount_) = name;
    ends_.at(attributeCount_++) = pieceCount_;
    return *this;
  }
  // What a "text" element shows.
  Element& value(std::string_view text) {
    value_ = text;
    return *this;
  }

  std::string_view tag() const { return tag_; }
  std::optional<std::string_view> value() const { return value_; }
  std::size_t attributeCount() const { return attributeCount_; }
  std::string_view attributeName(std::size_t index) const { return names_[index]; }
  TextPieces attributeValue(std::size_t index) const {
    const std::size_t begin = index == 0 ? 0 : ends_[index - 1];
    return TextPieces(pieces_).subspan(begin, ends_[index] - begin);
  }

 private:
  static constexpr std::size_t mostAttributes = 6;
  static constexpr std::size_t mostPieces = 20;

  void addPiece(std::string_view piece) { pieces_.at(pieceCount_++) = piece; }

  std::string_view tag_;
  std::optional<std::string_view> value_;
  std::size_t attributeCount_ = 0;
  std::size_t pieceCount_ = 0;
  std::array<std::string_view, mostAttributes> names_;
  std::array<std::size_t, mostAttributes> ends_{};
  std::array<std::string_view, mostPieces> pieces_;
};

// Where elements go as they are made.
class ElementSink {
 public:
  virtual ~ElementSink() = default;
  virtual void add(const Element& element) = 0;
};

}  // namespace vernoxa
