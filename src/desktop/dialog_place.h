// Where a dialog comes to stand. Measures in pixels of the screen.
#pragma once

namespace vernoxa::desktop {

struct Box {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
};

// How much wider a dialog may become for a text that needs so much more room.
int dialogGrowth(int missingWidth, int dialogWidth, const Box& workArea);

// The dialog in the middle of another window, moved so that none of it lies outside the work area when it fits in.
Box centred(const Box& dialog, const Box& around, const Box& workArea);

}  // namespace vernoxa::desktop
