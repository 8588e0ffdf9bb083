// Qt's application object, made when something first needs a widget, and who looks at it.
#pragma once

class QWidget;

namespace vk::ui {

// The program with a window has made one of its own. Otherwise widgets live off-screen whatever the desktop would have,
// as a run asks nobody; VEKAD_QT_PLATFORM names another of Qt's platforms.
void ensureApplication();

// The program's main window, null in a run.
QWidget* mainWindow();

// Whether somebody can answer a dialog by hand.
bool isPersonThere();

}  // namespace vk::ui
