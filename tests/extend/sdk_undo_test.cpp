// Whatever a module does in a command, U puts the drawing back to the byte, and REDO does it again.
#include "host/io/drawing_file.h"
#include "tests/extend/sdk_support.h"

namespace {

class Undoing : public SdkTest {
protected:
    Undoing()
    {
        layer(L"A", 0, 3);
        layer(L"FREE", 0, 5);
        block(L"B");
        m_line = line(0, 0, 10, 0, L"A");
        m_circle = circle(5, 5, 2);
        m_insert = insert(L"B", 20, 20);
        makeText(m_text.value);
    }
    // The drawing as a file. The counter of handles is not taken back: a handle is never given twice.
    static std::string whole()
    {
        std::string bytes;
        EXPECT_TRUE(writeDrawingBytes(editor().drawing(), bytes).ok());
        const std::size_t seed = bytes.find("$HANDSEED");
        if (seed != bytes.npos)
            bytes.erase(seed, bytes.find("ENDSEC", seed) - seed);
        return bytes;
    }
    // Where the two part, with what stands around it; empty when they are the same.
    static std::string difference(const std::string& is, const std::string& was)
    {
        if (is == was)
            return {};
        const std::size_t at =
            std::size_t(std::mismatch(is.begin(), is.end(), was.begin(), was.end()).first - is.begin());
        const std::size_t from = at > 150 ? at - 150 : 0;
        return "is <" + is.substr(from, 300) + "> was <" + was.substr(from, 300) + ">";
    }
    static int modify(const Name& name, resbuf* rest)
    {
        RbPtr chain(vcutNewRb(-1));
        std::copy_n(name.value, 2, chain->resval.rlname);
        chain->rbnext = rest;
        return vcdbEntMod(chain.get());
    }
    template <class T>
    static void change(const Name& name, const std::function<Vcad::ErrorStatus(T&)>& work)
    {
        T* object = opened<T>(idOf(name), VcDb::kForWrite);
        ASSERT_TRUE(object);
        EXPECT_EQ(work(*object), Vcad::eOk);
        object->close();
    }
    static Name record(const wchar_t* table, const wchar_t* name)
    {
        Name found;
        EXPECT_EQ(vcdbTblObjName(table, name, found.value), RTNORM);
        return found;
    }
    static void dictionaryEntry(const wchar_t* key)
    {
        VcDbDictionary* root = nullptr;
        ASSERT_EQ(editor().drawing().getNamedObjectsDictionary(root, VcDb::kForWrite), Vcad::eOk);
        auto* entry = new VcDbXrecord;
        VcDbObjectId id;
        EXPECT_EQ(root->setAt(key, entry, id), Vcad::eOk);
        const RbPtr data(vcutBuildList(1, L"data", 40, 1.5, RTNONE));
        EXPECT_EQ(entry->setFromRbChain(*data), Vcad::eOk);
        entry->close();
        root->close();
    }
    void group()
    {
        VcDbDictionary* groups = nullptr;
        ASSERT_EQ(editor().drawing().getGroupDictionary(groups, VcDb::kForWrite), Vcad::eOk);
        auto* pair = new VcDbGroup;
        VcDbObjectId id;
        EXPECT_EQ(groups->setAt(L"PAIR", pair, id), Vcad::eOk);
        EXPECT_EQ(pair->append({idOf(m_line), idOf(m_circle)}), Vcad::eOk);
        pair->close();
        groups->close();
    }
    void move()
    {
        Name set;
        ASSERT_EQ(vcedSSGet(L"X", nullptr, nullptr, nullptr, set.value), RTNORM);
        const vds_matrix turn = {{0, -1, 0, 5}, {1, 0, 0, 7}, {0, 0, 1, 0}, {0, 0, 0, 1}};
        EXPECT_EQ(vcedXformSS(set, turn), RTNORM);
        vcedSSFree(set);
    }
    void extendedData()
    {
        vcdbRegApp(L"MINE");
        RbPtr data(vcutBuildList(1001, L"MINE", 1000, L"text", 1040, 2.5, RTNONE));
        change<VcDbLine>(m_line, [&](VcDbLine& object) { return object.setXData(data.get()); });
    }
    void clone()
    {
        VcDbIdMapping mapping;
        EXPECT_EQ(editor().drawing().deepCloneObjects({idOf(m_line), idOf(m_insert)},
                                                      editor().drawing().currentSpaceId(), mapping),
                  Vcad::eOk);
    }
    void setCurrentLayer() { EXPECT_EQ(editor().drawing().setClayer(idOf(record(L"LAYER", L"A"))), Vcad::eOk); }

    struct Work {
        const char* why;
        std::function<void()> run;
        bool leavesTheRest = true;  // what follows in the list can still be done
        bool shows = true;          // in the file
    };
    std::vector<Work> works()
    {
        const vds_point to = {99, 98, 0};
        return {
            {"made", [] { line(1, 2, 3, 4); }},
            {"made and erased", [] { vcdbEntDel(circle(1, 1, 1)); }, true, false},
            {"erased", [&] { EXPECT_EQ(vcdbEntDel(m_line), RTNORM); }, false},
            {"erased and brought back", [&] { vcdbEntDel(m_line), vcdbEntDel(m_line); }, true, false},
            {"moved by chain", [=, this] { EXPECT_EQ(modify(m_line, vcutBuildList(11, to, RTNONE)), RTNORM); }},
            {"coloured", [&] { EXPECT_EQ(modify(m_line, vcutBuildList(62, 1, 48, 2.0, 370, 30, RTNONE)), RTNORM); }},
            {"put on another layer", [&] { EXPECT_EQ(modify(m_circle, vcutBuildList(8, L"A", RTNONE)), RTNORM); }},
            {"text",
             [=, this] {
                 EXPECT_EQ(modify(m_text, vcutBuildList(1, L"other", 40, 7.0, 72, 1, 11, to, RTNONE)), RTNORM);
             }},
            {"radius", [&] { change<VcDbCircle>(m_circle, [](VcDbCircle& c) { return c.setRadius(9); }); }},
            {"line by setters",
             [&] { change<VcDbLine>(m_line, [](VcDbLine& l) {
                       return l.setStartPoint({-7, 3, 1});
                   }); }},
            {"all turned", [&] { move(); }},
            {"a block", [] { block(L"NEW"); }},
            {"a block and a reference", [] { block(L"NEW"), insert(L"NEW", 1, 1); }},
            {"a layer made", [] { layer(L"NEW", 4, 1); }},
            {"a layer erased", [] { EXPECT_EQ(vcdbEntDel(record(L"LAYER", L"FREE")), RTNORM); }},
            {"a layer locked", [] { setLayerFlags(L"A", 4); }, false},
            {"a layer renamed",
             [] {
                 change<VcDbLayerTableRecord>(record(L"LAYER", L"A"),
                                              [](VcDbLayerTableRecord& l) { return l.setName(L"Other"); });
             },
             false},
            {"the current layer", [&] { setCurrentLayer(); }},
            {"a variable", [] { setReal(L"LTSCALE", 7), setShort(L"PDMODE", 34); }},
            {"a dictionary entry", [] { dictionaryEntry(L"NEW"); }},
            {"a group", [&] { group(); }},
            {"extended data", [&] { extendedData(); }},
            {"an extension dictionary",
             [&] { change<VcDbLine>(m_line, [](VcDbLine& l) { return l.createExtensionDictionary(); }); }},
            {"clones", [&] { clone(); }},
            {"draw order", [&] { EXPECT_EQ(vcedDrawOrderInherit(idOf(m_line), {idOf(m_circle)}, 3), Vcad::eOk); }},
            {"driven",
             [&] {
                 vcedCommand(RTSTR, L"_.ROTATE", RTENAME, m_line.value, RTSTR, L"", RTSTR, L"0,0", RTSTR, L"30",
                             RTNONE);
             }},
            {"exploded", [&] { vcedCommand(RTSTR, L"_.EXPLODE", RTENAME, m_insert.value, RTSTR, L"", RTNONE); }},
            {"a coordinate system", [] { vcedCommand(RTSTR, L"_.UCS", RTSTR, L"_Z", RTSTR, L"30", RTNONE); }},
            {"a member of a definition",
             [] {
                 Name member;
                 ASSERT_EQ(vcdbEntNext(record(L"BLOCK", L"B"), member.value), RTNORM);
                 EXPECT_EQ(modify(member, vcutBuildList(62, 4, RTNONE)), RTNORM);
             }},
        };
    }

    Name m_line, m_circle, m_insert, m_text;
};

TEST_F(Undoing, EachKindOfWork)
{
    for (const Work& work : works()) {
        SCOPED_TRACE(work.why);
        const std::string before = whole();
        step(work.run);
        const std::string after = whole();
        EXPECT_EQ(before != after, work.shows);
        run("U\n");
        EXPECT_EQ(difference(whole(), before), "");
        run("REDO\n");
        EXPECT_EQ(difference(whole(), after), "");
        run("U\n");
        EXPECT_EQ(difference(whole(), before), "");
    }
}

TEST_F(Undoing, AllOfItStepByStepAndBack)
{
    std::vector<std::string> states = {whole()};
    for (const Work& work : works()) {
        if (!work.leavesTheRest)
            continue;
        step(work.run);
        states.push_back(whole());
    }
    EXPECT_GT(states.size(), 20u);
    for (std::size_t i = states.size() - 1; i-- > 0;) {
        run("U\n");
        EXPECT_EQ(difference(whole(), states[i]), "") << i;
    }
    for (std::size_t i = 1; i < states.size(); ++i) {
        run("REDO\n");
        EXPECT_EQ(difference(whole(), states[i]), "") << i;
    }
}

}  // namespace
