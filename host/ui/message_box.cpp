#include "host/ui/message_box.h"

#include "host/base/unicode.h"
#include "host/edit/editor.h"
#include "host/ui/dialog_answers.h"
#include "sdk/system.h"

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

int buttonFor(const Steps& steps, const int* buttons, int byDefault)
{
    const int button = steps.size() == 1 ? buttonNamed(buttons, steps.front()) : 0;
    if (button)
        return button;
    edit::Editor& editor = edit::Editor::instance();
    editor.printLine("The answer laid down names no button of the box: " + (steps.empty() ? "" : steps.front()));
    editor.noteFailure();
    return byDefault;
}

}

int ScriptedMessageBox::show(std::string_view text, std::string_view title, unsigned style)
{
    edit::Editor& editor = edit::Editor::instance();
    const int* buttons = messageButtons(style);
    const bool isChoice = buttons[1] != 0;
    int button = defaultMessageButton(style);

    editor.printLine(text);
    if (const std::optional<Steps> steps = dialogAnswers().take(kForm)) {
        button = buttonFor(*steps, buttons, button);
    } else if (isChoice) {
        editor.printLine("Nothing was laid down to answer this box.");
        editor.noteFailure();
    }
    if (isChoice)
        editor.printLine(fmt::format("[{}] {}", listOf(buttons), nameOf(button)));
    return button;
}

}  // namespace vk::ui
