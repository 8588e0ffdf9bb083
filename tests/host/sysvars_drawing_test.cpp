// System variables and the header of a drawing: what a file has in an unusual form.
#include "host/db/database.h"
#include "host/edit/sysvars_drawing.h"
#include "sdk/vcdb_database.h"

#include <gtest/gtest.h>

namespace {

using namespace vk::edit;

class SysVarsOfADrawing : public testing::Test {
protected:
    DatabaseCore& db() { return m_drawing.core(); }
    std::string read(const char* name)
    {
        const auto value = drawingSysVar(db(), *findSysVar(name));
        return value ? printSysVar(*value) : "(initial)";
    }
    bool write(const char* name, const char* text)
    {
        const SysVarDef& def = *findSysVar(name);
        return setDrawingSysVar(db(), def, *parseSysVar(def, text));
    }
    int codeOf(const char* header) { return (*db().header().find(header)->begin()).code; }

    VcDbDatabase m_drawing{true};
};

TEST_F(SysVarsOfADrawing, AGroupKeepsTheCodeOfTheFileWhereItCanHoldTheValue)
{
    const struct {
        int code;
        const char* value;
        int codeAfter;
    } cases[] = {{290, "0", 290}, {290, "1", 290}, {290, "2", 280}, {280, "2", 280}, {70, "2", 70}, {40, "2", 280}};
    for (const auto& c : cases) {
        db().header().setInteger("$XCLIPFRAME", c.code, 1);
        ASSERT_TRUE(write("XCLIPFRAME", c.value));
        EXPECT_EQ(read("XCLIPFRAME"), c.value);
        EXPECT_EQ(codeOf("$XCLIPFRAME"), c.codeAfter) << c.code << " " << c.value;
    }
}

TEST_F(SysVarsOfADrawing, PlotStylesGoByColourOrByKind)
{
    db().header().setInteger("$PSTYLEMODE", 290, 1);
    db().header().setInteger("$CEPSNTYPE", 380, 0);
    EXPECT_EQ(read("CPLOTSTYLE"), "ByColor");
    EXPECT_TRUE(write("CPLOTSTYLE", "bycolor"));
    EXPECT_FALSE(write("CPLOTSTYLE", "ByBlock"));
    EXPECT_EQ(db().header().integer("$CEPSNTYPE", -1), 0);

    db().header().setInteger("$PSTYLEMODE", 290, 0);
    EXPECT_EQ(read("CPLOTSTYLE"), "ByLayer");
    EXPECT_TRUE(write("CPLOTSTYLE", "BYBLOCK"));
    EXPECT_EQ(db().header().integer("$CEPSNTYPE", -1), 1);
    EXPECT_FALSE(write("CPLOTSTYLE", "Nonsense"));
    EXPECT_EQ(read("CPLOTSTYLE"), "ByBlock");
}

TEST_F(SysVarsOfADrawing, ASeparatorOfNothingIsTheUsualOne)
{
    db().header().setInteger("$DIMDSEP", 70, 0);
    EXPECT_EQ(read("DIMDSEP"), "(initial)");
    EXPECT_TRUE(write("DIMDSEP", ","));
    EXPECT_EQ(db().header().integer("$DIMDSEP", 0), ',');
    EXPECT_EQ(read("DIMDSEP"), ",");
}

}
