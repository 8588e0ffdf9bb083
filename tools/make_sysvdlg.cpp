// Makes SYSVDLG.DAT, the catalogue that the dialog of system variables reads, from the host's own table of them.
//
// usage: make_sysvdlg FILE           writes it
//        make_sysvdlg --check FILE   fails when the file is not what the table gives

#include "host/base/code_page.h"
#include "host/base/files.h"
#include "host/edit/sysvar_table.h"

#include <fmt/format.h>

#include <cstdio>
#include <cstring>
#include <fstream>

namespace {

using namespace vk::edit;

constexpr std::string_view kDegrees = "UCSAXISANG";  // the dialog shows it in whole degrees

const char* savedIn(SysVarHome home)
{
    switch (home) {
    case SysVarHome::NotSaved:
        return "Not saved";
    case SysVarHome::Drawing:
    case SysVarHome::Dictionary:
        return "Drawing";
    case SysVarHome::Viewport:
        return "Drawing, with the viewport";
    case SysVarHome::DimStyle:
        return "Drawing, with the dimensions";
    case SysVarHome::Profile:
        return "User profile";
    }
    return "";
}

bool isSwitch(const SysVarDef& def)
{
    return def.range.kind == SysVarRange::Between && def.range.min == 0 && def.range.max == 1;
}

const char* typeName(const SysVarDef& def)
{
    switch (def.type) {
    case SysVarType::Short:
        return isSwitch(def) ? "Switch" : def.range.kind == SysVarRange::OneOf ? "Enum" : "Integer";
    case SysVarType::Long:
        return "Long";
    case SysVarType::Real:
        return "Real";
    case SysVarType::String:
        return "String";
    case SysVarType::Point2d:
        return "2D point";
    case SysVarType::Point3d:
        return "3D point";
    }
    return "";
}

// Angles that the table has to the last bit are given as people read them.
std::string initialText(const SysVarDef& def)
{
    const SysVarValue value = initialValue(def);
    const auto* real = std::get_if<double>(&value);
    if (!real)
        return def.initial;
    return def.name == kDegrees ? fmt::format("{:.0f}", *real * 180 / M_PI) : fmt::format("{:.6g}", *real);
}

// Of what a person may set, where the range says more than the type does; descriptions of switches tell of both values.
std::string allowedText(const SysVarDef& def)
{
    const bool isPlain = def.range.kind == SysVarRange::Any || def.type == SysVarType::String || isSwitch(def);
    return def.readOnly || isPlain || def.name == kDegrees ? "" : "\\n\\nAllowed: " + describeRange(def) + ".";
}

std::string entry(const SysVarDef& def)
{
    return fmt::format("{}{}|{}|{}|{}\r\n{}{}\r\n", def.readOnly ? '#' : '!', def.name, typeName(def),
                       savedIn(def.home), initialText(def), def.description, allowedText(def));
}

std::string catalogue()
{
    std::string text;
    for (const SysVarDef& def : sysVarTable())
        text += entry(def);
    return CodePage::host().fromUtf8(text, CodePage::Unknown::Escape);
}

int check(const char* path)
{
    const auto found = readWholeFile(path);
    if (found && *found == catalogue())
        return 0;
    std::fprintf(stderr, "%s is not what the table of system variables gives; make it anew with make_sysvdlg\n", path);
    return 1;
}

int write(const char* path)
{
    std::ofstream file(path, std::ios::binary);
    file << catalogue();
    file.close();
    return file ? 0 : 1;
}

}

int main(int argc, char** argv)
{
    if (argc == 3 && std::strcmp(argv[1], "--check") == 0)
        return check(argv[2]);
    if (argc == 2)
        return write(argv[1]);
    std::fprintf(stderr, "usage: make_sysvdlg [--check] FILE\n");
    return 2;
}
