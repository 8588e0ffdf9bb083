// The dimension variables, as a dimension style, the drawing's header and the overrides of a dimension hold them.
#pragma once

#include "vcdb_object.h"

#include <string>

// Initial values are those of a file that leaves a group out. Lengths are in drawing units before DIMSCALE, angles in
// radians, colours are palette indexes (0 by block, 256 by layer), lineweights hundredths of a millimetre.
struct VK_SDK VcDbDimVars {
    std::string dimpost, dimapost, dimmzs, dimaltmzs;
    VcDbObjectId dimblk, dimblk1, dimblk2, dimldrblk;     // arrows; null is the closed filled one
    VcDbObjectId dimtxsty, dimltype, dimltex1, dimltex2;  // a null style is Standard, a null linetype by block
    double dimscale = 1, dimasz = 0.18, dimexo = 0.0625, dimdli = 0.38, dimexe = 0.18, dimrnd = 0, dimdle = 0;
    double dimtp = 0, dimtm = 0, dimfxl = 1, dimjogang = 0.78539816339744830962;
    double dimtxt = 0.18, dimcen = 0.09, dimtsz = 0, dimaltf = 25.4, dimlfac = 1, dimtvp = 0, dimtfac = 1,
           dimgap = 0.09;
    double dimaltrnd = 0, dimmzf = 100, dimaltmzf = 100;
    std::int16_t dimtfill = 0, dimtfillclr = 0, dimtol = 0, dimlim = 0, dimtih = 1, dimtoh = 1, dimse1 = 0, dimse2 = 0;
    std::int16_t dimtad = 0, dimzin = 0, dimazin = 0, dimarcsym = 0;
    std::int16_t dimalt = 0, dimaltd = 2, dimtofl = 0, dimsah = 0, dimtix = 0, dimsoxd = 0;
    std::int16_t dimclrd = 0, dimclre = 0, dimclrt = 0, dimadec = 0;
    std::int16_t dimdec = 4, dimtdec = 4, dimaltu = 2, dimalttd = 2, dimaunit = 0, dimfrac = 0, dimlunit = 2,
                 dimdsep = '.';
    std::int16_t dimtmove = 0, dimjust = 0, dimsd1 = 0, dimsd2 = 0, dimtolj = 1, dimtzin = 0, dimaltz = 0, dimalttz = 0;
    std::int16_t dimupt = 0, dimatfit = 3, dimfxlon = 0, dimtxtdirection = 0, dimlwd = -2, dimlwe = -2;
    // Older names of what dimlunit and dimfrac, dimatfit and dimtmove say now; -1 where they are worked out from those.
    std::int16_t dimunit = -1, dimfit = -1;

    bool operator==(const VcDbDimVars&) const = default;
};
