// Shows a dialog until it ends: to the person, or driven by the answer that a script has laid down for it.
#pragma once

class QDialog;
class CWnd;

namespace vk::ui {

// The result it was ended with. A dialog that nobody can answer is cancelled, and the run has failed. The window of the
// logic object finds its controls by id; it may be null.
int runModal(QDialog& dialog, CWnd* logic = nullptr);

}  // namespace vk::ui
