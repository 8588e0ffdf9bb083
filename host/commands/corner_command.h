// The course of FILLET and CHAMFER: options, a first and a second side, or a whole polyline. What they ask for and what they
// make of a corner is their own.
#pragma once

#include "host/commands/corners.h"
#include "host/edit/sysvars.h"

#include <string>

namespace vk::commands {

class CornerCommand {
public:
    struct Words {
        std::string side;      // what is picked: "object"
        std::string options;   // of the first prompt: "Undo/Polyline/..."
        std::string settings;  // those of them that may also be set at the later prompts
        std::string done;      // "filleted"
    };

    CornerCommand(edit::Editor& ed, Words words) : m_ed(ed), m_edits(ed), m_words(std::move(words)) {}
    virtual ~CornerCommand() = default;
    void run();

protected:
    virtual void tellSettings() = 0;
    virtual void askSetting(const std::string& keyword) = 0;
    virtual CornerMaker maker() const = 0;
    virtual geom::RoundedPolyline allCorners(const geom::Polyline& p) const = 0;

    bool trims() const { return m_ed.vars().integer("TRIMMODE") != 0; }
    edit::Editor& m_ed;

private:
    void askTrim();
    bool option(const std::string& keyword);
    // A curve, settings asked for meanwhile; nothing at Enter.
    std::optional<CurvePick> askCurve(const std::string& what);
    void wholePolyline();
    bool secondSide(const CurvePick& first);

    CurveEdits m_edits;
    Words m_words;
    bool m_multiple = false;
};

}  // namespace vk::commands
