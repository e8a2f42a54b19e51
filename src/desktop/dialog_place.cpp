#include "desktop/dialog_place.h"

#include <algorithm>

namespace vernoxa::desktop {
namespace {

int centredStart(int aroundStart, int aroundLength, int length, int areaStart, int areaLength) {
  const int last = areaStart + std::max(0, areaLength - length);
  return std::clamp(aroundStart + (aroundLength - length) / 2, areaStart, last);
}

}  // namespace

int dialogGrowth(int missingWidth, int dialogWidth, const Box& workArea) {
  return std::clamp(missingWidth, 0, std::max(0, workArea.width - dialogWidth));
}

Box centred(const Box& dialog, const Box& around, const Box& workArea) {
  return {centredStart(around.left, around.width, dialog.width, workArea.left, workArea.width),
          centredStart(around.top, around.height, dialog.height, workArea.top, workArea.height), dialog.width,
          dialog.height};
}

}  // namespace vernoxa::desktop
