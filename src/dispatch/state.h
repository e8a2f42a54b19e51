// The global state: one object per load of the plug-in.
#pragma once

#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "system/file_path.h"
#include "system/shared_path.h"

namespace vernoxa {

// What the host's thread and the link thread both touch. Every access is guarded; no reference into it leaves.
class LinkState {
 public:
  // True while the host's scripts hold a connection to the companion.
  bool clientCreated() const;
  void setClientCreated(bool created);
  // That connection is gone; how often it was so far.
  void noteBreak();
  unsigned breaks() const;

  // How the latest refused connection ended: at once, or after tries that the system made on its own (Windows takes
  // about two seconds for them on the local machine).
  void setRefusedAtOnce(bool atOnce);
  // False when an attempt to reach the companion could cost the host's thread those tries: nobody is known to listen.
  bool companionMayBeAsked() const;

  // The design whose pins the link thread is asking for; empty once it has the answer. One that is still there when
  // the thread asks for something else has lost its answer.
  void setAwaitedCount(std::string hostPath);
  std::string takeAwaitedCount();

  // What messages call a design that the code page has no name for, kept for when its file is gone; empty while nothing
  // does. By the path as the host gave it.
  std::string otherNameOf(const std::string& hostPath) const;
  // True for the first word on that design.
  bool keepOtherName(const std::string& hostPath, const std::string& name);

 private:
  mutable std::mutex guard_;
  std::string awaitedCount_;
  std::map<std::string, std::string> otherNames_;
  unsigned breaks_ = 0;
  bool clientCreated_ = false;
  bool refusedAtOnce_ = false;
};

// What the companion's messages set for a later placement. Texts in the code page, as the packets brought them.
struct PlacementContext {
  std::string priceK;
  std::string pinPrice;
  std::string sumPins;
  std::string price;
  std::string dsnBmpPath;  // preview picture
  std::string dsnDatPath;  // module file to place, and last module file written
  std::string uploadResId;
  std::string uploadUserId;
  std::string selfModule = "0";  // the designator as well
  std::string PartIndex;         // the cached user id as well: the companion knows the two as one
  std::string package;
  std::string packageName;
  std::string PartName;
  std::string PartNumber;
  std::string prefix;
  std::string value;
  std::string companyId;
  std::string cateId;
  int placeState = 0;                      // 1: one catalogue part is being placed; 0: a shared module, or nothing
  std::string backupBaseName = "Test";     // base name of the new library
  std::string libraryBaseName = "123456";  // base name of the temporary library
};

// A design under its two names.
struct KnownDesign {
  std::string hostPath;  // as the host gave it, in either encoding
  std::string name;      // as messages name it: made from the former once, and never converted again
};

// Everything but the first three belongs to the host's thread.
struct GlobalState {
  LinkState link;
  ProjectFolder folder;
  HostExecutable hostExecutable;
  FilePath installDirectory;  // found from the module path; later reports of projects never change it
  FilePath logDirectory;
  std::string language = "EN";
  std::vector<KnownDesign> openDesigns;      // in the host's order
  std::vector<KnownDesign> reportedDesigns;  // those that the companion knows to be open
  PlacementContext placement;
  std::set<std::string> madeLibraries;               // what placements of this process made, and may remove
  std::map<std::string, std::string> resourcePaths;  // resource id to module file
};

}  // namespace vernoxa
