#pragma once
// A drawing whose style has round sizes, and questions about the block of a dimension in it.
#include "db_support.h"

#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_dims.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_text.h"

#include <gtest/gtest.h>

struct DimDrawing {
    DimDrawing() : core(db.core()), space(*core.objectAs<VcDbBlockTableRecord>(core.modelSpace())) {}

    VcDbDimStyleTableRecord& style()
    {
        return *core.objectAs<VcDbDimStyleTableRecord>(core.findRecord(NameTable::DimStyle, "Standard"));
    }

    template <class T>
    T& add(std::unique_ptr<T> entity)
    {
        T* raw = entity.release();
        EXPECT_EQ(space.appendVcDbEntity(raw), Vcad::eOk);
        raw->close();
        return *raw;
    }

    VcDbDatabase db;
    DatabaseCore& core;
    VcDbBlockTableRecord& space;
};

struct DimPictures : testing::Test, DimDrawing {
    DimPictures()
    {
        VcDbDimVars vars = style().dimVars();
        vars = VcDbDimVars();
        vars.dimasz = 2;
        vars.dimtxt = 2;
        vars.dimgap = 0.5;
        vars.dimexo = 1;
        vars.dimexe = 1;
        vars.dimdec = 0;
        style().setDimVars(vars);
    }

    void change(void (*change)(VcDbDimVars&))
    {
        VcDbDimVars vars = style().dimVars();
        change(vars);
        style().setDimVars(vars);
    }

    std::unique_ptr<VcDbRotatedDimension> linear(double length, double height = 10)
    {
        auto d = std::make_unique<VcDbRotatedDimension>();
        d->setXLine1Point({0, 0, 0});
        d->setXLine2Point({length, 0, 0});
        d->setDimLinePoint({length, height, 0});
        return d;
    }

    template <class T>
    std::vector<const T*> parts(const VcDbDimension& d)
    {
        std::vector<const T*> found;
        const auto* block = core.liveAs<VcDbBlockTableRecord>(d.dimBlockId());
        if (!block)
            return found;
        for (const std::uint32_t slot : block->memberSlots())
            if (const auto* part = T::cast(core.objectAt(slot)); part && !part->isErased())
                found.push_back(part);
        return found;
    }

    bool hasLine(const VcDbDimension& d, VcGePoint3d a, VcGePoint3d b)
    {
        for (const VcDbLine* line : parts<VcDbLine>(d)) {
            const VcGePoint3d s = line->startPoint(), e = line->endPoint();
            if ((s.distanceTo(a) < 1e-6 && e.distanceTo(b) < 1e-6) ||
                (s.distanceTo(b) < 1e-6 && e.distanceTo(a) < 1e-6))
                return true;
        }
        return false;
    }

    std::string said(const VcDbDimension& d)
    {
        std::string all;
        for (const VcDbMText* text : parts<VcDbMText>(d))
            all += (all.empty() ? "" : "|") + text->contentsUtf8();
        return all;
    }
};
