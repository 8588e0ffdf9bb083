#include "host/text/system_fonts.h"

#include "host/text/font_names.h"
#include "host/text/outline_font.h"

#include <fontconfig/fontconfig.h>

namespace vktext {

namespace {

struct PatternDeleter {
    void operator()(FcPattern* p) const { FcPatternDestroy(p); }
};
using Pattern = std::unique_ptr<FcPattern, PatternDeleter>;

struct FontSetDeleter {
    void operator()(FcFontSet* s) const { FcFontSetDestroy(s); }
};
using FontSet = std::unique_ptr<FcFontSet, FontSetDeleter>;

std::string text(const FcPattern* pattern, const char* object, int n = 0)
{
    FcChar8* value = nullptr;
    return FcPatternGetString(pattern, object, n, &value) == FcResultMatch ? reinterpret_cast<const char*>(value)
                                                                           : std::string();
}

// The name by which the font is the asked one, if it has such a name, else its first.
std::string familyLike(const FcPattern* pattern, const std::string& asked)
{
    for (int n = 0;; ++n) {
        const std::string family = text(pattern, FC_FAMILY, n);
        if (family.empty())
            return text(pattern, FC_FAMILY);
        if (FcStrCmpIgnoreCase(reinterpret_cast<const FcChar8*>(family.c_str()),
                               reinterpret_cast<const FcChar8*>(asked.c_str())) == 0)
            return family;
    }
}

std::optional<FontFile> fileOf(const FcPattern* pattern, const std::string& askedFamily)
{
    FontFile file{text(pattern, FC_FILE), 0, familyLike(pattern, askedFamily)};
    FcPatternGetInteger(pattern, FC_INDEX, 0, &file.faceIndex);
    return file.path.empty() ? std::nullopt : std::optional(std::move(file));
}

void addFamily(FcPattern* pattern, const char* family)
{
    FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
}

}  // namespace

struct SystemFonts::State {
    FcConfig* config = FcInitLoadConfigAndFonts();
    FontSet byPreference;  // for characters that a font lacks; sorted when first needed
    std::vector<std::shared_ptr<OutlineFont>> loaded;
    std::vector<bool> tried;

    ~State()
    {
        if (config)
            FcConfigDestroy(config);
    }

    template <class Visit>
    void eachFont(Visit visit) const
    {
        for (const FcSetName kind : {FcSetApplication, FcSetSystem})
            if (const FcFontSet* set = config ? FcConfigGetFonts(config, kind) : nullptr)
                for (int i = 0; i < set->nfont; ++i)
                    if (visit(set->fonts[i]))
                        return;
    }

    void sortByPreference()
    {
        Pattern pattern(FcPatternCreate());
        addFamily(pattern.get(), "DejaVu Sans");
        addFamily(pattern.get(), "sans-serif");
        FcPatternAddBool(pattern.get(), FC_OUTLINE, FcTrue);
        FcConfigSubstitute(config, pattern.get(), FcMatchPattern);
        FcDefaultSubstitute(pattern.get());
        FcResult result = FcResultMatch;
        byPreference.reset(FcFontSort(config, pattern.get(), FcTrue, nullptr, &result));
        const auto count = byPreference ? static_cast<std::size_t>(byPreference->nfont) : 0;
        loaded.resize(count);
        tried.resize(count);
    }

    GlyphSource* load(std::size_t i)
    {
        if (!tried[i]) {
            tried[i] = true;
            if (const auto file = fileOf(byPreference->fonts[i], {}))
                loaded[i] = OutlineFont::load(file->path, file->faceIndex);
        }
        return loaded[i].get();
    }
};

SystemFonts::SystemFonts() : m_state(std::make_unique<State>()) {}

// Kept to the end of the process: fonts hand out sources that are its own.
SystemFonts& SystemFonts::instance()
{
    static SystemFonts& fonts = *new SystemFonts;
    return fonts;
}

void SystemFonts::addFolder(const std::string& folder)
{
    if (m_state->config)
        FcConfigAppFontAddDir(m_state->config, reinterpret_cast<const FcChar8*>(folder.c_str()));
}

std::optional<FontFile> SystemFonts::byFileName(std::string_view fileName) const
{
    std::optional<FontFile> found;
    m_state->eachFont([&](const FcPattern* pattern) {
        if (baseName(text(pattern, FC_FILE)) == fileName)
            found = fileOf(pattern, {});
        return found.has_value();
    });
    return found;
}

std::optional<FontFile> SystemFonts::nearest(const std::string& family, bool bold, bool italic) const
{
    if (!m_state->config)
        return std::nullopt;
    Pattern pattern(FcPatternCreate());
    addFamily(pattern.get(), family.c_str());
    addFamily(pattern.get(), "Arial");
    FcPatternAddInteger(pattern.get(), FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddInteger(pattern.get(), FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddBool(pattern.get(), FC_OUTLINE, FcTrue);
    FcConfigSubstitute(m_state->config, pattern.get(), FcMatchPattern);
    FcDefaultSubstitute(pattern.get());
    FcResult result = FcResultMatch;
    const Pattern match(FcFontMatch(m_state->config, pattern.get(), &result));
    return match ? fileOf(match.get(), family) : std::nullopt;
}

GlyphSource* SystemFonts::covering(char32_t c)
{
    if (!m_state->config)
        return nullptr;
    if (!m_state->byPreference)
        m_state->sortByPreference();
    for (std::size_t i = 0; i < m_state->loaded.size(); ++i) {
        FcCharSet* covered = nullptr;
        if (FcPatternGetCharSet(m_state->byPreference->fonts[i], FC_CHARSET, 0, &covered) == FcResultMatch &&
            FcCharSetHasChar(covered, c))
            if (GlyphSource* source = m_state->load(i); source && source->metrics(c))
                return source;
    }
    return nullptr;
}

}  // namespace vktext
