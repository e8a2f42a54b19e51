#include "drawing/element_form.h"

#include <span>
#include <utility>

#include "drawing/json_text.h"

namespace vernoxa {
namespace {

// Ends a piece of text at each place.
class PiecePrinter {
 public:
  PiecePrinter(std::vector<PrintedPiece>& pieces, std::vector<RecordValue>& values, std::size_t depth)
      : pieces_(pieces), values_(values), json_(text_, depth) {}

  JsonText& json() { return json_; }

  void string(std::span<const ValuePiece> pieces) {
    text_ += '"';
    for (const ValuePiece& piece : pieces) {
      appendEscaped(text_, piece.text);
      if (piece.value != nullptr) {
        pieces_.push_back({std::exchange(text_, {}), true});
        values_.push_back(piece.value);
      }
    }
    text_ += '"';
  }
  void finish() { pieces_.push_back({text_, false}); }

 private:
  std::vector<PrintedPiece>& pieces_;
  std::vector<RecordValue>& values_;
  std::string text_;
  JsonText json_;
};

}  // namespace

ElementForm::ElementForm(std::size_t depth, std::string_view elementTag, RecordValue shown,
                         std::vector<Attribute> elementAttributes)
    : tag_(elementTag), shownText_(shown), attributes_(std::move(elementAttributes)) {
  print(depth);
}

void ElementForm::print(std::size_t depth) {
  PiecePrinter printer(printed_, values_, depth);
  JsonText& json = printer.json();
  json.openObject();
  json.member("name", tag_);
  if (shownText_ != nullptr) {
    json.name("value");
    printer.string(std::array{ValuePiece(shownText_)});
  }
  json.name("attr");
  json.openObject();
  for (const Attribute& attribute : attributes_) {
    json.name(attribute.name);
    printer.string(attribute.pieces);
  }
  json.closeObject();
  json.closeObject();
  printer.finish();
}

}  // namespace vernoxa
