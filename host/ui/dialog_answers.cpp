#include "host/ui/dialog_answers.h"

#include "host/base/unicode.h"

#include <algorithm>

namespace vk::ui {

void DialogAnswers::addAnswer(std::string form, Steps steps)
{
    m_waiting.push_back({std::move(form), std::move(steps)});
}

std::vector<std::string> DialogAnswers::unusedAnswers() const
{
    std::vector<std::string> forms;
    for (const Answer& answer : m_waiting)
        forms.push_back(answer.form);
    return forms;
}

std::optional<Steps> DialogAnswers::take(std::string_view form)
{
    const auto found = std::find_if(m_waiting.begin(), m_waiting.end(),
                                    [&](const Answer& answer) { return equalNoCase(answer.form, form); });
    if (found == m_waiting.end())
        return std::nullopt;
    Steps steps = std::move(found->steps);
    m_waiting.erase(found);
    return steps;
}

DialogAnswers& dialogAnswers()
{
    static DialogAnswers answers;
    return answers;
}

}  // namespace vk::ui
