// Enhanced metafiles through Windows' own drawing.
#pragma once

#include "system/pictures.h"

namespace vernoxa {

class WindowsPictures final : public Pictures {
 public:
  ScreenMeasures screen() override;
  std::unique_ptr<Metafile> openMetafile(std::string_view bytes) override;
};

}  // namespace vernoxa
