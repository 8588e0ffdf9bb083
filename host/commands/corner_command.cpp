#include "host/commands/corner_command.h"

#include <algorithm>

namespace vk::commands {

using namespace edit;
using Status = Answer::Status;

namespace {

std::string keywordsOf(std::string options)
{
    std::replace(options.begin(), options.end(), '/', ' ');
    return options;
}

}

void CornerCommand::askTrim()
{
    const std::string prompt = fmt::format("Enter Trim mode option [Trim/No trim] <{}>", trims() ? "Trim" : "No trim");
    const std::string word = m_ed.keyword(prompt, "Trim No", trims() ? "Trim" : "No");
    m_ed.vars().set("TRIMMODE", std::int32_t(word == "Trim"));
}

std::optional<CurvePick> CornerCommand::askCurve(const std::string& what)
{
    for (;;) {
        const Answer a = m_ed.askEntity(fmt::format("Select {} or [{}]", what, m_words.settings),
                                        {.keywords = keywordsOf(m_words.settings)});
        if (a.status == Status::Enter)
            return std::nullopt;
        if (a.status == Status::Keyword)
            askSetting(a.text);
        else if (auto pick = curvePick(m_ed, a))
            return pick;
    }
}

void CornerCommand::wholePolyline()
{
    const geom::Polyline* p = nullptr;
    std::optional<CurvePick> pick;
    while (!p) {
        if (!(pick = askCurve("2D polyline")))
            return;
        if (!(p = polylineOf(*pick)))
            m_ed.printLine("That object is not a 2D polyline.");
    }
    const geom::RoundedPolyline changed = allCorners(*p);
    m_edits.begin();
    if (changed.done > 0)
        m_edits.replace(*pick->entity, {geom::Curve(changed.polyline)});
    m_edits.end();
    m_ed.printLine(fmt::format("{} lines were {}", changed.done, m_words.done));
    if (changed.tooShort > 0)
        m_ed.printLine(fmt::format("{} were too short", changed.tooShort));
}

// Whether the command goes on.
bool CornerCommand::option(const std::string& keyword)
{
    if (keyword == "Undo") {
        if (!m_edits.undo())
            m_ed.printLine("The command has been completely undone.");
    } else if (keyword == "Polyline") {
        wholePolyline();
        return m_multiple;
    } else if (keyword == "Trim") {
        askTrim();
    } else if (keyword == "Multiple") {
        m_multiple = true;
    } else {
        const bool driven = m_ed.isDriven();
        askSetting(keyword);
        // Driven by another command, the setting is all that was wanted.
        return !driven;
    }
    return true;
}

bool CornerCommand::secondSide(const CurvePick& first)
{
    const auto second = askCurve("second " + m_words.side);
    if (!second)
        return false;
    m_edits.begin();
    const bool done = makeCorner(m_ed, m_edits, cornerPick(first), cornerPick(*second), maker());
    m_edits.end();
    return done;
}

void CornerCommand::run()
{
    tellSettings();
    for (;;) {
        const Answer a = m_ed.askEntity(fmt::format("Select first {} or [{}]", m_words.side, m_words.options),
                                        {.keywords = keywordsOf(m_words.options)});
        if (a.status == Status::Enter)
            return;
        if (a.status == Status::Keyword) {
            if (!option(a.text))
                return;
            continue;
        }
        const auto first = curvePick(m_ed, a);
        if (first && secondSide(*first) && !m_multiple)
            return;
    }
}

}
