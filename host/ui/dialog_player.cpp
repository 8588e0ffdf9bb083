#include "host/ui/dialog_player.h"

#include "host/edit/editor.h"
#include "host/ui/widget_actions.h"
#include "host/ui/widget_text.h"
#include "sdk/classlib_windows.h"

#include <QApplication>
#include <QDialog>
#include <QPixmap>

namespace vk::ui {

namespace {

constexpr std::string_view kPicture = "@picture=";

// Windows of a run are not activated by anyone else, and focus moves in active windows only. A list of completions that
// typing has opened goes, as it does when a person clicks elsewhere.
void activate(QDialog& dialog)
{
    while (QWidget* popup = QApplication::activePopupWidget())
        popup->close();
    QApplication::setActiveWindow(&dialog);
    QCoreApplication::processEvents();
}

bool isNumber(const std::string& name) { return !name.empty() && name.find_first_not_of("0123456789") == name.npos; }

}

std::string DialogPlayer::play(const Steps& steps)
{
    const std::string form = m_dialog.objectName().toStdString();
    for (const std::string& step : steps) {
        if (m_hasEnded)
            return fmt::format("The dialog {} had ended before the step \"{}\" of its answer.", form, step);
        activate(m_dialog);
        const std::string fault = playStep(step);
        if (!fault.empty())
            return fmt::format("The step \"{}\" in the dialog {} cannot be played: {}.", step, form, fault);
        QCoreApplication::processEvents();
    }
    return m_hasEnded ? std::string()
                      : fmt::format("The answer for the dialog {} leaves it open; it is cancelled.", form);
}

std::string DialogPlayer::playStep(const std::string& step)
{
    if (step.starts_with(kPicture))
        return savePicture(step.substr(kPicture.size()));
    const std::size_t equals = step.find('=');
    if (equals != step.npos) {
        const std::string value = step.substr(equals + 1);
        return act(step.substr(0, equals), &value);
    }
    if (step.ends_with('?'))
        return tell(step.substr(0, step.size() - 1));
    return act(step, nullptr);
}

std::string DialogPlayer::act(const std::string& name, const std::string* value)
{
    QWidget* widget = find(name);
    if (!widget)
        return missing(name);
    if (!widget->isVisibleTo(&m_dialog))
        return name + " is not shown";
    if (!widget->isEnabled())
        return name + " is disabled";
    return value ? setValue(*widget, fromUtf8(*value)) : click(*widget);
}

std::string DialogPlayer::tell(const std::string& name)
{
    const QWidget* widget = find(name);
    if (!widget)
        return missing(name);
    const char* state = widget->isEnabled() ? "" : " (disabled)";
    edit::Editor::instance().printLine(fmt::format("{}: {}{}", name, stateOf(*widget), state));
    return {};
}

std::string DialogPlayer::savePicture(const std::string& path)
{
    QCoreApplication::processEvents();
    return m_dialog.grab().save(fromUtf8(path)) ? std::string() : "the picture cannot be written";
}

QWidget* DialogPlayer::find(const std::string& name) const
{
    if (!isNumber(name))
        return m_dialog.findChild<QWidget*>(fromUtf8(name));
    const CWnd* item = m_logic ? m_logic->GetDlgItem(std::atoi(name.c_str())) : nullptr;
    return item ? item->Widget() : nullptr;
}

std::string DialogPlayer::missing(const std::string& name) const
{
    std::string names;
    for (const QWidget* widget : m_dialog.findChildren<QWidget*>())
        if (canBeActedOn(*widget) && !widget->objectName().isEmpty() && !widget->objectName().startsWith("qt_"))
            names += (names.empty() ? "" : ", ") + widget->objectName().toStdString();
    return "there is no widget " + name + "; there are " + names;
}

}  // namespace vk::ui
