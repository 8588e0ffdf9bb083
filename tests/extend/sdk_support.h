// A drawing that is worked on as a module does it: through the functions of the sdk, answers typed, steps undone.
#pragma once

#include "host/commands/all_commands.h"
#include "sdk/vcdb.h"
#include "tests/extend/host_support.h"

#include <functional>

class SdkTest : public HostTest {
protected:
    struct Name {
        vds_name value = {0, 0};
        operator const std::int64_t*() const { return value; }
        bool isNull() const { return value[0] == 0 && value[1] == 0; }
        bool operator==(const Name& other) const { return value[0] == other.value[0] && value[1] == other.value[1]; }
    };

    SdkTest() { vk::commands::registerHostCommands(); }
    // What was typed and not asked for would answer the next test.
    void TearDown() override
    {
        wchar_t left[512] = L"";
        while (vcedGetString(1, nullptr, left) == RTNORM)
            ADD_FAILURE() << "left over: " << testing::PrintToString(std::wstring(left));
    }

    static void type(const std::string& lines)
    {
        editor().pushSource(std::make_unique<vk::edit::ScriptSource>("test", lines));
    }
    static void run(const std::string& lines) { editor().runScript("test", lines); }
    // One undo step of whatever is done in it.
    static void step(const std::function<void()>& work)
    {
        const vk::edit::Editor::Step one(editor(), "TEST");
        work();
    }
    bool said(std::string_view text) const { return printed.find(text) != std::string::npos; }

    // What was typed in place of the answer asked for, such as a keyword.
    static std::wstring input()
    {
        wchar_t buffer[512] = L"";
        EXPECT_EQ(vcedGetInput(buffer), RTNORM);
        return buffer;
    }

    static Name made(resbuf* chain)
    {
        const RbPtr owned(chain);
        Name name;
        EXPECT_EQ(vcdbEntMakeX(owned.get(), name.value), RTNORM);
        return name;
    }
    static Name line(double x1, double y1, double x2, double y2, const wchar_t* layer = L"0")
    {
        const vds_point from = {x1, y1, 0}, to = {x2, y2, 0};
        return made(vcutBuildList(RTDXF0, L"LINE", 8, layer, 10, from, 11, to, RTNONE));
    }
    static Name circle(double x, double y, double radius, const wchar_t* layer = L"0")
    {
        const vds_point at = {x, y, 0};
        return made(vcutBuildList(RTDXF0, L"CIRCLE", 8, layer, 10, at, 40, radius, RTNONE));
    }
    // A definition of one line from 0,0 to 10,0.
    static void block(const wchar_t* name)
    {
        const vds_point origin = {0, 0, 0}, to = {10, 0, 0};
        const RbPtr begin(vcutBuildList(RTDXF0, L"BLOCK", 2, name, 70, 0, 10, origin, RTNONE));
        const RbPtr member(vcutBuildList(RTDXF0, L"LINE", 8, L"0", 10, origin, 11, to, RTNONE));
        const RbPtr end(vcutBuildList(RTDXF0, L"ENDBLK", RTNONE));
        ASSERT_EQ(vcdbEntMake(begin.get()), RTNORM);
        ASSERT_EQ(vcdbEntMake(member.get()), RTNORM);
        ASSERT_EQ(vcdbEntMake(end.get()), RTKWORD);
    }
    static Name insert(const wchar_t* block, double x, double y)
    {
        const vds_point at = {x, y, 0};
        return made(vcutBuildList(RTDXF0, L"INSERT", 8, L"0", 2, block, 10, at, RTNONE));
    }
    static Name layer(const wchar_t* name, int flags = 0, int colour = 7)
    {
        return made(vcutBuildList(RTDXF0, L"LAYER", 2, name, 70, flags, 62, colour, 6, L"Continuous", RTNONE));
    }
    static void setLayerFlags(const wchar_t* name, int flags)
    {
        Name record;
        ASSERT_EQ(vcdbTblObjName(L"LAYER", name, record.value), RTNORM);
        const RbPtr chain(vcdbEntGet(record));
        for (resbuf* node = chain.get(); node; node = node->rbnext)
            if (node->restype == 70)
                node->resval.rint = std::int16_t(flags);
        ASSERT_EQ(vcdbEntMod(chain.get()), RTNORM);
    }

    // The first group of a code; the chain must hold it as long as it is looked at.
    static const resbuf* group(const resbuf* chain, int code)
    {
        while (chain && chain->restype != code)
            chain = chain->rbnext;
        return chain;
    }
    static std::wstring textOf(const resbuf* chain, int code)
    {
        const resbuf* node = group(chain, code);
        return node && node->resval.rstring ? node->resval.rstring : L"(none)";
    }
    static std::wstring textOf(const Name& name, int code)
    {
        const RbPtr chain(vcdbEntGet(name));
        return textOf(chain.get(), code);
    }
    static double realOf(const Name& name, int code)
    {
        const RbPtr chain(vcdbEntGet(name));
        const resbuf* node = group(chain.get(), code);
        return node ? node->resval.rreal : -999;
    }
    static VcGePoint3d pointOf(const Name& name, int code)
    {
        const RbPtr chain(vcdbEntGet(name));
        const resbuf* node = group(chain.get(), code);
        return node ? VcGePoint3d(node->resval.rpoint[0], node->resval.rpoint[1], node->resval.rpoint[2])
                    : VcGePoint3d(-999, -999, -999);
    }
    static bool exists(const Name& name) { return RbPtr(vcdbEntGet(name)) != nullptr; }

    static VcDbObjectId idOf(const Name& name)
    {
        VcDbObjectId id;
        EXPECT_EQ(vcdbGetObjectId(id, name), Vcad::eOk);
        return id;
    }
    static Name nameOf(VcDbObjectId id)
    {
        Name name;
        EXPECT_EQ(vcdbGetVdsName(name.value, id), Vcad::eOk);
        return name;
    }
    // The object open for reading; whoever calls closes it.
    template <class T>
    static T* opened(VcDbObjectId id, VcDb::OpenMode mode = VcDb::kForRead)
    {
        T* object = nullptr;
        EXPECT_EQ(vcdbOpenObject(object, id, mode), Vcad::eOk);
        return object;
    }
    static int countOfDrawing()
    {
        Name set;
        int count = 0;
        if (vcedSSGet(L"X", nullptr, nullptr, nullptr, set.value) != RTNORM)
            return 0;
        EXPECT_EQ(vcedSSLength(set, &count), RTNORM);
        EXPECT_EQ(vcedSSFree(set), RTNORM);
        return count;
    }
    static void setShort(const wchar_t* variable, int value)
    {
        resbuf node = {};
        node.restype = RTSHORT;
        node.resval.rint = std::int16_t(value);
        ASSERT_EQ(vcedSetVar(variable, &node), RTNORM) << value;
    }
    static void setReal(const wchar_t* variable, double value)
    {
        resbuf node = {};
        node.restype = RTREAL;
        node.resval.rreal = value;
        ASSERT_EQ(vcedSetVar(variable, &node), RTNORM) << value;
    }
    static std::wstring textVariable(const wchar_t* name)
    {
        resbuf value = {};
        if (vcedGetVar(name, &value) != RTNORM || value.restype != RTSTR)
            return L"(none)";
        const std::wstring text = value.resval.rstring;
        vcad_free(value.resval.rstring);
        return text;
    }
};
