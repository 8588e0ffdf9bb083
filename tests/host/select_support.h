// What tests of selection share: a drawing in the editor whose objects go by letters.
#pragma once

#include "host/base/group_code.h"
#include "host/base/numbers.h"
#include "host/base/rb.h"
#include "host/db/chain.h"
#include "host/db/database.h"
#include "host/edit/editor.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_database.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_text.h"
#include "sdk/vced.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <sstream>
#include <string>

namespace seltest {

constexpr double kPi = 3.14159265358979323846;

using vk::edit::Editor;

// "0=LINE|-4=<OR|10=1,2|40=2.5": one node each, by the kind of its code.
inline RbPtr chainFrom(const std::string& text)
{
    RbBuilder chain;
    std::stringstream groups(text);
    for (std::string group; std::getline(groups, group, '|');) {
        const std::size_t equals = group.find('=');
        const int code = std::stoi(group.substr(0, equals));
        const std::string value = equals == std::string::npos ? "" : group.substr(equals + 1);
        double p[3] = {0, 0, 0};
        switch (groupKind(code)) {
        case GroupKind::None:
            chain.add(code);
            break;
        case GroupKind::String:
        case GroupKind::Handle:
            chain.addUtf8(code, value);
            break;
        case GroupKind::Real:
            chain.addReal(code, std::stod(value));
            break;
        case GroupKind::Point:
            std::sscanf(value.c_str(), "%lf,%lf,%lf", &p[0], &p[1], &p[2]);
            chain.addPoint(code, p[0], p[1], p[2]);
            break;
        default:
            chain.addInteger(code, std::stol(value));
        }
    }
    return chain.take();
}

class Escape : public vk::edit::InputSource {
public:
    vk::edit::Input next(const vk::edit::Question&) override
    {
        m_pressed = true;
        return {vk::edit::Input::Cancel{}};
    }
    bool isExhausted() const override { return m_pressed; }

private:
    bool m_pressed = false;
};

class Drawing : public testing::Test {
protected:
    void SetUp() override
    {
        ed().openDrawing(std::make_unique<VcDbDatabase>());
        for (const char* name : {"PICKFIRST", "PICKAUTO", "PICKSTYLE"})
            ed().vars().set(name, std::int32_t(1));
    }
    void TearDown() override { ed().closeDrawing(); }

    static Editor& ed() { return Editor::instance(); }
    static DatabaseCore& db() { return ed().db(); }
    static VcDbBlockTableRecord& space() { return *db().objectAs<VcDbBlockTableRecord>(db().modelSpace()); }
    static VcDbBlockTableRecord& block(const char* name)
    {
        return *db().objectAs<VcDbBlockTableRecord>(db().recordFor(NameTable::Block, name));
    }
    static VcDbLayerTableRecord& layer(const char* name)
    {
        return *db().objectAs<VcDbLayerTableRecord>(db().recordFor(NameTable::Layer, name));
    }

    // Letters are given to the members of layouts in the order of making.
    template <class T>
    T& add(T* entity, const char* layerName = "0", VcDbBlockTableRecord* owner = nullptr)
    {
        entity->setLayer(layer(layerName).objectId());
        EXPECT_EQ((owner ? *owner : space()).appendVcDbEntity(entity), Vcad::eOk);
        EXPECT_EQ(entity->setLayer(layer(layerName).objectId()), Vcad::eOk);
        entity->close();
        if (!owner || owner->isLayout())
            m_letters.emplace(entity->objectId(), char('a' + m_letters.size()));
        return *entity;
    }
    VcDbLine& line(double x1, double y1, double x2, double y2, const char* layerName = "0")
    {
        return add(new VcDbLine({x1, y1, 0}, {x2, y2, 0}), layerName);
    }
    VcDbCircle& circle(double x, double y, double radius, const char* layerName = "0")
    {
        return add(new VcDbCircle({x, y, 0}, VcGeVector3d::zAxis(), radius), layerName);
    }
    VcDbText& text(double x, double y, const wchar_t* content, const char* layerName = "0")
    {
        return add(new VcDbText({x, y, 0}, content, 1.0), layerName);
    }
    VcDbBlockReference& insert(const char* name, double x, double y, const char* layerName = "0")
    {
        return add(new VcDbBlockReference({x, y, 0}, block(name).objectId()), layerName);
    }

    std::string letterOf(VcDbObjectId id) const
    {
        const auto found = m_letters.find(id);
        return found == m_letters.end() ? "?" : std::string(1, found->second);
    }
    template <class Ids>
    std::string letters(const Ids& ids) const
    {
        std::string all;
        for (const VcDbObjectId id : ids)
            all += letterOf(id);
        return all;
    }
    VcDbObjectId idOf(char letter) const
    {
        for (const auto& [id, l] : m_letters)
            if (l == letter)
                return id;
        return {};
    }
    // Members of a set that a module holds; the set is freed.
    std::string lettersOfSet(vds_name set) const
    {
        int length = 0;
        EXPECT_EQ(vcedSSLength(set, &length), RTNORM);
        std::string all;
        for (int i = 0; i < length; ++i) {
            vds_name name;
            VcDbObjectId id;
            EXPECT_EQ(vcedSSName(set, i, name), RTNORM);
            EXPECT_TRUE(nameToId(name, id));
            all += letterOf(id);
        }
        EXPECT_EQ(vcedSSFree(set), RTNORM);
        return all;
    }
    // What vcedSSGet gives: letters, or the result code.
    std::string ssget(const wchar_t* mode, const void* first = nullptr, const void* second = nullptr,
                      const std::string& filter = "") const
    {
        vds_name set = {0, 0};
        const RbPtr chain = filter.empty() ? nullptr : chainFrom(filter);
        const int result = vcedSSGet(mode, first, second, chain.get(), set);
        EXPECT_TRUE(result == RTNORM || (set[0] == 0 && set[1] == 0)) << "a failed selection writes nothing";
        return result == RTNORM ? lettersOfSet(set) : std::to_string(result);
    }
    // Answers typed one after the other, lines parted by "\n"; "(cancel)" is Esc.
    static void type(const std::string& script)
    {
        static const std::string kEscape = "(cancel)\n";
        const std::size_t at = script.find(kEscape);
        if (at == std::string::npos)
            return ed().pushSource(std::make_unique<vk::edit::ScriptSource>("test", script));
        type(script.substr(at + kEscape.size()));
        ed().pushSource(std::make_unique<Escape>());
        type(script.substr(0, at));
    }

    std::map<VcDbObjectId, char> m_letters;
};

}  // namespace seltest
