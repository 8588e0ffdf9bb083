#include "host/base/unicode.h"
#include "host/io/drawing_file.h"

namespace {

struct VersionRow {
    DxfVersion version;
    const char* acadVersion;
    const char* release;
};

constexpr VersionRow kVersions[] = {
    {DxfVersion::R10, "AC1006", "R10"},    {DxfVersion::R11, "AC1007", "R11"},    {DxfVersion::R12, "AC1009", "R12"},
    {DxfVersion::R13, "AC1012", "R13"},    {DxfVersion::R14, "AC1014", "R14"},    {DxfVersion::R2000, "AC1015", "2000"},
    {DxfVersion::R2004, "AC1018", "2004"}, {DxfVersion::R2007, "AC1021", "2007"}, {DxfVersion::R2010, "AC1024", "2010"},
    {DxfVersion::R2013, "AC1027", "2013"}, {DxfVersion::R2018, "AC1032", "2018"},
};

const VersionRow& rowOf(DxfVersion version) { return kVersions[static_cast<int>(version)]; }

}

const char* acadVersionName(DxfVersion version) { return rowOf(version).acadVersion; }

const char* releaseName(DxfVersion version) { return rowOf(version).release; }

std::optional<DxfVersion> versionByName(std::string_view name)
{
    const std::string_view bare = !name.empty() && (name[0] | 0x20) == 'r' ? name.substr(1) : name;
    for (const VersionRow& row : kVersions) {
        const std::string_view release = row.release[0] == 'R' ? row.release + 1 : row.release;
        if (equalNoCase(name, std::string_view(row.acadVersion)) || bare == release)
            return row.version;
    }
    return std::nullopt;
}
