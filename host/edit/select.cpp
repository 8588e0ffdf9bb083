#include "host/edit/editor.h"
#include "host/edit/select_prompt.h"

namespace vk::edit {

std::shared_ptr<SelectionSet> Editor::select(const SelectOptions& options)
{
    SelectRequest request;
    request.addPrompt = options.prompt;
    if (!request.addPrompt.ends_with(' '))
        request.addPrompt += request.addPrompt.ends_with(':') ? " " : ": ";
    request.leavesLocked = !options.allowLocked;
    request.single = options.single;
    request.endsWithArguments = options.endsWithArguments;
    request.keywords = parseKeywords(options.keywords);
    const auto filter = EntityFilter::parse(db(), options.filter);
    if (!filter)
        throw CommandError{"The filter of this selection is malformed."};
    request.filter = options.filter ? filter.get() : nullptr;
    m_selectKeyword.clear();
    // A command that another one drives has its objects among its arguments.
    if (const auto set = isDriven() ? nullptr : takePickFirst(*this, request)) {
        previousSelection = std::make_shared<SelectionSet>(*set);
        return set;
    }
    const SelectResult result = selectByPrompt(*this, request);
    if (result.status == SelectResult::Cancelled)
        throw CommandCancelled();
    m_selectKeyword = result.keyword;
    if (!result.set->empty())
        previousSelection = std::make_shared<SelectionSet>(*result.set);
    return result.set;
}

}  // namespace vk::edit
