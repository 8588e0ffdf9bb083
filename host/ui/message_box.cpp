#include "host/ui/message_box.h"

#include "host/base/unicode.h"
#include "host/edit/editor.h"
#include "host/ui/dialog_answers.h"
#include "host/ui/qt_application.h"
#include "host/ui/widget_text.h"
#include "sdk/system.h"

#include <QApplication>
#include <QMessageBox>
#include <fmt/ranges.h>
#include <utility>

namespace vk::ui {

namespace {

constexpr const char* kForm = "MessageBox";

constexpr std::pair<int, const char*> kNames[] = {
    {IDOK, "OK"},         {IDCANCEL, "Cancel"}, {IDABORT, "Abort"}, {IDRETRY, "Retry"},
    {IDIGNORE, "Ignore"}, {IDYES, "Yes"},       {IDNO, "No"},
};

const char* nameOf(int button)
{
    for (const auto& [id, name] : kNames)
        if (id == button)
            return name;
    return "";
}

// Of the box's own buttons; 0 when it has none of that name.
int buttonNamed(const int* buttons, std::string_view name)
{
    for (; *buttons; ++buttons)
        if (equalNoCase(name, std::string_view(nameOf(*buttons))))
            return *buttons;
    return 0;
}

std::string listOf(const int* buttons)
{
    std::string list;
    for (; *buttons; ++buttons)
        list += (list.empty() ? "" : "/") + std::string(nameOf(*buttons));
    return list;
}

// The button that leaves the box without a choice, as Esc does.
int leavingButton(const int* buttons)
{
    for (const int leaving : {IDCANCEL, IDABORT, IDNO})
        for (const int* button = buttons; *button; ++button)
            if (*button == leaving)
                return leaving;
    return *buttons;
}

void fail(const std::string& message)
{
    edit::Editor::instance().printLine(message);
    edit::Editor::instance().noteFailure();
}

int buttonFor(const Steps& steps, const int* buttons)
{
    const int button = steps.size() == 1 ? buttonNamed(buttons, steps.front()) : 0;
    if (button)
        return button;
    fail(fmt::format("The answer laid down names no button of the box: {}", fmt::join(steps, ", ")));
    return leavingButton(buttons);
}

QMessageBox::StandardButton qtButton(int button)
{
    switch (button) {
    case IDCANCEL:
        return QMessageBox::Cancel;
    case IDABORT:
        return QMessageBox::Abort;
    case IDRETRY:
        return QMessageBox::Retry;
    case IDIGNORE:
        return QMessageBox::Ignore;
    case IDYES:
        return QMessageBox::Yes;
    case IDNO:
        return QMessageBox::No;
    default:
        return QMessageBox::Ok;
    }
}

QMessageBox::Icon qtIcon(unsigned style)
{
    switch (style & 0xF0) {
    case MB_ICONERROR:
        return QMessageBox::Critical;
    case MB_ICONQUESTION:
        return QMessageBox::Question;
    case MB_ICONEXCLAMATION:
        return QMessageBox::Warning;
    case MB_ICONINFORMATION:
        return QMessageBox::Information;
    default:
        return QMessageBox::NoIcon;
    }
}

int showWindow(std::string_view text, std::string_view title, unsigned style)
{
    QMessageBox box(qtIcon(style), fromUtf8(title), fromUtf8(text), QMessageBox::NoButton,
                    QApplication::activeWindow());
    const int* buttons = messageButtons(style);
    for (const int* button = buttons; *button; ++button)
        box.addButton(qtButton(*button));
    box.setDefaultButton(qtButton(defaultMessageButton(style)));
    const int pressed = box.exec();
    for (const int* button = buttons; *button; ++button)
        if (qtButton(*button) == pressed)
            return *button;
    return leavingButton(buttons);
}

}

int MessageBoxes::show(std::string_view text, std::string_view title, unsigned style)
{
    edit::Editor& editor = edit::Editor::instance();
    const int* buttons = messageButtons(style);
    const bool isChoice = buttons[1] != 0;
    const std::optional<Steps> steps = dialogAnswers().take(kForm);
    if (!steps && isPersonThere())
        return showWindow(text, title, style);
    editor.printLine(text);
    if (!steps && isChoice)
        fail("The box has no answer waiting and is cancelled.");
    const int button = steps ? buttonFor(*steps, buttons) : leavingButton(buttons);
    if (isChoice)
        editor.printLine(fmt::format("[{}] {}", listOf(buttons), nameOf(button)));
    return button;
}

short MessageBoxes::keyState(int key)
{
    if (!isPersonThere())
        return 0;
    const Qt::KeyboardModifiers down = QApplication::queryKeyboardModifiers();
    const bool isDown = key == VK_SHIFT     ? down.testFlag(Qt::ShiftModifier)
                        : key == VK_CONTROL ? down.testFlag(Qt::ControlModifier)
                        : key == VK_MENU    ? down.testFlag(Qt::AltModifier)
                                            : false;
    return isDown ? short(0x8000) : short(0);
}

}  // namespace vk::ui
