// The program's icon, drawn when it is first asked for.
#pragma once

#include "sdk/classlib_windows.h"

class QIcon;

namespace vk::ui {

HICON programIcon();
const QIcon& qtIcon(HICON icon);

}  // namespace vk::ui
