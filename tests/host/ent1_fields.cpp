// What a file says of an entity comes back the same, in the same order.
#include "ent1_support.h"
#include "group_list.h"
#include "host/base/group_code.h"
#include "host/db/ent_factories.h"
#include "host/db/field_reader.h"
#include "host/db/field_writer.h"

#include <fmt/format.h>

using namespace ent1;

namespace {

std::vector<std::string> parts(const std::string& list)
{
    std::vector<std::string> all;
    for (std::size_t at = 0; at <= list.size();) {
        const std::size_t end = std::min(list.find(" | ", at), list.size());
        all.push_back(list.substr(at, end - at));
        at = end + 3;
    }
    return all;
}

// Reads the groups into the object as those of a file.
void read(VcDbObject& object, Drawing& d, const std::string& list, DxfVersion version)
{
    const std::vector<std::string> groups = parts(list);
    std::vector<Tag> tags;
    for (const std::string& group : groups) {
        const std::size_t blank = group.find(' ');
        tags.push_back(Tag::ofChars(std::stoi(group), Tag::Form::Raw, std::string_view(group).substr(blank + 1)));
    }
    FieldReader reader(FieldVisitor::Purpose::ReadFile, version, d.core());
    reader.begin(tags);
    object.fields(reader);
    EXPECT_TRUE(reader.tookAll()) << list;
    reader.finish(object);
}

std::string written(VcDbObject& object, Drawing& d, FieldVisitor::Purpose purpose, DxfVersion version)
{
    ListSink sink;
    FieldWriter writer(purpose, version, d.core(), sink);
    writer.begin(object);
    object.fields(writer);
    writer.finish();
    return sink.list;
}

struct FieldCase {
    const char* name;
    const char* kind;  // group 0, and for those of several classes what tells them apart
    DxfVersion version;
    const char* groups;  // behind the common ones
};

const FieldCase kCases[] = {
    {"Line", "LINE", DxfVersion::R2018, "100 AcDbLine | 10 1 | 20 2 | 30 3 | 11 4 | 21 5 | 31 6"},
    {"LineThick", "LINE", DxfVersion::R2018,
     "100 AcDbLine | 39 2.5 | 10 1 | 20 2 | 30 3 | 11 4 | 21 5 | 31 6 | 210 0 | 220 0 | 230 -1"},
    {"LineWithTheZAxis", "LINE", DxfVersion::R2018,
     "100 AcDbLine | 39 0 | 10 1 | 20 2 | 30 3 | 11 4 | 21 5 | 31 6 | 210 0 | 220 0 | 230 1"},
    {"Arc", "ARC", DxfVersion::R2000, "100 AcDbCircle | 10 1 | 20 2 | 30 0 | 40 5 | 100 AcDbArc | 50 30 | 51 270.5"},
    {"Point", "POINT", DxfVersion::R2000, "100 AcDbPoint | 10 1 | 20 2 | 30 0 | 39 1 | 50 45"},
    {"Ellipse", "ELLIPSE", DxfVersion::R2000,
     "100 AcDbEllipse | 10 1 | 20 2 | 30 0 | 11 2 | 21 0 | 31 0 | 210 0 | 220 0 | 230 1 | 40 0.5 | 41 0 | 42 6.28"},
    {"Polyline", "LWPOLYLINE", DxfVersion::R2018,
     "100 AcDbPolyline | 90 3 | 70 1 | 43 0 | 38 1.5 | 10 0 | 20 0 | 42 1 | 91 0 | 10 1 | 20 0 | 91 0 | 10 1 | 20 1 | "
     "91 7"},
    {"PolylineWide", "LWPOLYLINE", DxfVersion::R2000,
     "100 AcDbPolyline | 90 2 | 70 0 | 10 0 | 20 0 | 40 1 | 41 2 | 10 1 | 20 0 | 40 0 | 41 0 | 210 0 | 220 1 | 230 0"},
    {"OldPolyline", "POLYLINE 0", DxfVersion::R2000, "100 AcDb2dPolyline | 66 1 | 10 0 | 20 0 | 30 2 | 70 4 | 75 6"},
    {"FaceMesh", "POLYLINE 64", DxfVersion::R2000,
     "100 AcDbPolyFaceMesh | 66 1 | 10 0 | 20 0 | 30 0 | 70 64 | 71 8 | 72 6"},
    {"Vertex", "VERTEX 0", DxfVersion::R2000, "100 AcDbVertex | 100 AcDb2dVertex | 10 1 | 20 2 | 30 0 | 42 0.5"},
    {"FaceRecord", "VERTEX 128", DxfVersion::R2000,
     "100 AcDbFaceRecord | 10 0 | 20 0 | 30 0 | 70 128 | 71 1 | 72 -2 | 73 3"},
    {"SplineOfFitPoints", "SPLINE", DxfVersion::R2000,
     "100 AcDbSpline | 210 0 | 220 0 | 230 1 | 70 8 | 71 3 | 72 2 | 73 1 | 74 2 | 42 0.001 | 43 1e-07 | 44 1e-10 | 12 "
     "1 | 22 0 | 32 0 | "
     "40 0 | 40 1 | 10 1 | 20 2 | 30 3 | 11 0 | 21 0 | 31 0 | 11 9 | 21 9 | 31 9"},
    {"SplineWithWeights", "SPLINE", DxfVersion::R2000,
     "100 AcDbSpline | 70 4 | 71 1 | 72 2 | 73 2 | 74 0 | 42 1e-09 | 43 1e-09 | 40 0 | 40 1 | 41 1 | 41 0.5 | 10 1 | "
     "20 2 | 30 3 | 10 4 | 20 5 | 30 6"},
    {"Text", "TEXT", DxfVersion::R2018, "100 AcDbText | 10 1 | 20 2 | 30 0 | 40 2.5 | 1 abc | 100 AcDbText"},
    {"TextJustified", "TEXT", DxfVersion::R2018,
     "100 AcDbText | 10 1 | 20 2 | 30 0 | 40 2.5 | 1 abc | 50 30 | 41 0.8 | 51 15 | 71 2 | 72 1 | 11 0 | 21 0 | 31 0 | "
     "100 AcDbText | 73 2"},
    {"TextOfR12", "TEXT", DxfVersion::R12,
     "10 1 | 20 2 | 30 0 | 40 2.5 | 1 abc | 50 30 | 72 1 | 11 5 | 21 2 | 31 0 | 73 1"},
    {"Attribute", "ATTRIB", DxfVersion::R2018,
     "100 AcDbText | 10 1 | 20 2 | 30 0 | 40 2.5 | 1 abc | 11 1 | 21 3 | 31 0 | 100 AcDbAttribute | 280 0 | 2 TAG | 70 "
     "1 | 74 2 | 280 1"},
    {"AttributeOf2007", "ATTRIB", DxfVersion::R2007,
     "100 AcDbText | 10 1 | 20 2 | 30 0 | 40 2.5 | 1 abc | 100 AcDbAttribute | 2 TAG | 70 0 | 280 1"},
    {"Definition", "ATTDEF", DxfVersion::R2000,
     "100 AcDbText | 10 1 | 20 2 | 30 0 | 40 2.5 | 1 abc | 100 AcDbAttributeDefinition | 3 What? | 2 TAG | 70 8 | 73 "
     "12"},
    {"MText", "MTEXT", DxfVersion::R2007,
     "100 AcDbMText | 10 1 | 20 2 | 30 0 | 40 2.5 | 41 10 | 46 0 | 71 1 | 72 5 | 1 abc | 11 0 | 21 1 | 31 0 | 42 7.5 | "
     "43 2.5 | 73 1 | 44 1"},
    {"MTextByAngle", "MTEXT", DxfVersion::R2004,
     "100 AcDbMText | 10 1 | 20 2 | 30 0 | 40 2.5 | 41 10 | 71 1 | 72 1 | 1 abc | 50 33.3 | 73 1 | 44 1 | 90 1 | 63 5 "
     "| 45 1.2 | 441 0"},
    {"MTextColumns", "MTEXT", DxfVersion::R2018,
     "100 AcDbMText | 10 1 | 20 2 | 30 0 | 40 2.5 | 41 10 | 46 0 | 71 1 | 1 abc | 101 Embedded Object | 70 1 | 10 1 | "
     "20 0 | 30 0 | "
     "11 1 | 21 2 | 31 0 | 40 10 | 41 0 | 42 9 | 43 2 | 71 2 | 72 2 | 44 10 | 45 1.5 | 73 0 | 74 0 | 46 4 | 46 5"},
    {"Insert", "INSERT 1", DxfVersion::R2000,
     "100 AcDbBlockReference | 2 B | 10 1 | 20 2 | 30 0 | 41 2 | 42 2 | 43 2 | 50 45"},
    {"Grid", "INSERT 2", DxfVersion::R2000,
     "100 AcDbMInsertBlock | 2 B | 10 1 | 20 2 | 30 0 | 70 2 | 71 3 | 44 10 | 45 -5"},
    {"Solid", "SOLID", DxfVersion::R2000,
     "100 AcDbTrace | 10 0 | 20 0 | 30 0 | 11 1 | 21 0 | 31 0 | 12 0 | 22 1 | 32 0 | 13 1 | 23 1 | 33 0 | 39 4"},
    {"Face", "3DFACE", DxfVersion::R2000,
     "100 AcDbFace | 10 0 | 20 0 | 30 0 | 11 1 | 21 0 | 31 0 | 12 0 | 22 1 | 32 0 | 13 1 | 23 1 | 33 5 | 70 5"},
    {"Mesh", "MESH", DxfVersion::R2018,
     "100 AcDbSubDMesh | 71 2 | 72 0 | 91 1 | 92 3 | 10 0 | 20 0 | 30 0 | 10 1 | 20 0 | 30 0 | 10 0 | 20 1 | 30 0 | 93 "
     "4 | 90 3 | 90 0 | 90 1 | "
     "90 2 | 94 1 | 90 0 | 90 1 | 95 1 | 140 0.5"},
    {"Shape", "SHAPE", DxfVersion::R2000, "100 AcDbShape | 10 1 | 20 2 | 30 0 | 40 0.5 | 2 ARROW | 50 90 | 41 -1"},
};

std::unique_ptr<VcDbObject> make(const std::string& kind)
{
    const std::size_t blank = kind.find(' ');
    const std::string name = kind.substr(0, blank);
    const std::int64_t which = blank == std::string::npos ? 0 : std::stoi(kind.substr(blank));
    if (name == "POLYLINE")
        return createPolyline(which, "");
    if (name == "VERTEX")
        return createVertex(which, "");
    if (name == "INSERT")
        return createInsert(which, 1, "");
    return std::unique_ptr<VcDbObject>(VcRxClass::findByDxfName(name.data(), name.size())->create());
}

class Ent1Fields : public testing::TestWithParam<FieldCase> {};
INSTANTIATE_TEST_SUITE_P(All, Ent1Fields, testing::ValuesIn(kCases), [](const auto& i) { return i.param.name; });

std::string withCommon(const FieldCase& c)
{
    return std::string(c.version < DxfVersion::R13 ? "8 0 | " : "100 AcDbEntity | 8 0 | ") + c.groups;
}

TEST_P(Ent1Fields, ComeBackAsTheyWere)
{
    Drawing d;
    const auto object = make(GetParam().kind);
    read(*object, d, withCommon(GetParam()), GetParam().version);
    EXPECT_EQ(written(*object, d, FieldVisitor::Purpose::WriteFile, GetParam().version), withCommon(GetParam()));
}

TEST_P(Ent1Fields, AreTheSameInACopy)
{
    Drawing d;
    const auto object = make(GetParam().kind);
    read(*object, d, withCommon(GetParam()), GetParam().version);
    const auto copy = object->copyOf();
    const auto assigned = make(GetParam().kind);
    assigned->assignFrom(*copy);
    EXPECT_EQ(written(*assigned, d, FieldVisitor::Purpose::WriteFile, GetParam().version), withCommon(GetParam()));
}

TEST(Ent1Fields, AJustifiedTextWithoutAPointStaysWhereItIs)
{
    Drawing d;
    VcDbText text;
    read(text, d, "100 AcDbEntity | 8 0 | 100 AcDbText | 10 1 | 20 2 | 30 0 | 40 2.5 | 1 abc | 72 2 | 100 AcDbText",
         DxfVersion::R2000);
    expectNear(text.alignmentPoint(), {1, 2, 0}, 0);
    text.setHeight(5);
    EXPECT_NEAR(text.position().y, 2, 1e-12);
}

// A chain carries what a file leaves out at its default.
struct ChainCase {
    const char* kind;
    const char* groups;
};
const ChainCase kChains[] = {
    {"CIRCLE", "10 0 | 20 0 | 30 0 | 40 1 | 210 0 | 220 0 | 230 1"},
    {"INSERT 1", "41 1 | 42 1 | 43 1 | 50 0 | 70 0 | 71 0 | 44 0 | 45 0 | 210 0 | 220 0 | 230 1"},
    {"TEXT", "72 0 | 11 0 | 21 0 | 31 0 | 210 0 | 220 0 | 230 1 | 100 AcDbText | 73 0"},
    {"ATTRIB", "100 AcDbAttribute | 280 0 | 2  | 70 0 | 73 0 | 74 0 | 280 0"},
};

TEST(Ent1Chain, HasTheGroupsAtTheirDefaults)
{
    Drawing d;
    for (const ChainCase& c : kChains) {
        const auto object = make(c.kind);
        const std::string chain = written(*object, d, FieldVisitor::Purpose::WriteChain, DxfVersion::Newest);
        EXPECT_NE(chain.find(c.groups), std::string::npos) << chain;
    }
}

TEST(Ent1Fields, ATruncatedOrLyingMeshKeepsWhatItHas)
{
    Drawing d;
    VcDbSubDMesh mesh;
    const std::string groups = "100 AcDbEntity | 8 0 | 100 AcDbSubDMesh | 71 2 | 72 0 | 91 0 | 92 2000000000 | 10 0 | "
                               "20 0 | 30 0 | 93 5 | 90 3 | 90 0";
    read(mesh, d, groups, DxfVersion::R2018);
    EXPECT_EQ(mesh.vertices().size(), 1u);
    EXPECT_EQ(mesh.numOfFaces(), 0);
    std::vector<VcDbEntity*> none;
    EXPECT_EQ(mesh.explode(none), Vcad::eOk);
    EXPECT_TRUE(none.empty());
}

// What most drawings are made of must stay small.
static_assert(sizeof(VcDbLine) <= 104);
static_assert(sizeof(VcDbText) < 200);

}
