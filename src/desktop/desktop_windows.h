// Creates the Windows implementations in this room. Their interfaces in `system` describe them.
#pragma once

#include <memory>

#include "system/clipboard.h"
#include "system/desktop.h"
#include "system/pictures.h"
#include "system/user_messages.h"

namespace vernoxa::desktop {

std::unique_ptr<Clipboard> windowsClipboard();
std::unique_ptr<Desktop> windowsDesktop();
std::unique_ptr<Pictures> windowsPictures();
std::unique_ptr<UserMessages> windowsUserMessages();

}  // namespace vernoxa::desktop
