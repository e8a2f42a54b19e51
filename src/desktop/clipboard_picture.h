// Opens the clipboard, and turns the drawing that the user copied in the host into the preview picture.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "system/clipboard.h"
#include "system/file_path.h"
#include "system/pictures.h"

namespace vernoxa::inline system {
class Clock;
class Files;
class Logs;
class Processes;
class ProjectFolder;
}  // namespace vernoxa::inline system
namespace vernoxa::inline text {
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::desktop {

// Waits up to a fifth of a second if another program holds the clipboard, as programs that watch it do for moments.
// Null if it is held for longer.
std::unique_ptr<ClipboardAccess> openClipboard(Clipboard& clipboard, Clock& clock);

// The size of a frame in pixels of that screen, whatever the order of its edges; `nullopt` if that is not a usable
// size.
std::optional<PixelSize> frameInPixels(const PictureFrame& frame, const ScreenMeasures& screen);

// The size to draw it in: the same, or the same shape reduced to 64 million pixels, the most that a picture may have.
PixelSize drawnSize(PixelSize framed);

// Host thread only.
class ClipboardPicture {
 public:
  ClipboardPicture(Clipboard& clipboard, Clock& clock, Pictures& pictures, Files& files, Processes& processes,
                   const ProjectFolder& project, const TextConverter& converter, const Logs& logs)
      : clipboard_(clipboard),
        clock_(clock),
        pictures_(pictures),
        files_(files),
        processes_(processes),
        project_(project),
        converter_(converter),
        logs_(logs) {}

  // Writes "\Cache\Output\Preview.bmp" below the project's folder and gives its path; empty if the clipboard holds no
  // drawing or any step fails.
  FilePath save() const;

  // Draws a metafile into a bitmap file. True if the whole file was written. A metafile that cannot be read, fails the
  // check, or cannot be drawn is refused: a line in the traffic log says why, and no file is left.
  bool convert(const FilePath& metafilePath, const FilePath& bitmapPath) const;

 private:
  std::string conversionFailure(const FilePath& metafilePath, const FilePath& bitmapPath) const;

  Clipboard& clipboard_;
  Clock& clock_;
  Pictures& pictures_;
  Files& files_;
  Processes& processes_;
  const ProjectFolder& project_;
  const TextConverter& converter_;
  const Logs& logs_;
};

}  // namespace vernoxa::desktop
