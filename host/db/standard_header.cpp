#include "host/db/standard_header.h"

#include "host/db/database.h"
#include "host/db/rec_dim_variables.h"

#include <charconv>
#include <chrono>
#include <random>

namespace {

// Values as texts: coordinates of a point side by side. Where metric is null both systems have the same.
struct HeaderRow {
    const char* name;
    std::int16_t code;
    const char* imperial;
    const char* metric = nullptr;
};

const HeaderRow kRows[] = {
    {"$INSBASE", 10, "0 0 0"},
    {"$EXTMIN", 10, "1e20 1e20 1e20"},
    {"$EXTMAX", 10, "-1e20 -1e20 -1e20"},
    {"$LIMMIN", 10, "0 0"},
    {"$LIMMAX", 10, "12 9", "420 297"},
    {"$ORTHOMODE", 70, "0"},
    {"$REGENMODE", 70, "1"},
    {"$FILLMODE", 70, "1"},
    {"$QTEXTMODE", 70, "0"},
    {"$MIRRTEXT", 70, "0"},
    {"$LTSCALE", 40, "1"},
    {"$ATTMODE", 70, "1"},
    {"$TEXTSIZE", 40, "0.2", "2.5"},
    {"$TRACEWID", 40, "0.05", "1"},
    {"$TEXTSTYLE", 7, "Standard"},
    {"$CLAYER", 8, "0"},
    {"$CELTYPE", 6, "ByLayer"},
    {"$CECOLOR", 62, "256"},
    {"$CELTSCALE", 40, "1"},
    {"$DISPSILH", 70, "0"},
    {"$DIMASO", 70, "1"},
    {"$DIMSHO", 70, "1"},
    {"$DIMSTYLE", 2, "Standard", "ISO-25"},
    {"$LUNITS", 70, "2"},
    {"$LUPREC", 70, "4"},
    {"$SKETCHINC", 40, "0.1", "1"},
    {"$FILLETRAD", 40, "0"},
    {"$AUNITS", 70, "0"},
    {"$AUPREC", 70, "0"},
    {"$MENU", 1, "."},
    {"$ELEVATION", 40, "0"},
    {"$PELEVATION", 40, "0"},
    {"$THICKNESS", 40, "0"},
    {"$LIMCHECK", 70, "0"},
    {"$CHAMFERA", 40, "0"},
    {"$CHAMFERB", 40, "0"},
    {"$CHAMFERC", 40, "0"},
    {"$CHAMFERD", 40, "0"},
    {"$SKPOLY", 70, "0"},
    {"$TDINDWG", 40, "0"},
    {"$TDUSRTIMER", 40, "0"},
    {"$USRTIMER", 70, "1"},
    {"$ANGBASE", 50, "0"},
    {"$ANGDIR", 70, "0"},
    {"$PDMODE", 70, "0"},
    {"$PDSIZE", 40, "0"},
    {"$PLINEWID", 40, "0"},
    {"$SPLFRAME", 70, "0"},
    {"$SPLINETYPE", 70, "6"},
    {"$SPLINESEGS", 70, "8"},
    {"$SURFTAB1", 70, "6"},
    {"$SURFTAB2", 70, "6"},
    {"$SURFTYPE", 70, "6"},
    {"$SURFU", 70, "6"},
    {"$SURFV", 70, "6"},
    {"$UCSBASE", 2, ""},
    {"$UCSNAME", 2, ""},
    {"$UCSORG", 10, "0 0 0"},
    {"$UCSXDIR", 10, "1 0 0"},
    {"$UCSYDIR", 10, "0 1 0"},
    {"$UCSORTHOREF", 2, ""},
    {"$UCSORTHOVIEW", 70, "0"},
    {"$PUCSBASE", 2, ""},
    {"$PUCSNAME", 2, ""},
    {"$PUCSORG", 10, "0 0 0"},
    {"$PUCSXDIR", 10, "1 0 0"},
    {"$PUCSYDIR", 10, "0 1 0"},
    {"$PUCSORTHOREF", 2, ""},
    {"$PUCSORTHOVIEW", 70, "0"},
    {"$USERI1", 70, "0"},
    {"$USERI2", 70, "0"},
    {"$USERI3", 70, "0"},
    {"$USERI4", 70, "0"},
    {"$USERI5", 70, "0"},
    {"$USERR1", 40, "0"},
    {"$USERR2", 40, "0"},
    {"$USERR3", 40, "0"},
    {"$USERR4", 40, "0"},
    {"$USERR5", 40, "0"},
    {"$WORLDVIEW", 70, "1"},
    {"$SHADEDGE", 70, "3"},
    {"$SHADEDIF", 70, "70"},
    {"$TILEMODE", 70, "1"},
    {"$MAXACTVP", 70, "64"},
    {"$PINSBASE", 10, "0 0 0"},
    {"$PLIMCHECK", 70, "0"},
    {"$PEXTMIN", 10, "1e20 1e20 1e20"},
    {"$PEXTMAX", 10, "-1e20 -1e20 -1e20"},
    {"$PLIMMIN", 10, "0 0"},
    {"$PLIMMAX", 10, "12 9", "420 297"},
    {"$UNITMODE", 70, "0"},
    {"$VISRETAIN", 70, "1"},
    {"$PLINEGEN", 70, "0"},
    {"$PSLTSCALE", 70, "1"},
    {"$TREEDEPTH", 70, "3020"},
    {"$CMLSTYLE", 2, "Standard"},
    {"$CMLJUST", 70, "0"},
    {"$CMLSCALE", 40, "1", "20"},
    {"$PROXYGRAPHICS", 70, "1"},
    {"$MEASUREMENT", 70, "0", "1"},
    {"$CELWEIGHT", 370, "-1"},
    {"$ENDCAPS", 280, "0"},
    {"$JOINSTYLE", 280, "0"},
    {"$LWDISPLAY", 290, "0"},
    {"$INSUNITS", 70, "1", "4"},
    {"$HYPERLINKBASE", 1, ""},
    {"$STYLESHEET", 1, ""},
    {"$XEDIT", 290, "1"},
    {"$CEPSNTYPE", 380, "0"},
    {"$PSTYLEMODE", 290, "1"},
    {"$EXTNAMES", 290, "1"},
    {"$PSVPSCALE", 40, "0"},
    {"$OLESTARTUP", 290, "0"},
    {"$SORTENTS", 280, "127"},
    {"$INDEXCTL", 280, "0"},
    {"$HIDETEXT", 280, "1"},
    {"$XCLIPFRAME", 280, "2"},
    {"$HALOGAP", 280, "0"},
    {"$OBSCOLOR", 70, "257"},
    {"$OBSLTYPE", 280, "0"},
    {"$INTERSECTIONDISPLAY", 280, "0"},
    {"$INTERSECTIONCOLOR", 70, "257"},
    {"$DIMASSOC", 280, "2"},
    {"$PROJECTNAME", 1, ""},
    {"$CAMERADISPLAY", 290, "0"},
    {"$LENSLENGTH", 40, "50"},
    {"$CAMERAHEIGHT", 40, "0"},
    {"$STEPSPERSEC", 40, "2"},
    {"$STEPSIZE", 40, "6"},
    {"$3DDWFPREC", 40, "2"},
    {"$PSOLWIDTH", 40, "0.25", "5"},
    {"$PSOLHEIGHT", 40, "4", "80"},
    {"$LOFTANG1", 40, "1.570796326794897"},
    {"$LOFTANG2", 40, "1.570796326794897"},
    {"$LOFTMAG1", 40, "0"},
    {"$LOFTMAG2", 40, "0"},
    {"$LOFTPARAM", 70, "7"},
    {"$LOFTNORMALS", 280, "1"},
    {"$NORTHDIRECTION", 40, "0"},
    {"$LIGHTGLYPHDISPLAY", 280, "1"},
    {"$TILEMODELIGHTSYNCH", 280, "1"},
    {"$SOLIDHIST", 280, "0"},
    {"$SHOWHIST", 280, "1"},
    {"$DWFFRAME", 280, "2"},
    {"$DGNFRAME", 280, "0"},
    {"$REALWORLDSCALE", 290, "1"},
    {"$INTERFERECOLOR", 62, "1"},
    {"$CSHADOW", 280, "0"},
    {"$SHADOWPLANELOCATION", 40, "0"},
};

std::vector<double> numbersOf(std::string_view text)
{
    std::vector<double> numbers;
    while (!text.empty()) {
        double value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc())
            break;
        numbers.push_back(value);
        text.remove_prefix(std::min(text.size(), std::size_t(end - text.data()) + 1));
    }
    return numbers;
}

bool isReal(int code) { return code == 40 || code == 50; }
bool isText(int code) { return code < 10; }

void setRow(HeaderVars& header, const HeaderRow& row, std::string_view value)
{
    if (isText(row.code)) {
        header.setText(row.name, row.code, value);
        return;
    }
    const std::vector<double> numbers = numbersOf(value);
    if (numbers.size() == 3)
        header.setPoint(row.name, numbers[0], numbers[1], numbers[2]);
    else if (numbers.size() == 2)
        header.setPoint(row.name, numbers[0], numbers[1]);
    else if (isReal(row.code))
        header.setReal(row.name, row.code, numbers[0]);
    else
        header.setInteger(row.name, row.code, std::int64_t(numbers[0]));
}

// Days since noon of the first day of the year 4713 before our era.
double julianDay(std::chrono::system_clock::time_point time)
{
    constexpr double kOfUnixEpoch = 2440587.5, kSecondsADay = 86400;
    return kOfUnixEpoch + std::chrono::duration<double>(time.time_since_epoch()).count() / kSecondsADay;
}

void ensureTimes(HeaderVars& header)
{
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    std::tm local{};
    localtime_r(&seconds, &local);
    const double universal = julianDay(now), here = universal + double(local.tm_gmtoff) / 86400;
    for (const auto& [name, value] :
         {std::pair{"$TDCREATE", here}, {"$TDUCREATE", universal}, {"$TDUPDATE", here}, {"$TDUUPDATE", universal}})
        if (!header.has(name))
            header.setReal(name, 40, value);
}

std::string newGuid()
{
    static const char* const kHex = "0123456789ABCDEF";
    std::random_device random;
    std::string guid = "{00000000-0000-4000-8000-000000000000}";
    for (char& c : guid)
        if (c == '0')
            c = kHex[random() % 16];
    return guid;
}

void ensureGuids(HeaderVars& header)
{
    for (const char* name : {"$FINGERPRINTGUID", "$VERSIONGUID"})
        if (!header.has(name))
            header.setText(name, 2, newGuid());
}

}

void ensureHeaderVariables(DatabaseCore& db, bool metric)
{
    HeaderVars& header = db.header();
    for (const HeaderRow& row : kRows) {
        if (!header.has(row.name))
            setRow(header, row, metric && row.metric ? row.metric : row.imperial);
        if (row.name == std::string_view("$DIMSTYLE")) {
            VcDbDimVars vars = initialDimVars(metric);
            vars.dimtxsty = db.findRecord(NameTable::TextStyle, "Standard");
            setHeaderDimVars(db, vars, true);
        }
        // When an existing drawing was made cannot be known.
        if (row.name == std::string_view("$SKPOLY") && !db.origin.fromFile)
            ensureTimes(header);
    }
    ensureGuids(header);
}
