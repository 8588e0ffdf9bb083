// Chains of the drawing as Lisp data and back.

#include "host/lisp/chain.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/printer.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace vk::lisp {
namespace {

const vds_name kEntity = {0x1f, 0};
const vds_name kSet = {0x2, 0x7};

RbPtr circle()
{
    RbBuilder chain;
    chain.addName(-1, kEntity);
    chain.addUtf8(0, "CIRCLE");
    chain.addUtf8(5, "2F");
    chain.addName(330, kEntity);
    chain.addUtf8(100, "AcDbCircle");
    chain.addPoint(10, 1, 2.5, 0);
    chain.addReal(40, 3);
    chain.addInteger(62, 1);
    chain.addInteger(290, 1);
    chain.addBytes(310, std::string_view("\x00\xAF", 2));
    chain.add(-3);
    chain.addUtf8(1001, "APP");
    chain.addUtf8(1000, "x\u00e9");
    chain.addPoint(1010, 1, 2, 3);
    chain.addInteger(1070, -4);
    chain.addInteger(1071, 100000);
    chain.addUtf8(1001, "OTHER");
    return chain.take();
}

TEST(LispGroups, ReadAsAnAssociationList)
{
    EXPECT_EQ(
        print(groupsToList(circle().get())),
        "((-1 . <Entity name: 1f>) (0 . \"CIRCLE\") (5 . \"2F\") (330 . <Entity name: 1f>) (100 . \"AcDbCircle\") "
        "(10 1.0 2.5 0.0) (40 . 3.0) (62 . 1) (290 . 1) (310 . \"00AF\") "
        "(-3 (\"APP\" (1000 . \"x\u00e9\") (1010 1.0 2.0 3.0) (1070 . -4) (1071 . 100000)) (\"OTHER\")))");
    EXPECT_EQ(print(groupsToList(nullptr)), "nil");
}

TEST(LispGroups, ComeBackAsTheyWere)
{
    const RbPtr before = circle();
    const RbPtr after = listToGroups(groupsToList(before.get()));
    const resbuf* a = before.get();
    const resbuf* b = after.get();
    for (; a && b; a = a->rbnext, b = b->rbnext) {
        EXPECT_EQ(a->restype, b->restype);
        EXPECT_TRUE(sameRbValue(*a, *b)) << "group " << a->restype;
    }
    EXPECT_TRUE(!a && !b);
}

struct FlatCase {
    const char* subclass;
    int pathsCode;  // a group 91 before the point, or 0
    const char* printed;
};

TEST(LispGroups, PointsHaveTwoCoordinatesWhereTheDrawingKeepsTwo)
{
    const FlatCase cases[] = {
        {"AcDbPolyline", 0, "(10 1.0 2.0)"},        {"AcDbLine", 0, "(10 1.0 2.0 0.0)"},
        {"AcDbHatch", 0, "(10 1.0 2.0 0.0)"},       {"AcDbHatch", 91, "(10 1.0 2.0)"},
        {"AcDbViewTableRecord", 0, "(10 1.0 2.0)"},
    };
    for (const FlatCase& example : cases) {
        RbBuilder chain;
        chain.addUtf8(100, example.subclass);
        if (example.pathsCode)
            chain.addInteger(example.pathsCode, 1);
        chain.addPoint(10, 1, 2, 0);
        const std::string printed = print(groupsToList(chain.take().get()));
        EXPECT_TRUE(printed.ends_with(std::string(example.printed) + ")")) << example.subclass << ": " << printed;
    }
}

// What a quoted list becomes, shown by turning it back.
std::string throughGroups(const char* list)
{
    Interpreter lisp;
    try {
        return print(groupsToList(listToGroups(lisp.evaluate(std::string("'") + list).value).get()));
    } catch (const std::exception& error) {
        return error.what();
    }
}

struct ListCase {
    const char* list;
    const char* result;
};

TEST(LispGroups, ListsBecomeGroupsOrAreRefused)
{
    const ListCase cases[] = {
        {"((0 . \"LINE\") (10 1 2))", "((0 . \"LINE\") (10 1.0 2.0 0.0))"},
        {"((40 . 2))", "((40 . 2.0))"},
        {"((-4 . \"<OR\") (62 . 1) (-4 . \"OR>\"))", "((-4 . \"<OR\") (62 . 1) (-4 . \"OR>\"))"},
        {"((-3 (\"APP\")))", "((-3 (\"APP\")))"},
        {"()", "nil"},
        {"((8 . 5))", "bad DXF group: (8 . 5)"},
        {"((8 \"0\"))", "bad DXF group: (8 \"0\")"},
        {"((10 . 5))", "bad DXF group: (10 . 5)"},
        {"((10 1))", "bad DXF group: (10 1)"},
        {"((62 . 1.5))", "bad DXF group: (62 . 1.5)"},
        {"((70 . 70000))", "bad DXF group: (70 . 70000)"},
        {"((290 . 2))", "bad DXF group: (290 . 2)"},
        {"((310 . \"0G\"))", "bad DXF group: (310 . \"0G\")"},
        {"((310 . \"0\"))", "bad DXF group: (310 . \"0\")"},
        {"((330 . \"2F\"))", "bad DXF group: (330 . \"2F\")"},
        {"((\"a\" . 1))", "bad DXF group: (\"a\" . 1)"},
        {"((99999 . 1))", "bad DXF group: (99999 . 1)"},
        {"(5)", "bad DXF group: 5"},
        {"((-3 (5)))", "bad DXF group: (-3 (5))"},
        {"((-3 (\"A\" (-3 (\"A\")))))", "bad DXF group: (-3 (\"A\" (-3 (\"A\"))))"},
        {"5", "bad argument type: listp: 5"},
    };
    for (const ListCase& example : cases)
        EXPECT_EQ(throughGroups(example.list), example.result);
}

std::string throughValues(const char* list)
{
    Interpreter lisp;
    const Value values = lisp.evaluate(list).value;
    std::string shown;
    for (const Value& value : chainToValues(lisp, valuesToChain(Args(&values, 1)).get()))
        shown += print(value);
    return shown;
}

TEST(LispValues, TravelAndComeBack)
{
    const ListCase cases[] = {
        {"5", "5"},
        {"70000", "70000"},
        {"1.5", "1.5"},
        {"\"text\"", "\"text\""},
        {"T", "T"},
        {"nil", "nil"},
        {"'(1.0 2.0)", "(1.0 2.0)"},
        {"'(1.0 2.0 3.0)", "(1.0 2.0 3.0)"},
        {"'(1 2 3)", "(1 2 3)"},
        {"'(1.0 2.0 3.0 4.0)", "(1.0 2.0 3.0 4.0)"},
        {"'(a)", ""},
        {"'(\"a\" (1 nil) . 2)", "(\"a\" (1 nil) . 2)"},
        {"'(((\"a\" . \"b\")))", "(((\"a\" . \"b\")))"},
        {"'((1.0 2.0) 3)", "((1.0 2.0) 3)"},
    };
    for (const ListCase& example : cases) {
        try {
            EXPECT_EQ(throughValues(example.list), example.result);
        } catch (const std::exception& error) {
            EXPECT_STREQ(error.what(), "bad argument type: value for the drawing: A") << example.list;
            EXPECT_STREQ(example.result, "");
        }
    }
}

TEST(LispValues, NamesAndLooseMarks)
{
    Interpreter lisp;
    RbBuilder chain;
    chain.add(RTLE);
    chain.addName(RTENAME, kEntity);
    chain.addName(RTPICKS, kSet);
    chain.add(RTLB);
    chain.addUtf8(8, "0");
    std::string shown;
    for (const Value& value : chainToValues(lisp, chain.take().get()))
        shown += print(value);
    EXPECT_EQ(shown, "<Entity name: 1f><Selection set: 2-7>((8 . \"0\"))");
}

}  // namespace
}  // namespace vk::lisp
