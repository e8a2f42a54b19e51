// What makes the real parts of the operating system in this room. The parts are described where their interfaces are.
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
