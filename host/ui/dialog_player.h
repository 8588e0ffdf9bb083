// Plays the steps of an answer in a dialog, with its real widgets, as a person would: focus, keys, clicks.
//
// A step is the object name of a widget, or its control id,
//   alone             a click
//   followed by =     a value: text; item texts joined by |; on or off
//   followed by ?     what it holds is said in the transcript
// or "@picture=PATH": the dialog as it stands is saved as a picture.
#pragma once

#include "host/ui/dialog_answers.h"

#include <string>

class CWnd;
class QDialog;
class QWidget;

namespace vk::ui {

class DialogPlayer {
public:
    // hasEnded turns true when the dialog ends.
    DialogPlayer(QDialog& dialog, CWnd* logic, const bool& hasEnded)
        : m_dialog(dialog), m_logic(logic), m_hasEnded(hasEnded)
    {
    }

    // Empty, or why the steps could not be played to the end of the dialog.
    std::string play(const Steps& steps);

private:
    std::string playStep(const std::string& step);
    std::string act(const std::string& name, const std::string* value);
    std::string tell(const std::string& name);
    std::string savePicture(const std::string& path);
    QWidget* find(const std::string& name) const;
    std::string missing(const std::string& name) const;

    QDialog& m_dialog;
    CWnd* m_logic;
    const bool& m_hasEnded;
};

}  // namespace vk::ui
