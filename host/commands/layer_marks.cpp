#include "host/commands/layer_marks.h"

#include "host/base/rb.h"
#include "host/db/chain.h"
#include "host/db/database.h"
#include "host/db/extras.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"

#include <cmath>

namespace vk::commands {

namespace {

constexpr int kApplication = 1001, kText = 1000, kLong = 1071;

// A chain of the application's name alone takes its data away.
RbBuilder dataOf(const wchar_t* application)
{
    vcdbRegApp(application);
    RbBuilder chain;
    chain.addString(kApplication, application);
    return chain;
}

}  // namespace

void setTransparency(VcDbLayerTableRecord& layer, int percent)
{
    // The lowest byte is the opacity; the bit above says that it is one.
    constexpr std::int64_t kByValue = 0x02000000;
    setTransparencyValue(layer, percent > 0 ? kByValue | std::lround(255 * (100 - percent) / 100.0) : 0);
}

void setTransparencyValue(VcDbLayerTableRecord& layer, std::int64_t value)
{
    RbBuilder data = dataOf(L"AcCmTransparency");
    if (value != 0)
        data.addInteger(kLong, value);
    layer.setXData(data.take().get());
}

std::int64_t transparencyOf(const VcDbLayerTableRecord& layer)
{
    if (!layer.extras())
        return 0;
    bool own = false;
    for (const Tag& tag : layer.extras()->xdata)
        if (tag.code == kApplication)
            own = tag.form == Tag::Form::Utf8 && tag.view() == "AcCmTransparency";
        else if (own && tag.code == kLong && tag.form == Tag::Form::Integer)
            return tag.integer;
    return 0;
}

namespace {

constexpr int kPlotStyle = 390;

const VcDbDictionary* plotStyles(const DatabaseCore& db)
{
    const auto* root = db.objectAs<VcDbDictionary>(db.rootDictionary());
    return root ? db.liveAs<VcDbDictionary>(root->find("ACAD_PLOTSTYLENAME")) : nullptr;
}

}  // namespace

std::string plotStyleOf(const DatabaseCore& db, const VcDbLayerTableRecord& layer)
{
    const VcDbDictionary* styles = plotStyles(db);
    const RbPtr chain = chainOf(const_cast<VcDbLayerTableRecord&>(layer));
    for (const resbuf* rb = chain.get(); styles && rb; rb = rb->rbnext)
        if (VcDbObjectId id; rb->restype == kPlotStyle && nameToId(rb->resval.rlname, id))
            return styles->nameOf(id);
    return {};
}

bool setPlotStyleOf(const DatabaseCore& db, VcDbLayerTableRecord& layer, const std::string& name)
{
    const VcDbDictionary* styles = plotStyles(db);
    const VcDbObjectId id = styles ? styles->find(name) : VcDbObjectId();
    if (id.isNull())
        return false;
    if (plotStyleOf(db, layer) == styles->nameOf(id))
        return true;
    vds_name style;
    idToName(id, style);
    RbBuilder chain;
    chain.addString(0, L"LAYER");
    chain.addName(kPlotStyle, style);
    const RbPtr groups = chain.take();
    ChainGroups cut(groups.get());
    return applyChain(layer, cut) == Vcad::eOk;
}

void setDescription(VcDbLayerTableRecord& layer, const std::string& description)
{
    RbBuilder data = dataOf(L"AcAecLayerStandard");
    if (!description.empty()) {
        data.addUtf8(kText, "");
        data.addUtf8(kText, description);
    }
    layer.setXData(data.take().get());
}

}  // namespace vk::commands
