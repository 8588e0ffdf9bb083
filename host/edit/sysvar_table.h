// The table of system variables: what each is called, what it may hold, where it is kept, and what it is for.
// The table says nothing of the present values; those are kept by the session, the drawing and the profile.
#pragma once

#include "host/base/api.h"
#include "vcge.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace vk::edit {

enum class SysVarType : std::uint8_t {
    Short,   // 16 bits; yes and no are 1 and 0
    Long,    // 32 bits
    Real,    // angles in radians
    String,  // names of layers, styles and other records are strings too
    Point2d,
    Point3d,
};

enum class SysVarHome : std::uint8_t {
    NotSaved,    // lives as long as the session or is worked out when asked for
    Drawing,     // the drawing's header
    Dictionary,  // the drawing's AcDbVariableDictionary, one DICTIONARYVAR of the variable's name
    Viewport,    // the record of the active viewport
    DimStyle,    // the header, as a variation of the current dimension style
    Profile,     // the settings of the user
};

// What values are allowed. Of a point each coordinate is meant, of a string its length in characters.
struct SysVarRange {
    enum Kind : std::uint8_t { Any, Between, Above, NotZero, OneOf, Bits };
    static constexpr double kNoLimit = 1e300;

    Kind kind = Any;
    double min = 0;  // Between: inclusive. Above: exclusive. Bits: unused.
    double max = 0;  // Bits: the sum of all bits that have a meaning.
    std::span<const int> values = {};
};

struct SysVarDef {
    const char* name;  // in capitals
    SysVarType type;
    SysVarHome home;
    bool readOnly;
    const char* initial;  // as printSysVar prints it
    SysVarRange range;
    const char* description;  // for people: what it does and what its values mean

    // The DXF header variable that carries the value and its (first) group code, null where none does. With home
    // Viewport it counts only in a file without an active viewport record. Where code and type differ (a colour in 62,
    // a character in 70, an angle in degrees in 50, a name that the file gives as a handle) the header has the code's
    // kind.
    const char* headerName = nullptr;
    int headerCode = 0;
};

using SysVarValue = std::variant<std::int32_t, double, std::string, VcGePoint2d, VcGePoint3d>;

VKHOST_API std::span<const SysVarDef> sysVarTable();  // sorted by name
VKHOST_API const SysVarDef* findSysVar(std::string_view name);
VKHOST_API const SysVarDef* findSysVarOfHeader(std::string_view headerName);

constexpr bool isSavedInDrawing(SysVarHome home) { return home != SysVarHome::NotSaved && home != SysVarHome::Profile; }

// Reads a value of the variable's type; nothing for text of another shape. The range is not looked at.
VKHOST_API std::optional<SysVarValue> parseSysVar(const SysVarDef& def, std::string_view text);
VKHOST_API std::string printSysVar(const SysVarValue& value);
VKHOST_API SysVarValue initialValue(const SysVarDef& def);

// False as well where the value is of another type than the variable.
VKHOST_API bool inRange(const SysVarDef& def, const SysVarValue& value);
// What is allowed, to follow "Requires": "a whole number from 0 to 4".
VKHOST_API std::string describeRange(const SysVarDef& def);

}  // namespace vk::edit
