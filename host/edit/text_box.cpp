// The box of a text from its chain, measured from its base point before it is turned.
#include "host/base/unicode.h"
#include "host/db/chain.h"
#include "host/db/database.h"
#include "host/db/host_services.h"
#include "host/db/text_geometry.h"
#include "host/text/text_line.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_text.h"
#include "sdk/vced.h"

namespace {

const resbuf* group(const resbuf* chain, int code)
{
    for (; chain; chain = chain->rbnext)
        if (chain->restype == code)
            return chain;
    return nullptr;
}

double realOr(const resbuf* chain, int code, double byDefault)
{
    const resbuf* node = group(chain, code);
    return node ? rbReal(*node) : byDefault;
}

vktext::TextStyleSpec styleOf(const resbuf* chain)
{
    const resbuf* name = group(chain, 7);
    const DatabaseCore* db = workingCore();
    const VcDbObjectId style =
        db ? db->findRecord(NameTable::TextStyle, name ? rbUtf8(*name) : "Standard") : VcDbObjectId();
    vktext::TextStyleSpec spec = textStyleSpec(style, db);
    spec.widthFactor = realOr(chain, 41, spec.widthFactor);
    spec.oblique = realOr(chain, 51, spec.oblique);
    if (const resbuf* generation = group(chain, 71)) {
        spec.backwards = (rbInteger(*generation) & 2) != 0;
        spec.upsideDown = (rbInteger(*generation) & 4) != 0;
    }
    return spec;
}

}

int vcedTextBox(const resbuf* chain, vds_point lowerLeftOut, vds_point upperRightOut)
{
    const resbuf* text = group(chain, 1);
    if (!text || !lowerLeftOut || !upperRightOut)
        return RTERROR;
    vktext::TextStyleSpec style = styleOf(chain);
    const double height = realOr(chain, 40, style.fixedHeight > 0 ? style.fixedHeight : 2.5);
    const vktext::Box box = vktext::lineBox(style, height, rbUtf8(*text));
    lowerLeftOut[0] = box.left;
    lowerLeftOut[1] = box.bottom;
    upperRightOut[0] = box.right;
    upperRightOut[1] = box.top;
    lowerLeftOut[2] = upperRightOut[2] = 0;
    return RTNORM;
}
