// Values of system variables: the drawing's in its header, the user's in the profile, the session's in memory.
#pragma once

#include "host/edit/sysvar_table.h"

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>

class DatabaseCore;

namespace vk::edit {

class Editor;

enum class SetVarResult { Done, Unknown, ReadOnly, WrongType, OutOfRange, Refused };

class VKHOST_API SysVars {
public:
    explicit SysVars(Editor& editor);
    ~SysVars();

    // Nothing for a name that is no variable.
    std::optional<SysVarValue> get(std::string_view name) const;
    // As people and modules set it: read-only ones refuse, values are checked, integers become reals where needed.
    SetVarResult set(std::string_view name, const SysVarValue& value);
    // The host's own setting, read-only ones too.
    void force(std::string_view name, const SysVarValue& value);
    // Values of the session begin anew with each drawing where they belong to it.
    void drawingOpened();

    std::int64_t integer(std::string_view name) const;
    double real(std::string_view name) const;
    std::string text(std::string_view name) const;
    VcGePoint3d point(std::string_view name) const;

private:
    struct Values;
    Editor& m_editor;
    std::unique_ptr<Values> m_values;
};

}  // namespace vk::edit
