#include "host/io/header_versions.h"

#include <algorithm>
#include <iterator>

namespace {

using enum DxfVersion;

struct Row {
    std::string_view name;
    DxfVersion since;
};

// In the order of their names. R12 stands for R12 and all before it; what is not here came with R13.
// clang-format off
constexpr Row kRows[] = {
    {"$3DDWFPREC", R2007}, {"$ACADVER", R12}, {"$ANGBASE", R12}, {"$ANGDIR", R12}, {"$ATTDIA", R12},
    {"$ATTMODE", R12}, {"$ATTREQ", R12}, {"$AUNITS", R12}, {"$AUPREC", R12}, {"$AXISMODE", R12}, {"$AXISUNIT", R12},
    {"$BLIPMODE", R12}, {"$CAMERADISPLAY", R2007}, {"$CAMERAHEIGHT", R2007}, {"$CECOLOR", R12}, {"$CELTYPE", R12},
    {"$CELWEIGHT", R2000}, {"$CEPSNID", R2000}, {"$CEPSNTYPE", R2000}, {"$CHAMFERA", R12}, {"$CHAMFERB", R12},
    {"$CLAYER", R12}, {"$CMATERIAL", R2007}, {"$COORDS", R12}, {"$CSHADOW", R2007}, {"$CUSTOMPROPERTY", R2004},
    {"$CUSTOMPROPERTYTAG", R2004}, {"$DGNFRAME", R2007}, {"$DIMADEC", R2000}, {"$DIMALT", R12}, {"$DIMALTD", R12},
    {"$DIMALTF", R12}, {"$DIMALTMZF", R2010}, {"$DIMALTMZS", R2010}, {"$DIMALTRND", R2000}, {"$DIMAPOST", R12}, {"$DIMARCSYM", R2007}, {"$DIMASO", R12},
    {"$DIMASSOC", R2004}, {"$DIMASZ", R12}, {"$DIMATFIT", R2000}, {"$DIMAZIN", R2000}, {"$DIMBLK", R12},
    {"$DIMBLK1", R12}, {"$DIMBLK2", R12}, {"$DIMCEN", R12}, {"$DIMCLRD", R12}, {"$DIMCLRE", R12}, {"$DIMCLRT", R12},
    {"$DIMDLE", R12}, {"$DIMDLI", R12}, {"$DIMDSEP", R2000}, {"$DIMEXE", R12}, {"$DIMEXO", R12}, {"$DIMFRAC", R2000},
    {"$DIMFXL", R2007}, {"$DIMFXLON", R2007}, {"$DIMGAP", R12}, {"$DIMJOGANG", R2007}, {"$DIMLDRBLK", R2000},
    {"$DIMLFAC", R12}, {"$DIMLIM", R12}, {"$DIMLTEX1", R2007}, {"$DIMLTEX2", R2007}, {"$DIMLTYPE", R2007},
    {"$DIMLUNIT", R2000}, {"$DIMLWD", R2000}, {"$DIMLWE", R2000}, {"$DIMMZF", R2010}, {"$DIMMZS", R2010}, {"$DIMPOST", R12}, {"$DIMRND", R12},
    {"$DIMSAH", R12}, {"$DIMSCALE", R12}, {"$DIMSE1", R12}, {"$DIMSE2", R12}, {"$DIMSHO", R12}, {"$DIMSOXD", R12},
    {"$DIMSTYLE", R12}, {"$DIMTAD", R12}, {"$DIMTFAC", R12}, {"$DIMTFILL", R2007}, {"$DIMTFILLCLR", R2007},
    {"$DIMTIH", R12}, {"$DIMTIX", R12}, {"$DIMTM", R12}, {"$DIMTMOVE", R2000}, {"$DIMTOFL", R12}, {"$DIMTOH", R12},
    {"$DIMTOL", R12}, {"$DIMTP", R12}, {"$DIMTSZ", R12}, {"$DIMTVP", R12}, {"$DIMTXT", R12},
    {"$DIMTXTDIRECTION", R2010}, {"$DIMZIN", R12}, {"$DRAGMODE", R12}, {"$DRAGVS", R2007}, {"$DWFFRAME", R2007},
    {"$DWGCODEPAGE", R12}, {"$ELEVATION", R12}, {"$ENDCAPS", R2000}, {"$EXTMAX", R12}, {"$EXTMIN", R12},
    {"$EXTNAMES", R2000}, {"$FILLETRAD", R12}, {"$FILLMODE", R12}, {"$FINGERPRINTGUID", R2000}, {"$FLATLAND", R12},
    {"$HALOGAP", R2004}, {"$HANDLING", R12}, {"$HANDSEED", R12}, {"$HIDETEXT", R2004}, {"$HYPERLINKBASE", R2000},
    {"$INDEXCTL", R2004}, {"$INSBASE", R12}, {"$INSUNITS", R2000}, {"$INTERFERECOLOR", R2007},
    {"$INTERFEREOBJVS", R2007}, {"$INTERFEREVPVS", R2007}, {"$INTERSECTIONCOLOR", R2004},
    {"$INTERSECTIONDISPLAY", R2004}, {"$JOINSTYLE", R2000}, {"$LASTSAVEDBY", R2004}, {"$LATITUDE", R2007},
    {"$LENSLENGTH", R2007}, {"$LIGHTGLYPHDISPLAY", R2007}, {"$LIMCHECK", R12}, {"$LIMMAX", R12}, {"$LIMMIN", R12},
    {"$LOFTANG1", R2007}, {"$LOFTANG2", R2007}, {"$LOFTMAG1", R2007}, {"$LOFTMAG2", R2007}, {"$LOFTNORMALS", R2007},
    {"$LOFTPARAM", R2007}, {"$LONGITUDE", R2007}, {"$LTSCALE", R12}, {"$LUNITS", R12}, {"$LUPREC", R12},
    {"$LWDISPLAY", R2000}, {"$MAXACTVP", R12}, {"$MENU", R12}, {"$MIRRTEXT", R12}, {"$NORTHDIRECTION", R2007},
    {"$OBSCOLOR", R2004}, {"$OBSLTYPE", R2004}, {"$OLESTARTUP", R2000}, {"$ORTHOMODE", R12}, {"$OSMODE", R12},
    {"$PDMODE", R12}, {"$PDSIZE", R12}, {"$PELEVATION", R12}, {"$PEXTMAX", R12}, {"$PEXTMIN", R12},
    {"$PLIMCHECK", R12}, {"$PLIMMAX", R12}, {"$PLIMMIN", R12}, {"$PLINEGEN", R12}, {"$PLINEWID", R12},
    {"$PROJECTNAME", R2004}, {"$PSLTSCALE", R12}, {"$PSOLHEIGHT", R2007}, {"$PSOLWIDTH", R2007},
    {"$PSTYLEMODE", R2000}, {"$PSVPSCALE", R2000}, {"$PUCSBASE", R2000}, {"$PUCSNAME", R12}, {"$PUCSORG", R12},
    {"$PUCSORGBACK", R2000}, {"$PUCSORGBOTTOM", R2000}, {"$PUCSORGFRONT", R2000}, {"$PUCSORGLEFT", R2000},
    {"$PUCSORGRIGHT", R2000}, {"$PUCSORGTOP", R2000}, {"$PUCSORTHOREF", R2000}, {"$PUCSORTHOVIEW", R2000},
    {"$PUCSXDIR", R12}, {"$PUCSYDIR", R12}, {"$QTEXTMODE", R12}, {"$REALWORLDSCALE", R2007}, {"$REGENMODE", R12},
    {"$REQUIREDVERSIONS", R2013}, {"$SHADEDGE", R12}, {"$SHADEDIF", R12}, {"$SHADOWPLANELOCATION", R2007},
    {"$SHOWHIST", R2007}, {"$SKETCHINC", R12}, {"$SKPOLY", R12}, {"$SOLIDHIST", R2007}, {"$SORTENTS", R2004},
    {"$SPLFRAME", R12}, {"$SPLINESEGS", R12}, {"$SPLINETYPE", R12}, {"$STEPSIZE", R2007}, {"$STEPSPERSEC", R2007},
    {"$STYLESHEET", R2000}, {"$SURFTAB1", R12}, {"$SURFTAB2", R12}, {"$SURFTYPE", R12}, {"$SURFU", R12},
    {"$SURFV", R12}, {"$TDCREATE", R12}, {"$TDINDWG", R12}, {"$TDUCREATE", R2000}, {"$TDUPDATE", R12},
    {"$TDUSRTIMER", R12}, {"$TDUUPDATE", R2000}, {"$TEXTSIZE", R12}, {"$TEXTSTYLE", R12}, {"$THICKNESS", R12},
    {"$TILEMODE", R12}, {"$TILEMODELIGHTSYNCH", R2007}, {"$TIMEZONE", R2007}, {"$TRACEWID", R12}, {"$UCSBASE", R2000},
    {"$UCSNAME", R12}, {"$UCSORG", R12}, {"$UCSORGBACK", R2000}, {"$UCSORGBOTTOM", R2000}, {"$UCSORGFRONT", R2000},
    {"$UCSORGLEFT", R2000}, {"$UCSORGRIGHT", R2000}, {"$UCSORGTOP", R2000}, {"$UCSORTHOREF", R2000},
    {"$UCSORTHOVIEW", R2000}, {"$UCSXDIR", R12}, {"$UCSXORI", R12}, {"$UCSYDIR", R12}, {"$UCSYORI", R12},
    {"$UNITMODE", R12}, {"$USERI1", R12}, {"$USERI2", R12}, {"$USERI3", R12}, {"$USERI4", R12}, {"$USERI5", R12},
    {"$USERR1", R12}, {"$USERR2", R12}, {"$USERR3", R12}, {"$USERR4", R12}, {"$USERR5", R12}, {"$USRTIMER", R12},
    {"$VERSIONGUID", R2000}, {"$VISRETAIN", R12}, {"$WORLDVIEW", R12}, {"$XCLIPFRAME", R2004}, {"$XEDIT", R2000},
};
// clang-format on

}

DxfVersion headerVariableSince(std::string_view name)
{
    const auto row = std::lower_bound(std::begin(kRows), std::end(kRows), name,
                                      [](const Row& r, std::string_view n) { return r.name < n; });
    return row != std::end(kRows) && row->name == name ? row->since : R13;
}
