// What the tests of the entity classes share.
#pragma once

#include "host/db/database.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_database.h"
#include "sdk/vcdb_faces.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_text.h"
#include "sdk/vcge.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

namespace ent1 {

constexpr double kPi = 3.14159265358979323846;

using Pieces = std::vector<std::unique_ptr<VcDbEntity>>;

inline Pieces explode(const VcDbEntity& whole)
{
    std::vector<VcDbEntity*> raw;
    EXPECT_EQ(whole.explode(raw), Vcad::eOk);
    return Pieces(raw.begin(), raw.end());
}

inline void expectNear(const VcGePoint3d& a, const VcGePoint3d& b, double tolerance = 1e-9)
{
    EXPECT_NEAR(a.x, b.x, tolerance);
    EXPECT_NEAR(a.y, b.y, tolerance);
    EXPECT_NEAR(a.z, b.z, tolerance);
}

inline void expectExtents(const VcDbEntity& e, const VcGePoint3d& low, const VcGePoint3d& high, double tolerance = 1e-9)
{
    VcDbExtents box;
    ASSERT_EQ(e.getGeomExtents(box), Vcad::eOk);
    expectNear(box.minPoint(), low, tolerance);
    expectNear(box.maxPoint(), high, tolerance);
}

inline VcGeMatrix3d mirrorInX() { return VcGeMatrix3d::scaling(VcGeScale3d(-1, 1, 1)); }
inline VcGeMatrix3d uneven() { return VcGeMatrix3d::scaling(VcGeScale3d(2, 1, 1)); }
inline VcGeMatrix3d shear()
{
    VcGeMatrix3d m;
    m.entry[0][1] = 0.5;
    return m;
}

// A database with nothing but what references need: a table of blocks and one of layers.
class Drawing {
public:
    Drawing()
    {
        addTable<VcDbLayerTable>(NameTable::Layer);
        addTable<VcDbBlockTable>(NameTable::Block);
        core().recordFor(NameTable::Layer, "0");
    }
    DatabaseCore& core() { return m_database.core(); }
    VcDbBlockTableRecord& block(const char* name)
    {
        return *core().objectAs<VcDbBlockTableRecord>(core().recordFor(NameTable::Block, name));
    }
    // Puts an entity into a block and closes it.
    template <class T>
    T& add(const char* blockName, std::unique_ptr<T> entity)
    {
        T& added = *entity.release();
        added.setLayer(core().findRecord(NameTable::Layer, "0"));
        EXPECT_EQ(block(blockName).appendVcDbEntity(&added), Vcad::eOk);
        added.close();
        return added;
    }

private:
    template <class T>
    void addTable(NameTable which)
    {
        core().tableId(which) = core().add(std::make_unique<T>(), {});
    }
    VcDbDatabase m_database{false, true};
};

}
