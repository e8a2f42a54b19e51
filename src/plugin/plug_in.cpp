#include "plugin/plug_in.h"

namespace vernoxa::plugin {
namespace {

PlugIn* active = nullptr;

}  // namespace

PlugIn* activePlugIn() {
  return active;
}

void setActivePlugIn(PlugIn* plugIn) {
  active = plugIn;
}

}  // namespace vernoxa::plugin
