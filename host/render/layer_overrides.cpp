#include "host/render/layer_overrides.h"

#include "host/db/packed_colour.h"
#include "host/db/database.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_records.h"

namespace vk::render {

// Each kind stands in a record of its own beside the layer: a viewport and a value for each viewport that has one.
namespace {

class OverrideReader {
public:
    OverrideReader(const DatabaseCore& db, VcDbObjectId viewport) : m_db(db), m_viewport(viewport) {}

    void take(const Tag& tag)
    {
        constexpr int kBrace = 102, kViewport = 335;
        if (tag.code == kBrace)
            m_applies = false;
        else if (tag.code == kViewport)
            m_applies = objectOf(tag) == m_viewport;
        else if (m_applies)
            takeValue(tag);
    }
    LayerOverride to;

private:
    void takeValue(const Tag& tag)
    {
        if (tag.form != Tag::Form::Integer)
            return;
        if (tag.code == 420)
            to.colour = colourOfPacked(std::uint32_t(tag.integer));
        else if (tag.code == 343)
            to.linetype = objectOf(tag);
        else if (tag.code == 91)
            to.lineWeight = int(tag.integer);
        else if (tag.code == 440)
            to.opacity = opacityOfPacked(tag.integer);
    }

    VcDbObjectId objectOf(const Tag& tag) const
    {
        return tag.form == Tag::Form::Integer ? m_db.findHandle(std::uint64_t(tag.integer)) : VcDbObjectId();
    }

    const DatabaseCore& m_db;
    const VcDbObjectId m_viewport;
    bool m_applies = false;
};

}

std::unordered_map<VcDbObjectId, LayerOverride> layerOverrides(const DatabaseCore& db, VcDbObjectId viewport)
{
    static constexpr const char* kRecords[] = {"ADSK_XREC_LAYER_COLOR_OVR", "ADSK_XREC_LAYER_LINETYPE_OVR",
                                               "ADSK_XREC_LAYER_LINEWT_OVR", "ADSK_XREC_LAYER_ALPHA_OVR"};
    std::unordered_map<VcDbObjectId, LayerOverride> all;
    for (const VcDbObjectId id : db.table(NameTable::Layer).records()) {
        const auto* layer = db.liveAs<VcDbLayerTableRecord>(id);
        const auto* own = layer ? db.liveAs<VcDbDictionary>(layer->extensionDictionary()) : nullptr;
        if (!own)
            continue;
        OverrideReader reader(db, viewport);
        for (const char* name : kRecords)
            if (const auto* record = db.liveAs<VcDbXrecord>(own->find(name)))
                for (const Tag& tag : record->data())
                    reader.take(tag);
        if (reader.to != LayerOverride())
            all.emplace(id, reader.to);
    }
    return all;
}

}  // namespace vk::render
