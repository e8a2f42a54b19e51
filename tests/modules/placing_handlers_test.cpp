#include "modules/library_files.h"
#include "support/session_test.h"

namespace vernoxa::modules {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::StartsWith;

class PlacingHandlers : public SessionTest {
 protected:
  PlacingHandlers() {
    host_.answer("IsSchematicViewActive", "1");
    fake.files.addFile("C:\\App\\config\\Resource\\Empty.olb", "OLB");
    fake.files.addFile(u8"C:\\模块\\m.json"_gbk, R"({"lib":[{"Name":"RES"}],"children":[],"BoundingBox":"300 200"})");
  }
  std::string send(const std::string& command, const std::string& data) {
    host_.scripts.clear();
    fake.random.numbers = {5, 6};
    return replyTo(plugin::companionEndpoint(), R"({"Command":")" + command + R"(","Data":{)" + data + "}}", host_);
  }
};

const std::string partData =
    u8R"("PartIndex":2,"Designator":"A","dsnDatPath":"C:\\模块\\m.json","ViewBoxWidth":"30","ViewBoxHeight":20,)"_gbk
    u8R"("packageName":"0603","PartNumber":"n","PartName":"电阻[1]","prefix":"U","value":"v","cateId":"c","companyId":"d")"_gbk;

TEST_F(PlacingHandlers, OnePartIsOfferedToTheUser) {
  const std::string library = utf8(u8"C:/模块/5.olb {RES} ");
  EXPECT_EQ(send("PlaceDsnLibPartModule", partData),
            R"({"Data":{},"Command":"PlaceDsnLibPartModule_EndResult","Result":"0"})");
  EXPECT_THAT(host_.scripts,
              ElementsAre("MenuCommand 57603", "IsSchematicViewActive", "UnSelectAll", "SetLibViewBox [list 30 20]",
                          StartsWith("placeLibPart " + library), StartsWith("setPinNum " + library),
                          "setPlaceMarketFlag 2", utf8(u8"PlaceNew 电阻\\[1] {C:/模块/6.olb} 2")));
  EXPECT_EQ(placement.placeState, 1);
  EXPECT_EQ(placement.package, "0603");
  send("PlaceDsnLibPartModule", partData + R"(,"Package":"P")");
  EXPECT_EQ(placement.package, "P");
}

TEST_F(PlacingHandlers, ModuleIsOfferedToTheUser) {
  const std::string data = u8R"("dsnDatPath":"C:\\模块\\m.json","uploadResId":"7","selfModule":"1")"_gbk;
  EXPECT_EQ(send("PlaceDSNModule", data), R"({"Data":{},"Command":"PlaceDSNModule_EndResult","Result":"0"})");
  EXPECT_THAT(
      host_.scripts,
      ElementsAre("IsSchematicViewActive", "UnSelectAll", StartsWith(utf8(u8"placeLibPart C:/模块/5.olb {RES} ")),
                  StartsWith(utf8(u8"placeLibPart C:/模块/5.olb {ViewBox} 0 ViewBox [list 0 0 300 200] ")),
                  StartsWith("setPinNum "), "setPlaceMarketFlag 1",
                  utf8(u8"PlaceNew \"C:/模块/6.olb\" ViewBox {300 200}")));
  EXPECT_EQ(placement.placeState, 0);

  send("PlaceDSNModule", R"("dsnDatPath":"C:\\a\"]$x\\none.json")");
  EXPECT_THAT(host_.scripts, ElementsAre("IsSchematicViewActive", "UnSelectAll", "setPlaceMarketFlag 1",
                                         R"(PlaceNew "C:/a\"]\$x/6.olb" ViewBox)"));

  fake.files.removeFile("C:\\App\\config\\Resource\\Empty.olb");  // the host is asked for what could not be made
  send("PlaceDSNModule", data);
  EXPECT_EQ(host_.scripts.back(), utf8(u8"PlaceNew \"C:/模块/7.olb\" ViewBox {300 200}"));
}

TEST_F(PlacingHandlers, OnlyAnAcceptedRequestHasAPartPlaced) {
  const std::string lacking = R"("PartIndex":"2","PartName":"R","ViewBoxWidth":1,"prefix":"Q")";
  const std::tuple<const char*, std::string, const char*, const char*, int> cases[] = {
      {"PlaceDsnLibPartModule", partData, "1", "", 1},
      {"PlaceDsnLibPartModule", partData, "0", "", 0},
      {"PlaceDsnLibPartModule", partData, "1", "MenuCommand 57603", 0},
      {"PlaceDsnLibPartModule", partData, "1", "UnSelectAll", 0},
      {"PlaceDsnLibPartModule", lacking, "1", "", 0},
      {"PlaceDSNModule", partData, "1", "", 0},
      {"PlaceDSNModule", partData, "0", "", 0},
      {"PlaceDSNModule", partData, "1", "IsSchematicViewActive", 0},
      {"ClearCurrentDesign", "", "1", "", 1},  // places nothing, refuses nothing
  };
  for (const auto& [command, data, pageActive, throwing, placeState] : cases) {
    placement.placeState = 1;  // of the request before
    host_.answer("IsSchematicViewActive", pageActive);
    host_.during = [failing = std::string(throwing)](const std::string& script) {
      if (script == failing) {
        throw std::bad_alloc();
      }
    };
    send(command, data);
    EXPECT_EQ(placement.placeState, placeState) << command << data << throwing;
  }
  // Not before it is accepted, and what the host's event loop brings while it is carried out counts.
  std::string states;
  placement.placeState = 0;
  host_.answer("IsSchematicViewActive", "1");
  host_.during = [&](const std::string& script) {
    states += std::to_string(placement.placeState);
    if (script.starts_with("PlaceNew")) {
      placement.placeState = 0;  // the part was placed at once
    }
  };
  send("PlaceDsnLibPartModule", partData);
  EXPECT_EQ(states, "00111111");
  EXPECT_EQ(placement.placeState, 0);
  states.clear();
  placement.placeState = 1;
  send("PlaceDSNModule", partData);
  EXPECT_EQ(states, "1000000");
}

// The host's event loop may bring another request or command inside every script of this one.
TEST_F(PlacingHandlers, WhatIsPlacedIsWhatThisRequestAskedFor) {
  fake.files.addFile("C:\\Other\\n.json", R"({"lib":[{"Name":"CAP"}],"BoundingBox":"5 4"})");
  const std::string other = R"("dsnDatPath":"C:\\Other\\n.json","PartIndex":9,"ViewBoxWidth":1,"ViewBoxHeight":2,)"
                            R"("PartName":"CAP","selfModule":"other","dsnBmpPath":"C:\\Other\\b.bmp")";
  const std::string own = partData + R"(,"dsnBmpPath":"C:\\b.bmp")";
  for (const std::string outer : {"PlaceDSNModule", "PlaceDsnLibPartModule"}) {
    for (const std::string inner : {"PlaceDSNModule", "PlaceDsnLibPartModule"}) {
      host_.during = nullptr;
      send(outer, own);
      const std::vector<std::string> scripts = host_.scripts;
      for (std::size_t at = 0; at + 1 < scripts.size(); ++at) {
        SCOPED_TRACE(inner + " inside " + outer + ", in " + scripts[at]);
        placement = {};
        bool begun = false;
        host_.during = [&](const std::string&) {
          if (host_.scripts.size() == at + 1 && !begun) {
            begun = true;
            replyTo(plugin::companionEndpoint(), R"({"Command":")" + inner + R"(","Data":{)" + other + "}}", host_);
          }
        };
        send(outer, own);
        const std::string library = part<LibraryFiles>().newPath().utf8();
        EXPECT_THAT(library, StartsWith(utf8(u8"C:/模块/")));
        EXPECT_THAT(host_.scripts.back(), testing::AllOf(StartsWith("PlaceNew "), testing::HasSubstr(library)));
        EXPECT_TRUE(fake.files.exists(part<LibraryFiles>().newPath()));
        EXPECT_EQ(placement.dsnDatPath, u8"C:\\模块\\m.json"_gbk);
        EXPECT_THAT(host_.scripts.back(), EndsWith(outer == "PlaceDSNModule" ? "ViewBox {300 200}" : "} 2"));
        EXPECT_EQ(placement.selfModule, outer == "PlaceDSNModule" ? "" : "A");
        EXPECT_EQ(placement.placeState, outer == "PlaceDSNModule" ? 0 : 1);
      }
    }
  }
}

TEST_F(PlacingHandlers, WhatARequestStoresIsKeptAlsoWhenItIsRefused) {
  PlacementContext& place = placement;
  const std::tuple<const char*, std::vector<std::string>, std::vector<std::string*>> cases[] = {
      {"PlaceDsnLibPartModule",
       {"PartIndex", "Designator", "dsnDatPath", "packageName", "PartNumber", "PartName", "prefix", "value", "Package"},
       {&place.PartIndex, &place.selfModule, &place.dsnDatPath, &place.packageName, &place.PartNumber, &place.PartName,
        &place.prefix, &place.value, &place.package}},
      {"PlaceDSNModule",
       {"dsnDatPath", "dsnBmpPath", "uploadResId", "uploadUserId", "selfModule"},
       {&place.dsnDatPath, &part<PreviewPicture>().path, &place.uploadResId, &place.uploadUserId, &place.selfModule}},
  };
  for (const auto& [command, members, fields] : cases) {
    for (const bool whole : {true, false}) {
      const std::string more = whole ? R"("ViewBoxWidth":1,"ViewBoxHeight":2,"Page":"P")" : R"("x":"y")";
      std::string data = more;
      std::string ofOtherKind = more;  // as good as missing
      for (const std::string& name : members) {
        data += ",\"" + name + "\":\"of " + name + "\"";
        ofOtherKind += ",\"" + name + "\":[]";
      }
      placement = {};
      for (const bool sent : {true, false}) {
        send(command, sent ? data : whole ? more : ofOtherKind);
        for (std::size_t index = 0; index < members.size(); ++index) {
          EXPECT_EQ(*fields[index], sent ? "of " + members[index] : "") << members[index];
        }
      }
    }
  }
}

}  // namespace
}  // namespace vernoxa::modules
