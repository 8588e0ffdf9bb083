// What a script has laid down for the dialogs to come, each answer used once, in order, by the dialogs of its name.
#pragma once

#include "host/edit/services.h"

#include <deque>
#include <optional>

namespace vk::ui {

using Steps = std::vector<std::string>;

class DialogAnswers : public edit::DialogService {
public:
    void addAnswer(std::string form, Steps steps) override;
    std::vector<std::string> unusedAnswers() const override;
    // Steps of the first answer that waits for a dialog of that name; case does not count.
    std::optional<Steps> take(std::string_view form);

private:
    struct Answer {
        std::string form;
        Steps steps;
    };
    std::deque<Answer> m_waiting;
};

// The one of the process.
DialogAnswers& dialogAnswers();

}  // namespace vk::ui
