// How large the texts of a drawing are and where their parts stand: from styles of the drawing to plain values of host/text.
#pragma once

#include "host/text/mtext_layout.h"
#include "host/text/text_line.h"
#include "sdk/vcdb_text.h"

class DatabaseCore;

// The style of that id or, where there is none, Standard of the drawing, which for a text that is in none yet is the one
// that its style or its layer is from; without either it has the style txt.
vktext::TextStyleSpec textStyleSpec(VcDbObjectId style, const DatabaseCore* db);
// With the width factor, slant and mirroring of the text itself.
vktext::TextStyleSpec textStyleSpec(const VcDbText& text);

// The same with the font found; kept with the drawing, so that asking for each of many texts costs little. No style is
// Standard.
vktext::LineLooks styleLooks(VcDbObjectId style, const VcDbEntity& text);
vktext::LineLooks lineLooks(const VcDbText& text, VcDbObjectId style);
vktext::LineLooks lineLooks(const VcDbText& text);

// The base point that a text is drawn from. A justified text hangs on its alignment point, whatever base point its file
// worked out with another font; it is given for what is drawn, the text or a tag.
VcGePoint3d drawnPosition(const VcDbText& text, const std::string& drawn);
// The same in the text's own coordinates.
VcGePoint3d ownDrawnPosition(const VcDbText& text, const std::string& drawn, const vktext::LineLooks& looks);

// Where everything of a text of many lines stands, from its location along its direction.
vktext::MTextLayout layoutOf(const VcDbMText& text);
// The box of what is drawn of it, in the same axes.
vktext::Box drawnBoxOf(const VcDbMText& text);

// A record of the drawing with that font; made, under the undo of the drawing, when there is none.
VcDbObjectId styleWithFont(DatabaseCore& db, const vktext::FontRequest& font, VcDbObjectId preferred);
