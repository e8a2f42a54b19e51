// Where a dialog is placed. All measures are in pixels of the screen.
#pragma once

namespace vernoxa::desktop {

struct Box {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
};

// How much wider to make a dialog for a text that needs `missingWidth` more.
int dialogGrowth(int missingWidth, int dialogWidth, const Box& workArea);

// Centres the dialog on another window, but keeps it within the work area if it fits there.
Box centred(const Box& dialog, const Box& around, const Box& workArea);

}  // namespace vernoxa::desktop
