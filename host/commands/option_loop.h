#pragma once

#include "host/edit/editor.h"
#include "host/edit/question.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace vk::commands {

// Asks again and again for one of the options that stand between the brackets of the prompt, parted by slashes, and runs
// the one that was named with the arguments; Enter ends it. An option has a `keyword` and a `run`.
template <class Options, class... Arguments>
void runOptions(edit::Editor& ed, std::string prompt, const Options& options, const Arguments&... arguments)
{
    const std::size_t open = prompt.find('[') + 1;
    std::string keywords = prompt.substr(open, prompt.find(']') - open);
    std::replace(keywords.begin(), keywords.end(), '/', ' ');
    edit::Question question;
    question.kind = edit::Question::Kind::Keyword;
    question.prompt = std::move(prompt);
    question.init.keywords = edit::parseKeywords(keywords);
    question.hasDefault = true;
    for (;;) {
        const edit::Answer answer = ed.ask(question);
        if (answer.status == edit::Answer::Status::Enter)
            return;
        for (const auto& option : options)
            if (answer.text == option.keyword)
                option.run(ed, arguments...);
    }
}

}  // namespace vk::commands
