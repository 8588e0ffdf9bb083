#include "host/text/font_names.h"

#include "host/base/unicode.h"

#include <algorithm>

namespace vktext {

namespace {

constexpr auto kDrawn = StrokeSpacing::AsDrawn;
constexpr auto kCells = StrokeSpacing::Cells;
constexpr auto kMono = StrokeSpacing::MonoCells;

constexpr StrokeSet kStrokeSets[] = {
    {"txt", "rowmans", kCells, true},       {"monotxt", "rowmans", kMono, true},
    {"simplex", "rowmans", kDrawn, true},   {"romans", "rowmans", kDrawn, true},
    {"romand", "rowmand", kDrawn, true},    {"romanc", "timesr", kDrawn, true},
    {"romant", "timesrb", kDrawn, true},    {"complex", "timesr", kDrawn, true},
    {"italic", "timesi", kDrawn, true},     {"italicc", "timesi", kDrawn, true},
    {"italict", "timesib", kDrawn, true},   {"scripts", "scripts", kDrawn, true},
    {"scriptc", "scriptc", kDrawn, true},   {"greeks", "greeks", kDrawn, true},
    {"greekc", "greekc", kDrawn, true},     {"gothice", "gothiceng", kDrawn, true},
    {"gothicg", "gothicger", kDrawn, true}, {"gothici", "gothicita", kDrawn, true},
    {"cyrillic", "cyrillic", kDrawn, true}, {"cyriltlc", "cyrilc_1", kDrawn, true},
    {"syastro", "astrology", kDrawn, true}, {"symap", "markers", kDrawn, true},
    {"symath", "mathlow", kDrawn, true},    {"symeteo", "meteorology", kDrawn, true},
    {"symusic", "music", kDrawn, true},     {"isocp", "rowmans", kCells, false},
    {"isocp2", "rowmans", kCells, false},   {"isocp3", "rowmans", kCells, false},
    {"isoct", "rowmans", kCells, false},    {"isoct2", "rowmans", kCells, false},
    {"isoct3", "rowmans", kCells, false},   {"gdt", "gdt", kDrawn, false},
    {"amgdt", "gdt", kDrawn, false},        {"amgdtans", "gdt", kDrawn, false},
};

struct FaceFile {
    std::string_view stem;
    std::string_view family;
    bool bold, italic;
};

constexpr FaceFile kFaceFiles[] = {
    {"arial", "Arial", false, false},           {"arialbd", "Arial", true, false},
    {"ariali", "Arial", false, true},           {"arialbi", "Arial", true, true},
    {"arialn", "Arial Narrow", false, false},   {"arialnb", "Arial Narrow", true, false},
    {"arialni", "Arial Narrow", false, true},   {"arialnbi", "Arial Narrow", true, true},
    {"ariblk", "Arial Black", false, false},    {"arialuni", "Arial Unicode MS", false, false},
    {"times", "Times New Roman", false, false}, {"timesbd", "Times New Roman", true, false},
    {"timesi", "Times New Roman", false, true}, {"timesbi", "Times New Roman", true, true},
    {"cour", "Courier New", false, false},      {"courbd", "Courier New", true, false},
    {"couri", "Courier New", false, true},      {"courbi", "Courier New", true, true},
    {"calibri", "Calibri", false, false},       {"calibrib", "Calibri", true, false},
    {"calibrii", "Calibri", false, true},       {"calibriz", "Calibri", true, true},
    {"cambria", "Cambria", false, false},       {"cambriab", "Cambria", true, false},
    {"verdana", "Verdana", false, false},       {"verdanab", "Verdana", true, false},
    {"tahoma", "Tahoma", false, false},         {"tahomabd", "Tahoma", true, false},
    {"segoeui", "Segoe UI", false, false},      {"segoeuib", "Segoe UI", true, false},
    {"georgia", "Georgia", false, false},       {"trebuc", "Trebuchet MS", false, false},
    {"comic", "Comic Sans MS", false, false},   {"consola", "Consolas", false, false},
    {"lucon", "Lucida Console", false, false},  {"micross", "Microsoft Sans Serif", false, false},
    {"symbol", "Symbol", false, false},         {"wingding", "Wingdings", false, false},
    {"simsun", "SimSun", false, false},         {"simhei", "SimHei", false, false},
    {"msyh", "Microsoft YaHei", false, false},  {"msgothic", "MS Gothic", false, false},
    {"isocpeur", "ISOCPEUR", false, false},     {"isocteur", "ISOCTEUR", false, false},
};

struct MetricTwin {
    std::string_view asked, taken;
    double capHeight;  // of the asked one, in ems
};

constexpr MetricTwin kTwins[] = {
    {"Arial", "Liberation Sans", 1466.0 / 2048},
    {"Helvetica", "Liberation Sans", 1466.0 / 2048},
    {"Arial Narrow", "Liberation Sans Narrow", 1466.0 / 2048},
    {"Times New Roman", "Liberation Serif", 1341.0 / 2048},
    {"Times", "Liberation Serif", 1341.0 / 2048},
    {"Courier New", "Liberation Mono", 1170.0 / 2048},
    {"Arial", "Arimo", 1466.0 / 2048},
    {"Times New Roman", "Tinos", 1341.0 / 2048},
    {"Courier New", "Cousine", 1170.0 / 2048},
    {"Calibri", "Carlito", 0},
    {"Cambria", "Caladea", 0},
};

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

std::string baseName(std::string_view font)
{
    const auto slash = font.find_last_of("/\\");
    std::string name(slash == std::string_view::npos ? font : font.substr(slash + 1));
    std::transform(name.begin(), name.end(), name.begin(), lower);
    return name;
}

bool hasEnding(std::string_view baseName, std::string_view ending)
{
    return baseName.size() > ending.size() && baseName.substr(baseName.size() - ending.size()) == ending;
}

// The outline versions of the stroke fonts fill their names up with underscores ("txt_____.ttf").
std::string stem(std::string_view baseName)
{
    for (const std::string_view ending : {".shx", ".ttf", ".ttc", ".otf", ".pfb"})
        if (hasEnding(baseName, ending)) {
            baseName.remove_suffix(ending.size());
            break;
        }
    while (!baseName.empty() && baseName.back() == '_')
        baseName.remove_suffix(1);
    return std::string(baseName);
}

const StrokeSet* strokeSet(std::string_view stem)
{
    const auto found = std::find_if(std::begin(kStrokeSets), std::end(kStrokeSets),
                                    [&](const StrokeSet& set) { return set.name == stem; });
    return found == std::end(kStrokeSets) ? nullptr : found;
}

const StrokeSet& defaultStrokeSet() { return kStrokeSets[0]; }

TypefaceName typefaceOf(const FontRequest& request)
{
    const std::string base = baseName(request.font);
    const std::string name = stem(base);
    for (const auto& file : kFaceFiles)
        if (file.stem == name)
            return {std::string(file.family), file.bold || request.bold, file.italic || request.italic};
    return {name == base ? request.font : name, request.bold, request.italic};
}

double publishedCapHeight(std::string_view family)
{
    for (const auto& twin : kTwins)
        if (equalNoCase(twin.asked, family))
            return twin.capHeight;
    return 0;
}

bool sameWidths(std::string_view asked, std::string_view taken)
{
    return equalNoCase(asked, taken) || std::any_of(std::begin(kTwins), std::end(kTwins), [&](const MetricTwin& twin) {
               return equalNoCase(twin.asked, asked) && equalNoCase(twin.taken, taken);
           });
}

}  // namespace vktext
