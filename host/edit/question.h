// A question to the person and what came of it. The one form in which commands of every kind ask.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_object.h"
#include "sdk/vcge.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vk::edit {

class SelectionSet;

struct Keyword {
    std::string global;  // what the command sees, in the language of commands
    std::string local;   // what the person types; the same where there is no translation
    std::string abbreviation() const;
};

// The keywords of an initget text: "Open Close _Open Close", "LAyer,LT LType", "?". Local words first, then the global ones
// behind an underscore. Words are separated by blanks; the capitals of a word, or what follows its comma, abbreviate it.
VKHOST_API std::vector<Keyword> parseKeywords(std::string_view initGetText);

// How a typed word meets the keywords.
struct KeywordMatch {
    enum Result { None, One, Ambiguous } result = None;
    std::size_t index = 0;
};
VKHOST_API KeywordMatch matchKeyword(const std::vector<Keyword>& keywords, std::string_view typed);

// What vcedInitGet sets for the next question.
struct InitGet {
    enum Bits : int {
        NoEnter = 1,
        NoZero = 2,
        NoNegative = 4,
        NoLimits = 8,
        Dashed = 32,
        Only2d = 64,
        Arbitrary = 128,
    };
    int bits = 0;
    std::vector<Keyword> keywords;
    bool has(Bits bit) const { return (bits & bit) != 0; }
};

struct Question {
    enum class Kind {
        Command,  // the name of a command
        Point,
        Corner,
        Distance,
        Angle,        // a turn or a span: as typed, or between the drawing's angle zero and what is shown
        Orientation,  // a direction in the UCS; as typed it counts from ANGBASE
        Real,
        Integer,
        Keyword,
        Word,       // a text that a space ends
        Text,       // the rest of the line, as it stands
        Entity,     // a pick of one object
        Selection,  // one line at "Select objects:"
    };
    Kind kind = Kind::Point;
    std::string prompt;  // as printed, with its default in <>
    InitGet init;
    std::optional<VcGePoint3d> base;  // in the UCS
    // The command knows what Enter means. A command that still asks when its caller ends takes it, or is cancelled.
    bool hasDefault = false;
    // Of a command that another one drives: when the arguments end here, that is Enter, and the command goes on at once.
    bool endsWithArguments = false;
    bool isNested = false;  // Entity: an object within a block is meant
    // Real values: which of the drawing's notations are taken beside plain numbers.
    bool anyNumber = false;  // Integer: the whole range of 32 bits
};

struct Answer {
    enum class Status { Value, Enter, Keyword, Arbitrary, Cancel, Failed };
    Status status = Status::Cancel;
    VcGePoint3d point;      // Point, Corner, Entity: in the UCS
    bool hasPoint = false;  // Entity by name has none
    double real = 0;        // Distance, Angle, Orientation, Real
    std::int64_t integer = 0;
    std::string text;  // Word, Text, Command, Arbitrary; of Keyword the global word
    VcDbObjectId entity;
    std::shared_ptr<SelectionSet> selection;  // a set given as a value
    bool isTyped = false;                     // came as text, not as a value
};

}  // namespace vk::edit
