// What hangs on an object beside its own groups: extended data up to its bound, extension dictionaries, reactors.
#include "tests/host/sdk_samples.h"

#include "host/io/drawing_file.h"

#include <cstring>

namespace {

constexpr std::size_t kMostBytes = 16383;

class XData : public testing::Test {
protected:
    XData()
    {
        drawing.application(L"FIRST");
        drawing.application(L"SECOND");
    }
    Vcad::ErrorStatus set(RbPtr chain) { return Writing<VcDbLine>(id)->setXData(chain.get()); }
    std::vector<std::wstring> textsOf(const wchar_t* application)
    {
        const RbPtr chain(Opened<VcDbLine>(id)->xData(application));
        std::vector<std::wstring> texts;
        for (const resbuf* node = chain.get(); node; node = node->rbnext)
            if (node->restype == 1000 || node->restype == 1001)
                texts.push_back(node->resval.rstring);
        return texts;
    }
    long room()
    {
        vds_name name;
        vcdbGetVdsName(name, id);
        long size = -1;
        EXPECT_EQ(vcdbXdRoom(name, &size), RTNORM);
        return size;
    }
    using Texts = std::vector<std::wstring>;

    SdkDrawing drawing;
    const VcDbObjectId id = drawing.line();
};

RbPtr chainOfText(const wchar_t* application, const wchar_t* text)
{
    return RbPtr(vcutBuildList(1001, application, 1000, text, RTNONE));
}

TEST_F(XData, IsKeptForEachApplicationAlone)
{
    EXPECT_EQ(Opened<VcDbLine>(id)->xData(), nullptr);
    drawing.undoAndRedo(id, [&] { EXPECT_EQ(set(chainOfText(L"FIRST", L"one")), Vcad::eOk); });
    EXPECT_EQ(set(chainOfText(L"second", L"two")), Vcad::eOk);
    EXPECT_EQ(textsOf(L"FIRST"), (Texts{L"FIRST", L"one"}));
    EXPECT_EQ(textsOf(L"first"), (Texts{L"FIRST", L"one"}));
    EXPECT_EQ(textsOf(nullptr).size(), 4u);
    EXPECT_EQ(set(chainOfText(L"FIRST", L"other")), Vcad::eOk);
    EXPECT_EQ(textsOf(L"FIRST"), (Texts{L"FIRST", L"other"}));
    EXPECT_EQ(set(RbPtr(vcutBuildList(1001, L"FIRST", RTNONE))), Vcad::eOk);
    EXPECT_EQ(textsOf(L"FIRST"), Texts{});
    EXPECT_EQ(textsOf(L"SECOND")[1], L"two") << "the other's stays";
    EXPECT_EQ(textsOf(L"THIRD"), Texts{});
}

TEST_F(XData, RefusesWhatIsNone)
{
    set(chainOfText(L"FIRST", L"one"));
    const std::string before = drawing.saidBy(id);
    EXPECT_EQ(set(chainOfText(L"NOBODY", L"x")), Vcad::eRegAppIdNotFound);
    EXPECT_NE(set(RbPtr(vcutBuildList(1000, L"no application", RTNONE))), Vcad::eOk);
    EXPECT_NE(set(RbPtr(vcutBuildList(1001, L"FIRST", 40, 1.0, RTNONE))), Vcad::eOk) << "a group of the object's own";
    EXPECT_EQ(textsOf(nullptr), (Texts{L"FIRST", L"one"}));
    EXPECT_EQ(drawing.saidBy(id), before);
}

TEST_F(XData, GoesUpToItsBoundAndNotBeyond)
{
    const long empty = room();
    EXPECT_EQ(empty, long(kMostBytes));
    RbBuilder builder;
    builder.addString(1001, L"FIRST");
    long size = 0;
    while (true) {
        RbPtr more = builder.take();
        ASSERT_EQ(vcdbXdSize(more.get(), &size), RTNORM);
        if (size + 103 > long(kMostBytes)) {
            ASSERT_EQ(set(std::move(more)), Vcad::eOk);
            break;
        }
        builder.append(std::move(more));
        builder.addString(1000, std::wstring(99, L'x'));
    }
    EXPECT_EQ(room(), empty - size);
    const std::string before = drawing.saidBy(id);
    EXPECT_EQ(set(chainOfText(L"SECOND", std::wstring(200, L'y').c_str())), Vcad::eXdataSizeExceeded);
    EXPECT_EQ(textsOf(L"SECOND"), Texts{});
    vds_name name;
    vcdbGetVdsName(name, id);
    RbBuilder tooMuch;
    tooMuch.addName(-1, name);
    tooMuch.addReal(39, 5);
    tooMuch.add(-3);
    tooMuch.append(chainOfText(L"SECOND", std::wstring(200, L'y').c_str()));
    EXPECT_EQ(vcdbEntMod(tooMuch.take().get()), RTERROR) << "the thickness is not set either";
    EXPECT_EQ(drawing.saidBy(id), before);
    EXPECT_EQ(room(), empty - size);
}

TEST_F(XData, EveryKindOfValueComesBack)
{
    vds_point point = {1.5, -2.5, 3.25};
    char bytes[] = {0, 1, char(0xff), 'x'};
    vds_binary binary{4, bytes};
    char hex[17];
    id.handle().getIntoAsciiBuffer(hex);
    const std::wstring handle(hex, hex + std::strlen(hex));
    const auto build = [&] {
        return RbPtr(vcutBuildList(1001, L"FIRST", 1000, L"\x00e4 \x4e2d", 1002, L"{", 1003, L"0", 1004, &binary, 1005,
                                   handle.c_str(), 1010, point, 1011, point, 1012, point, 1013, point, 1040, 2.5, 1041,
                                   1e-300, 1042, -1e300, 1070, -5, 1071, 70000, 1002, L"}", RTNONE));
    };
    const RbPtr given = build();
    ASSERT_TRUE(given);
    ASSERT_EQ(set(build()), Vcad::eOk);
    for (const bool binaryFile : {false, true}) {
        std::string file;
        WriteOptions options;
        options.binary = binaryFile;
        ASSERT_TRUE(writeDrawingBytes(drawing.database, file, options).ok());
        VcDbDatabase again(false);
        ASSERT_TRUE(readDrawingBytes(again, file).ok());
        const VcDbObject* twin = again.core().object(again.core().findHandle(id.handle().value()));
        ASSERT_NE(twin, nullptr);
        for (const VcDbObject* object : {static_cast<const VcDbObject*>(drawing.core().object(id)), twin}) {
            const RbPtr back(object->xData(L"FIRST"));
            const resbuf* a = given.get();
            const resbuf* b = back.get();
            for (; a && b; a = a->rbnext, b = b->rbnext) {
                EXPECT_EQ(a->restype, b->restype);
                EXPECT_TRUE(sameRbValue(*a, *b)) << a->restype;
            }
            EXPECT_EQ(a, nullptr);
            EXPECT_EQ(b, nullptr);
        }
    }
}

TEST_F(XData, IsFetchedForTheApplicationsAskedForByWildCards)
{
    set(chainOfText(L"FIRST", L"one"));
    set(chainOfText(L"SECOND", L"two"));
    vds_name name;
    vcdbGetVdsName(name, id);
    struct {
        const wchar_t* wanted;
        std::size_t applications;
    } const cases[] = {{L"*", 2}, {L"FIRST", 1}, {L"first", 1}, {L"F*,S*", 2}, {L"NOBODY", 0}, {L"~FIRST", 1}};
    for (const auto& c : cases) {
        const RbPtr list(vcutBuildList(RTSTR, c.wanted, RTNONE));
        const RbPtr chain(vcdbEntGetX(name, list.get()));
        EXPECT_EQ(nodesOf(chain.get(), 1001).size(), c.applications) << c.wanted;
        EXPECT_EQ(nodesOf(chain.get(), -3).size(), c.applications ? 1u : 0u) << c.wanted;
    }
    EXPECT_TRUE(nodesOf(RbPtr(vcdbEntGet(name)).get(), 1001).empty());
}

TEST_F(XData, ApplicationsAreRegisteredOnce)
{
    EXPECT_EQ(vcdbRegApp(L"FIRST"), RTERROR);
    EXPECT_EQ(vcdbRegApp(L"first"), RTERROR);
    for (const wchar_t* bad : {L"", L"a<b", L"a*b", static_cast<const wchar_t*>(nullptr)})
        EXPECT_EQ(vcdbRegApp(bad), RTERROR);
    set(chainOfText(L"FIRST", L"one"));
    Opened<VcDbRegAppTable> table(drawing.database.regAppTableId());
    EXPECT_TRUE(table->has(L"Second"));
}

TEST(ExtensionDictionaries, AreMadeOnceAndLetGoWhenEmpty)
{
    SdkDrawing drawing;
    const VcDbObjectId id = drawing.line();
    EXPECT_NE(VcDbLine().createExtensionDictionary(), Vcad::eOk);
    EXPECT_TRUE(Opened<VcDbLine>(id)->extensionDictionary().isNull());
    EXPECT_NE(Writing<VcDbLine>(id)->releaseExtensionDictionary(), Vcad::eOk);
    ASSERT_EQ(Writing<VcDbLine>(id)->createExtensionDictionary(), Vcad::eOk);
    const VcDbObjectId first = Opened<VcDbLine>(id)->extensionDictionary();
    EXPECT_EQ(first.objectClass(), VcDbDictionary::desc());
    EXPECT_EQ(Opened<VcDbDictionary>(first)->ownerId(), id);
    EXPECT_EQ(Writing<VcDbLine>(id)->createExtensionDictionary(), Vcad::eOk);
    EXPECT_EQ(Opened<VcDbLine>(id)->extensionDictionary(), first);
    EXPECT_EQ(Writing<VcDbLine>(id)->releaseExtensionDictionary(), Vcad::eOk);
    EXPECT_TRUE(Opened<VcDbLine>(id)->extensionDictionary().isNull());
    EXPECT_TRUE(first.isErased());
    EXPECT_EQ(Writing<VcDbLine>(id)->createExtensionDictionary(), Vcad::eOk);
    EXPECT_NE(Opened<VcDbLine>(id)->extensionDictionary(), first);
}

TEST(ExtensionDictionaries, AreUndoneWithWhatTheyHold)
{
    SdkDrawing drawing;
    const VcDbObjectId id = drawing.line();
    const std::size_t mark = drawing.core().undo().mark();
    Writing<VcDbLine>(id)->createExtensionDictionary();
    const VcDbObjectId dictionary = Opened<VcDbLine>(id)->extensionDictionary();
    VcDbObjectId record;
    auto* data = new VcDbXrecord;
    ASSERT_EQ(Writing<VcDbDictionary>(dictionary)->setAt(L"DATA", data, record), Vcad::eOk);
    data->close();
    auto span = drawing.core().undo().rollbackKeeping(mark);
    EXPECT_TRUE(Opened<VcDbLine>(id)->extensionDictionary().isNull());
    EXPECT_TRUE(dictionary.isErased() && record.isErased());
    drawing.core().undo().redo(std::move(span));
    EXPECT_EQ(Opened<VcDbLine>(id)->extensionDictionary(), dictionary);
    EXPECT_TRUE(Opened<VcDbDictionary>(dictionary)->has(record));
}

TEST(ExtensionDictionaries, ComeBackFromAFileAndAreGoneWithAnErasedOwner)
{
    SdkDrawing drawing;
    const VcDbObjectId kept = drawing.line(), gone = drawing.line();
    VcDbObjectId records[2];
    int i = 0;
    for (const VcDbObjectId id : {kept, gone}) {
        Writing<VcDbLine>(id)->createExtensionDictionary();
        auto* data = new VcDbXrecord;
        const RbPtr chain(vcutBuildList(1, L"text", 40, 1.5, RTNONE));
        data->setFromRbChain(*chain);
        Writing<VcDbDictionary>(Opened<VcDbLine>(id)->extensionDictionary())->setAt(L"DATA", data, records[i++]);
        data->close();
    }
    Writing<VcDbLine>(gone)->erase();
    std::string file;
    ASSERT_TRUE(writeDrawingBytes(drawing.database, file).ok());
    VcDbDatabase again(false);
    const ReadResult read = readDrawingBytes(again, file);
    ASSERT_TRUE(read.ok());
    EXPECT_EQ(read.problems.total(), 0u);
    const DatabaseCore& core = again.core();
    const auto* line = core.objectAs<VcDbLine>(core.findHandle(kept.handle().value()));
    ASSERT_NE(line, nullptr);
    EXPECT_NE(core.objectAs<VcDbXrecord>(core.findHandle(records[0].handle().value())), nullptr);
    EXPECT_EQ(core.objectAs<VcDbXrecord>(core.findHandle(records[1].handle().value())), nullptr)
        << "nothing would own it";
    EXPECT_EQ(line->extensionDictionary().handle(), Opened<VcDbLine>(kept)->extensionDictionary().handle());
}

TEST(Reactors, AreIdsInPointersAndSurviveAFile)
{
    SdkDrawing drawing;
    const VcDbObjectId id = drawing.line(), watcher = drawing.line();
    EXPECT_EQ(Opened<VcDbLine>(id)->reactors(), nullptr);
    drawing.undoAndRedo(id, [&] {
        Writing<VcDbLine> line(id);
        line->addPersistentReactor(watcher);
        line->addPersistentReactor(watcher);
    });
    const auto* reactors = Opened<VcDbLine>(id)->reactors();
    ASSERT_NE(reactors, nullptr);
    ASSERT_EQ(reactors->size(), 1u);
    EXPECT_TRUE(vcdbIsPersistentReactor(reactors->front()));
    EXPECT_EQ(vcdbPersistentReactorObjectId(reactors->front()), watcher);
    int local = 0;
    EXPECT_FALSE(vcdbIsPersistentReactor(&local));
    EXPECT_TRUE(vcdbPersistentReactorObjectId(&local).isNull());
    std::string file;
    ASSERT_TRUE(writeDrawingBytes(drawing.database, file).ok());
    VcDbDatabase again(false);
    ASSERT_TRUE(readDrawingBytes(again, file).ok());
    const VcDbObject* twin = again.core().object(again.core().findHandle(id.handle().value()));
    ASSERT_NE(twin->reactors(), nullptr);
    EXPECT_EQ(vcdbPersistentReactorObjectId(twin->reactors()->front()).handle(), watcher.handle());
    Writing<VcDbLine>(id)->removePersistentReactor(watcher);
    EXPECT_EQ(Opened<VcDbLine>(id)->reactors(), nullptr);
    Writing<VcDbLine>(id)->removePersistentReactor(watcher);
}

TEST(Fields, AreSaidByTheExtensionDictionary)
{
    SdkDrawing drawing;
    const VcDbObjectId id = drawing.add(std::make_unique<VcDbText>());
    EXPECT_FALSE(Opened<VcDbText>(id)->hasFields());
    Writing<VcDbText>(id)->createExtensionDictionary();
    EXPECT_FALSE(Opened<VcDbText>(id)->hasFields());
    VcDbObjectId fields;
    auto* held = new VcDbDictionary;
    ASSERT_EQ(Writing<VcDbDictionary>(Opened<VcDbText>(id)->extensionDictionary())->setAt(L"ACAD_FIELD", held, fields),
              Vcad::eOk);
    held->close();
    EXPECT_TRUE(Opened<VcDbText>(id)->hasFields());
    Writing<VcDbObject>(fields)->erase();
    EXPECT_FALSE(Opened<VcDbText>(id)->hasFields());
}

}
