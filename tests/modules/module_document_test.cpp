#include "modules/module_document.h"

#include <gtest/gtest.h>

#include "drawing/drawn.h"
#include "support/table.h"
#include "text/text.h"

namespace vernoxa::modules {
namespace {

// Their words between semicolons.
using Records = std::initializer_list<std::string>;

class ModuleDocumentTest : public testing::Test {
 protected:
  void add(const Records& library, const Records& schematic) {
    for (const auto& [records, addTo] : {std::pair{library, &ModuleDocument::addLibraryRecord},
                                         std::pair{schematic, &ModuleDocument::addSchematicRecord}}) {
      for (const std::string& record : records) {
        const std::vector<std::string> words = splitFields(record, ';');
        (document_.*addTo)(drawing::WordRecord({words.begin(), words.end()}));
      }
    }
  }
  std::string finished() {
    const std::string text = document_.finish("300", "200");
    return text.empty() ? text : Json::parse(text).document.printUnformatted();
  }
  std::string documentOf(const Records& library, const Records& schematic) {
    document_.start();
    add(library, schematic);
    return finished();
  }

  ModuleDocument document_;
};

std::string document(const std::string& children, const std::string& library) {
  return R"({"children":[)" + children + R"(],"lib":[)" + library + R"(],"BoundingBox":"300 200"})";
}

std::string part(const std::string& start, const std::string& properties, const std::string& displayed,
                 const std::string& elements) {
  return R"({"Name":)" + start + R"(,"Property":{)" + properties + R"(},"DispProperty":[)" + displayed +
         R"(],"children":[)" + elements + "]}";
}

// A record's words between semicolons, the name it gets, and its data.
constexpr const char* libraryElements = R"(
Line;1;2;3;4;c;s;w            | line     | "Start":"1 2","EndPos":"3 4","Color":"c","Style":"s","Width":"w"
Box;1;2;3;4;c;s;w;f;h         | Box      | "UpperLeft":"1 2","LowerRight":"3 4","Color":"c","Style":"s","Width":"w","FillStyle":"f","HatchStyle":"h"
Arc;1;2;3;4;5;6;7;8;c;s;w     | Arc      | "BoundingBox":"1 2 3 4","Start":"5 6","EndPos":"7 8","Color":"c","Style":"s","Width":"w"
Ellipse;1;2;3;4;c;s;w;f;h     | Ellipse  | "BoundingBox":"1 2 3 4","Color":"c","LineStyle":"s","LineWidth":"w","FillStyle":"f","HatchStyle":"h"
Polyline;1;2;c;s;w;1,2 3,4    | Polyline | "PolylineStart":"1 2","Color":"c","Style":"s","Width":"w","Color":"c","path":"1,2 3,4"
Polygon;1;2;c;s;w;f;h;p       | Polygon  | "PolygonStart":"1 2","Color":"c","Style":"s","Width":"w","FillStyle":"f","HatchStyle":"h","path":"p"
Text;1;2;3;4;t;c              | Text     | "BoundingBox":"1 2 3 4","Text":"t","Color":"c","Text Location X-Coordinate":"1","Text Location Y-Coordinate":"2"
Bezier;1;2;c;s;w;p            | Bezier   | "BezierStart":"1 2","Color":"c","Style":"s","Width":"w","path":"p"
Pin;1;2;3;4;7;A$B;Passive     | Pin      | "StartPoint":"1 2","HotSpot":"3 4","PinName":"","PinNum":"7","PinType":"Passive"
Line;1                        | line     | "Start":"1 ","EndPos":" ","Color":"","Style":"","Width":""
)";

TEST_F(ModuleDocumentTest, LibraryElementsAreWrittenByTheirLayout) {
  for (const auto& row : rowsOf(libraryElements)) {
    EXPECT_EQ(documentOf({"Name;R;Part;0;1;2;3;1;A", row[0], "Property;p;a@b@"}, {}),
              document("", part(R"("R","PartIndex":"1","Designator":"A","Type":"Part","BoundingBox":"0 1 2 3")", "", "",
                                R"({"Name":")" + row[1] + R"(","Property":{"p":"a_b_"},"Data":{)" + row[2] + "}}")));
  }
}

constexpr const char* schematicObjects = R"(
Wire;1;2;3;4;c;s;w             | Wire     | "WireStart":"1 2","WireEndPos":"3 4","Color":"c","Style":"s","Width":"w"
BusWire;1;2;3;4;c;s;w          | BusWire  | "WireStart":"1 2","WireEndPos":"3 4","Color":"c","Style":"s","Width":"w"
BusEntry;1;2;3;4;c             | BusEntry | "BusEntryStart":"1 2","BusEntryEndPos":"3 4","Color":"c"
Part;1;2;r;m;RES;id            | Part     | "Location":"1 2","Rotation":"r","Mirror":"m","Package":"RES"
OffPage;1;2;r;m;L              | OffPage  | "Location":"1 2","Rotation":"r","Mirror":"m","Package":"L"
Alias;1;2;t;c;-;f;r            | Alias    | "Location":"1 2","Text":"t","Color":"c","Font":"f","Rotation":"r"
BitMap;1;2                     | BitMap   | "Location":"1 2"
Box;1;2;3;4;c;s;w;f;h          | Box      | "UpperLeft":"1 2","LowerRight":"3 4","Color":"c","LineStyle":"s","LineWidth":"w","FillStyle":"f","HatchStyle":"h"
Line;1;2;3;4;c;s;w             | line     | "Start":"1 2","EndPos":"3 4","Color":"c","Style":"s","Width":"w"
Ellipse;1;2;3;4;c;s;w;f;h      | Ellipse  | "Rect":"1 2 3 4","Color":"c","LineStyle":"s","LineWidth":"w","FillStyle":"f","HatchStyle":"h"
Polyline;10,-2.5 3,4;c;s;w     | Polyline | "PolylineStart":"10 -2.5","Color":"c","Style":"s","Width":"w","path":"10,-2.5 3,4"
Polyline;1e3,-2.5E-1 3,4       | Polyline | "PolylineStart":"1e3 -2.5E-1","Color":"","Style":"","Width":"","path":"1e3,-2.5E-1 3,4"
Bezier;M 1eL 2e+               | Bezier   | "BezierStart":"1 2","Color":"","Style":"","Width":"","path":"M 1eL 2e+"
Bezier;Mx 1x2ex 3              | Bezier   | "BezierStart":"1 2","Color":"","Style":"","Width":"","path":"Mx 1x2ex 3"
Bezier;1 2e                    | Bezier   | "BezierStart":"1 2","Color":"","Style":"","Width":"","path":"1 2e"
Bezier;M -.5 .25               | Bezier   | "BezierStart":"-.5 .25","Color":"","Style":"","Width":"","path":"M -.5 .25"
Bezier;- 1 . +2                | Bezier   | "BezierStart":"1 +2","Color":"","Style":"","Width":"","path":"- 1 . +2"
Polygon;M10-20 L 30 40 Z;c;s;w;f;h | Polygon | "PolygonStart":"10 -20","Color":"c","Style":"s","Width":"w","FillStyle":"f","HatchStyle":"h","path":"M10-20 L 30 40 Z"
Bezier;M 7;c;s;w               | Bezier   | "BezierStart":"7","Color":"c","Style":"s","Width":"w","path":"M 7"
Arc;p;c;s;w                    | Arc      | "Color":"c","Style":"s","Width":"w","path":"p"
Text;1;2;t;c;-;f;r             | Text     | "Text":"t","Color":"c","Text Location X-Coordinate":"1","Text Location Y-Coordinate":"2","Font":"f","Rotation":"r"
)";

TEST_F(ModuleDocumentTest, SchematicObjectsAreWrittenByTheirLayout) {
  for (const auto& row : rowsOf(schematicObjects)) {
    EXPECT_EQ(
        documentOf({}, {row[0], "Property;p;$x", "DispProperty;1;2;n;$@;c;f;s;r"}),
        document(R"({"name":")" + row[1] +
                     R"(","Property":{"p":""},"DispProperty":[{"Name":"n","Value":"$_","Color":"c","Rotation":"r",)"
                     R"("FontId":"f","Size":"s","Start":"1 2"}],"Data":{)" +
                     row[2] + "}}",
                 ""));
  }
}

TEST_F(ModuleDocumentTest, RecordsBelongToTheirPart) {
  EXPECT_EQ(
      documentOf({"Line;1;2",  // before the first part
                  "Name;U;Part;0;0;1;1;1;A", "Property;dropped;no element yet", "PartProperty;Value;1",
                  "PartProperty;Cost;a$", "PartProperty;Value;2@", "DispProperty;1;2;n;$@;c;f;s;r",
                  "Name;U;Part;9;9;9;9;1;B",  // the same part again
                  "PartProperty;Value;3", "Name;U;Symbol;0;0;1;1;1;B", "Unknown;1"},
                 {}),
      document(
          "",
          part(R"("U","PartIndex":"1","Designator":"A","Type":"Part","BoundingBox":"0 0 1 1")",
               R"("Value":"2_","Cost":"")",
               R"({"Name":"n","Value":"$_","Start":"1 2","Color":"c","Rotation":"r","FontId":"f","Size":"s"})", "") +
              "," + part(R"("U","PartIndex":"","Designator":"","Type":"Symbol","BoundingBox":"0 0 1 1")", "", "", "")));
}

TEST_F(ModuleDocumentTest, JunctionHasNoPropertiesOfItsOwn) {
  EXPECT_EQ(documentOf({}, {"Property;p;before any object", "BitMap;1;2", "Junction;5;6", "Property;p;v",
                            "DispProperty;1;2;n;v"}),
            document(R"({"name":"BitMap","Property":{},"DispProperty":[],"Data":{"Location":"1 2"}},)"
                     R"({"name":"Junction","Data":{"StartX":"5","StartY":"6"}})",
                     ""));
}

TEST_F(ModuleDocumentTest, NamesAreCutAfter31Characters) {
  const std::string kept = replaceAll(std::string(31, 'x'), "x", "\xE7\x94\xB5");  // of three bytes each
  EXPECT_EQ(documentOf({"Name;" + kept + kept + ";Symbol", "Name;" + kept + ";Symbol"}, {}),
            document("", part("\"" + kept + R"(","PartIndex":"","Designator":"","Type":"Symbol","BoundingBox":"   ")",
                              "", "", "")));
}

TEST_F(ModuleDocumentTest, NothingIsKeptOutsideADocument) {
  add({"Name;U"}, {"Junction;5;6"});
  EXPECT_EQ(finished(), "");
  documentOf({"Name;U"}, {"Wire"});
  add({"PartProperty;a;b"}, {"Property;a;b"});
  EXPECT_EQ(finished(), "");
  EXPECT_EQ(documentOf({"PartProperty;a;b"}, {"Property;a;b"}), document("", ""));
}

}  // namespace
}  // namespace vernoxa::modules
