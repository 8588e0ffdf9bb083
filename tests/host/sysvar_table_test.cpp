// The table of system variables: that it is sound as a whole, and that text, ranges and names are understood.
#include "host/edit/sysvar_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <limits>
#include <map>
#include <set>
#include <stdexcept>

using namespace vk::edit;

namespace {

const SysVarDef& row(const char* name)
{
    const SysVarDef* def = findSysVar(name);
    if (!def)
        throw std::invalid_argument(name);
    return *def;
}

bool accepts(const char* name, const char* text)
{
    const auto value = parseSysVar(row(name), text);
    return value && inRange(row(name), *value);
}

// Group codes that a header may use for a value of this type.
bool isFittingCode(SysVarType type, int code)
{
    static const std::map<SysVarType, std::set<int>> codes = {
        {SysVarType::Short, {70, 280, 290, 370}},
        {SysVarType::Long, {70, 90}},
        {SysVarType::Real, {40, 50}},
        {SysVarType::String, {1, 2, 3, 6, 7, 8, 62, 70, 345, 346, 347, 349, 380}},
        {SysVarType::Point2d, {10}},
        {SysVarType::Point3d, {10}},
    };
    return codes.at(type).contains(code);
}

// The home and the header name belong together.
bool hasFittingHome(const SysVarDef& def)
{
    switch (def.home) {
    case SysVarHome::Drawing:
        return def.headerName;
    case SysVarHome::DimStyle:
        return std::string_view(def.name).starts_with("DIM");
    case SysVarHome::Viewport:
        return true;
    default:
        return !def.headerName;
    }
}

bool isSwitch(const SysVarDef& def)
{
    return def.type == SysVarType::Short && def.range.kind == SysVarRange::Between && def.range.min == 0 &&
           def.range.max == 1;
}

}  // namespace

TEST(SysVarTable, HoldsWhatDraftersExpect)
{
    EXPECT_GE(sysVarTable().size(), 450u);
    for (const char* name : {"CLAYER", "DIMSCALE", "LTSCALE", "OSMODE", "PICKFIRST", "CMDECHO", "VIEWCTR", "USERS5",
                             "BLIPMODE", "CPROFILE", "INSUNITS", "TILEMODE", "ERRNO", "TRIMMODE", "CANNOSCALE"})
        EXPECT_NE(findSysVar(name), nullptr) << name;
}

TEST(SysVarTable, IsSortedWithoutDuplicates)
{
    const auto table = sysVarTable();
    const auto unordered = std::ranges::adjacent_find(
        table, [](const SysVarDef& a, const SysVarDef& b) { return std::string_view(a.name) >= b.name; });
    EXPECT_EQ(unordered, table.end()) << unordered->name;
}

TEST(SysVarTable, NamesAreCapitalsAndDigits)
{
    for (const SysVarDef& def : sysVarTable())
        EXPECT_TRUE(std::ranges::all_of(std::string_view(def.name), [](unsigned char c) {
            return std::isupper(c) || std::isdigit(c);
        })) << def.name;
}

TEST(SysVarTable, InitialValuesParsePrintAndLieInRange)
{
    for (const SysVarDef& def : sysVarTable()) {
        const auto value = parseSysVar(def, def.initial);
        ASSERT_TRUE(value) << def.name;
        EXPECT_TRUE(inRange(def, *value)) << def.name << " = " << def.initial;
        EXPECT_EQ(printSysVar(*value), def.initial) << def.name;
    }
}

TEST(SysVarTable, HeadersFitTheirVariables)
{
    std::set<std::string> seen;
    for (const SysVarDef& def : sysVarTable()) {
        EXPECT_TRUE(hasFittingHome(def)) << def.name;
        if (!def.headerName) {
            EXPECT_EQ(def.headerCode, 0) << def.name;
            continue;
        }
        EXPECT_EQ(def.headerName[0], '$') << def.name;
        EXPECT_TRUE(seen.insert(def.headerName).second) << def.headerName;
        EXPECT_TRUE(isFittingCode(def.type, def.headerCode)) << def.name << ' ' << def.headerCode;
        EXPECT_EQ(findSysVarOfHeader(def.headerName), &def);
    }
}

TEST(SysVarTable, DescriptionsAreSentencesOfTheirOwn)
{
    std::map<std::string, const char*> seen;
    for (const SysVarDef& def : sysVarTable()) {
        const std::string text = def.description;
        EXPECT_TRUE(text.ends_with('.')) << def.name;
        EXPECT_TRUE(text.size() >= 15 && text.size() <= 255) << def.name << ' ' << text.size();
        EXPECT_EQ(text.find("  "), std::string::npos) << def.name;
        EXPECT_TRUE(std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~' && c != '"'; })) << def.name;
        const auto [other, isNew] = seen.emplace(text, def.name);
        EXPECT_TRUE(isNew) << def.name << " and " << other->second;
    }
}

TEST(SysVarTable, DescriptionsOfSwitchesSayWhatTheStatesAre)
{
    for (const SysVarDef& def : sysVarTable()) {
        if (isSwitch(def)) {
            EXPECT_NE(std::string_view(def.description).find_first_of("01"), std::string_view::npos) << def.name;
        }
    }
}

TEST(SysVarLookup, IgnoresCaseAndWantsTheWholeName)
{
    EXPECT_EQ(findSysVar("ClAyEr"), findSysVar("CLAYER"));
    EXPECT_NE(findSysVar("clayer"), nullptr);
    for (const char* unknown : {"", "CLAYE", "CLAYERS", "$CLAYER", " CLAYER", "ZZZ", "0"})
        EXPECT_EQ(findSysVar(unknown), nullptr) << unknown;
    for (const char* unknown : {"", "CLAYER", "$HANDSEED", "$CLAYER1", "$"})
        EXPECT_EQ(findSysVarOfHeader(unknown), nullptr) << unknown;
}

TEST(SysVarLookup, FirstAndLastRowAreFound)
{
    EXPECT_EQ(findSysVar(sysVarTable().front().name), &sysVarTable().front());
    EXPECT_EQ(findSysVar(sysVarTable().back().name), &sysVarTable().back());
}

TEST(SysVarHomes, AreWhereTheyBelong)
{
    const struct {
        const char* name;
        SysVarHome home;
        const char* header;
        int code;
    } kHomes[] = {
        {"CLAYER", SysVarHome::Drawing, "$CLAYER", 8},         {"LTSCALE", SysVarHome::Drawing, "$LTSCALE", 40},
        {"INSBASE", SysVarHome::Drawing, "$INSBASE", 10},      {"CECOLOR", SysVarHome::Drawing, "$CECOLOR", 62},
        {"CELWEIGHT", SysVarHome::Drawing, "$CELWEIGHT", 370}, {"DIMASSOC", SysVarHome::Drawing, "$DIMASSOC", 280},
        {"DIMTXT", SysVarHome::DimStyle, "$DIMTXT", 40},       {"VIEWSIZE", SysVarHome::Viewport, "$VIEWSIZE", 40},
        {"LWDISPLAY", SysVarHome::Drawing, "$LWDISPLAY", 290}, {"ANGBASE", SysVarHome::Drawing, "$ANGBASE", 50},
        {"CANNOSCALE", SysVarHome::Dictionary, nullptr, 0},    {"PICKBOX", SysVarHome::Profile, nullptr, 0},
        {"CMDECHO", SysVarHome::NotSaved, nullptr, 0},         {"UCSAXISANG", SysVarHome::Profile, nullptr, 0},
    };
    for (const auto& expected : kHomes) {
        const SysVarDef& def = row(expected.name);
        EXPECT_EQ(def.home, expected.home) << expected.name;
        EXPECT_STREQ(def.headerName, expected.header);
        EXPECT_EQ(def.headerCode, expected.code) << expected.name;
        EXPECT_EQ(isSavedInDrawing(def.home),
                  expected.home != SysVarHome::Profile && expected.home != SysVarHome::NotSaved);
    }
}

TEST(SysVarValues, AreReadFromText)
{
    const struct {
        const char* name;
        const char* text;
        const char* printed;  // null where the text is refused
    } kTexts[] = {
        {"LUPREC", "3", "3"},           {"LUPREC", " +3 ", "3"},       {"LUPREC", "3.0", nullptr},
        {"LUPREC", "", nullptr},        {"LUPREC", "x", nullptr},      {"LUPREC", "+-3", nullptr},
        {"LUPREC", "40000", nullptr},   {"TREEMAX", "40000", "40000"}, {"TREEMAX", "2147483648", nullptr},
        {"LTSCALE", "2.500000", "2.5"}, {"LTSCALE", "-0", "0"},        {"LTSCALE", "1e3", "1000"},
        {"LTSCALE", "1,5", nullptr},    {"LTSCALE", "nan", nullptr},   {"LTSCALE", "inf", nullptr},
        {"LTSCALE", "1e999", nullptr},  {"LTSCALE", "2 3", nullptr},   {"LIMMAX", "1, 2", "1,2"},
        {"LIMMAX", "1", nullptr},       {"LIMMAX", "1,2,3", nullptr},  {"LIMMAX", "1,", nullptr},
        {"INSBASE", "1,2", "1,2,0"},    {"INSBASE", "1,2,3", "1,2,3"}, {"INSBASE", "1,2,3,4", nullptr},
        {"INSBASE", ",,", nullptr},     {"CLAYER", " a b ", " a b "},  {"DIMPOST", "", ""},
    };
    for (const auto& [name, text, printed] : kTexts) {
        const auto value = parseSysVar(row(name), text);
        ASSERT_EQ(value.has_value(), printed != nullptr) << name << " '" << text << "'";
        if (value) {
            EXPECT_EQ(printSysVar(*value), printed) << name;
        }
    }
}

TEST(SysVarRanges, LetInWhatTheyShould)
{
    const struct {
        const char* name;
        const char* text;
        bool allowed;
    } kCases[] = {
        {"AUNITS", "0", true},       {"AUNITS", "4", true},       {"AUNITS", "5", false},
        {"AUNITS", "-1", false},     {"LTSCALE", "0", false},     {"LTSCALE", "1e-9", true},
        {"DIMSCALE", "0", true},     {"DIMSCALE", "-1", false},   {"DIMLFAC", "0", false},
        {"DIMLFAC", "-2", true},     {"DIMLWD", "25", true},      {"DIMLWD", "-3", true},
        {"DIMLWD", "26", false},     {"LWDEFAULT", "-1", false},  {"LWDEFAULT", "0", true},
        {"SPLINETYPE", "7", false},  {"PDMODE", "35", true},      {"PDMODE", "5", false},
        {"SORTENTS", "127", true},   {"SORTENTS", "128", false},  {"SORTENTS", "-1", false},
        {"OSMODE", "16384", true},   {"DIMDSEP", ",", true},      {"DIMDSEP", "\xC2\xB7", true},
        {"DIMDSEP", "..", false},    {"DIMDSEP", "", false},      {"CLAYER", "", false},
        {"SNAPUNIT", "1,0", false},  {"SNAPUNIT", "1,2", true},   {"GRIDUNIT", "0,0", true},
        {"VIEWDIR", "0,0,0", false}, {"VIEWDIR", "0,0,-1", true}, {"USERI1", "-32768", true},
    };
    for (const auto& [name, text, allowed] : kCases)
        EXPECT_EQ(accepts(name, text), allowed) << name << ' ' << text;
}

TEST(SysVarRanges, RefuseValuesOfAnotherType)
{
    EXPECT_FALSE(inRange(row("LTSCALE"), std::int32_t(1)));
    EXPECT_FALSE(inRange(row("LUPREC"), 2.0));
    EXPECT_FALSE(inRange(row("LUPREC"), std::string("2")));
    EXPECT_FALSE(inRange(row("LIMMAX"), VcGePoint3d(1, 2, 3)));
    EXPECT_FALSE(inRange(row("USERI1"), std::int32_t(40000)));
    EXPECT_FALSE(inRange(row("USERR1"), std::numeric_limits<double>::quiet_NaN()));
    EXPECT_FALSE(inRange(row("LIMMAX"), VcGePoint2d(1, std::numeric_limits<double>::infinity())));
}

TEST(SysVarRanges, AreToldInWords)
{
    const struct {
        const char* name;
        const char* words;
    } kWords[] = {
        {"AUNITS", "a whole number from 0 to 4"},
        {"FILLMODE", "a whole number 0 or 1"},
        {"LTSCALE", "a number greater than 0"},
        {"DIMASZ", "a number of 0 or more"},
        {"DIMLFAC", "a number other than zero"},
        {"SPLINETYPE", "one of 5, 6"},
        {"SORTENTS", "a sum of bits from 0 to 127"},
        {"CLAYER", "a text of length from 1 to 255"},
        {"DIMDSEP", "a text of length 1"},
        {"SNAPUNIT", "a point with coordinates greater than 0"},
        {"INSBASE", "a point"},
    };
    for (const auto& [name, words] : kWords)
        EXPECT_EQ(describeRange(row(name)), words) << name;
}
