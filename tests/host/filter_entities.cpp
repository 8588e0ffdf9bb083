// Filters: what each kind of test takes, how they are joined, and what is no filter at all.
#include "host/edit/filter.h"
#include "host/db/extras.h"
#include "tests/host/select_support.h"

#include <chrono>

using namespace seltest;
using vk::edit::EntityFilter;

namespace {

class Filter : public Drawing {
protected:
    // a, b, c lines; d circle; e, f texts; g insert; h arc on another linetype
    void SetUp() override
    {
        Drawing::SetUp();
        line(0, 0, 1, 0, "WALL");
        line(1, 2, 3, 4, "Wall-2").setColorIndex(1);
        line(5, 5, 5, 9, "A*");
        circle(10, 10, 2.5, "WALL").setColorIndex(3);
        text(20, 0, L"Alpha", "TEXT");
        text(20, 5, L"beta", "TEXT");
        block("*U1");
        block("*U2");
        insert("*U1", 30, 0);
        insert("*U2", 30, 0);
        db().recordFor(NameTable::Linetype, "DASHED");
        add(new VcDbArc({0, 0, 0}, VcGeVector3d::zAxis(), 1, 0, 1), "AB").setLinetype(L"DASHED");
    }
    std::string taken(const std::string& filter)
    {
        const RbPtr chain = chainFrom(filter);
        const auto parsed = EntityFilter::parse(db(), chain.get());
        if (!parsed)
            return "refused";
        std::string all;
        for (const std::uint32_t slot : space().memberSlots())
            if (auto* e = VcDbEntity::cast(db().objectAt(slot)); parsed->accepts(*e))
                all += letterOf(e->objectId());
        return all;
    }
};

struct Case {
    const char* name;
    const char* filter;
    const char* taken;
};

const Case kCases[] = {
    {"Type", "0=LINE", "abc"},
    {"TypeByTheOtherCode", "5020=line", "abc"},
    {"TypesWithCommas", "0=CIRCLE,ARC", "di"},
    {"TypeByPattern", "0=*C*", "di"},
    {"NotThatType", "-4=/=|0=LINE", "defghi"},
    {"Layer", "8=WALL", "ad"},
    {"LayerCaseDoesNotCount", "8=wall*", "abd"},
    {"LayerThatLooksLikeAPatternIsItself", "8=A*", "c"},
    {"PatternThatIsNoLayer", "8=A?", "ci"},
    {"AnonymousBlockIsItself", "0=INSERT|2=*u1", "g"},
    {"AnonymousBlocksByPattern", "2=`*U*", "gh"},
    {"TypeAndLayer", "0=LINE|8=WALL", "a"},
    {"ColourOfItsOwn", "62=1", "b"},
    {"ColourByLayerIsTheDefault", "62=256", "acefghi"},
    {"ColourFrom", "-4=>=|62=3", "acdefghi"},
    {"Linetype", "6=dashed", "i"},
    {"LinetypeByLayerIsTheDefault", "6=BYLAYER|0=ARC,LINE", "abc"},
    {"ThicknessIsZeroByDefault", "39=0|0=LINE", "abc"},
    {"NoEntityHasThatGroup", "340=1", ""},
    {"NoCodeOfAGroup", "80", "refused"},
    {"Text", "1=ALPHA", "e"},
    {"TextByPattern", "1=*a", "ef"},
    {"Radius", "40=2.5", "d"},
    {"RadiusAbove", "-4=>|40=1.0", "d"},
    {"RadiusUpTo", "0=CIRCLE,ARC|-4=<=|40=1.0", "i"},
    {"Point", "10=1,2,0", "b"},
    {"PointByCoordinates", "0=LINE|-4=>=,>=,*|10=1,2,0", "bc"},
    {"PointByOneCoordinate", "0=LINE|-4=,>|10=0,2,0", "c"},
    {"PointNotThere", "0=LINE|-4=<>|10=1,2,0", "ac"},
    {"AnyValue", "0=LINE|-4=*|10=0,0,0", "abc"},
    {"Or", "-4=<OR|0=CIRCLE|0=ARC|-4=OR>", "di"},
    {"LowerCaseOperators", "-4=<or|-4=<and|0=TEXT|1=beta|-4=and>|-4=<and|0=ARC|-4=and>|-4=or>", "fi"},
    {"Not", "-4=<NOT|0=LINE|-4=NOT>", "defghi"},
    {"Xor", "-4=<XOR|0=LINE|8=WALL|-4=XOR>", "bcd"},
    {"NotOfMany", "-4=<AND|-4=<NOT|0=LINE|-4=NOT>|-4=<NOT|0=TEXT|-4=NOT>|-4=AND>", "dghi"},
    {"ModelSpaceOnly", "67=0|0=LINE", "abc"},
    {"Invisible", "60=1", ""},
    {"WithAttributes", "0=INSERT|66=1", ""},
    {"Subclass", "100=AcDbArc", "i"},
    // What is no filter.
    {"NotClosed", "-4=<OR|0=LINE", "refused"},
    {"ClosedTwice", "0=LINE|-4=OR>", "refused"},
    {"ClosedByAnother", "-4=<OR|0=LINE|-4=AND>", "refused"},
    {"NotOfTwo", "-4=<NOT|0=LINE|8=WALL|-4=NOT>", "refused"},
    {"XorOfOne", "-4=<XOR|0=LINE|-4=XOR>", "refused"},
    {"EmptyOr", "-4=<OR|-4=OR>", "refused"},
    {"UnknownOperator", "-4=~|62=1", "refused"},
    {"NothingBehindAnOperator", "-4=>", "refused"},
    {"GreaterText", "-4=>|8=WALL", "refused"},
    {"BitsOfAReal", "-4=&|40=1.0", "refused"},
    {"FourCoordinates", "-4=>,>,>,>|10=0,0,0", "refused"},
};

TEST_F(Filter, Takes)
{
    for (const Case& c : kCases)
        EXPECT_EQ(taken(c.filter), c.taken) << c.name;
}

TEST_F(Filter, NoFilterTakesAll)
{
    const auto all = EntityFilter::parse(db(), nullptr);
    ASSERT_TRUE(all);
    EXPECT_TRUE(all->accepts(*db().objectAs<VcDbEntity>(idOf('a'))));
}

TEST_F(Filter, BitsOfFlags)
{
    auto* polyline = new VcDbPolyline;
    polyline->addVertexAt(0, {0, 0});
    polyline->addVertexAt(1, {1, 0});
    polyline->setClosed(true);
    polyline->setPlinegen(true);
    add(polyline);
    EXPECT_EQ(taken("0=LWPOLYLINE|-4=&|70=1"), "j");
    EXPECT_EQ(taken("0=LWPOLYLINE|-4=&=|70=129"), "j");
    EXPECT_EQ(taken("0=LWPOLYLINE|-4=&=|70=3"), "");
    EXPECT_EQ(taken("0=LWPOLYLINE|10=1,0,0"), "j") << "one of several points is enough";
}

TEST_F(Filter, ExtendedDataOfApplications)
{
    vcdbRegApp(L"MINE");
    auto* a = db().objectAs<VcDbEntity>(idOf('a'));
    db().recordFor(NameTable::AppId, "MINE");
    ASSERT_EQ(a->setXData(chainFrom("1001=MINE|1070=7").get()), Vcad::eOk);
    EXPECT_EQ(taken("-3|1001=MINE"), "a");
    EXPECT_EQ(taken("-3|1001=M*"), "a");
    EXPECT_EQ(taken("-3"), "a");
    EXPECT_EQ(taken("-3|1001=MINE|1001=OTHER"), "");
    EXPECT_EQ(taken("-4=<NOT|-3|1001=MINE|-4=NOT>|0=LINE"), "bc");
}

TEST_F(Filter, DeepNestingIsRefusedNotFollowed)
{
    std::string deep = "0=LINE";
    for (int i = 0; i < 100000; ++i)
        deep += "|-4=<AND";
    EXPECT_EQ(taken(deep), "refused");
}

TEST_F(Filter, TypeAndLayerNeedNoChains)
{
    const auto filter = EntityFilter::parse(db(), chainFrom("0=LINE,ARC|8=W*|62=256").get());
    ASSERT_TRUE(filter);
    auto* circle = db().objectAs<VcDbEntity>(idOf('c'));
    const auto start = std::chrono::steady_clock::now();
    std::size_t taken = 0;
    for (int i = 0; i < 1000000; ++i)
        taken += filter->accepts(*circle);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_EQ(taken, 0u);
#if defined(__SANITIZE_ADDRESS__)
    EXPECT_LT(seconds, 10.0);
#else
    EXPECT_LT(seconds, 1.0);
#endif
}

}
