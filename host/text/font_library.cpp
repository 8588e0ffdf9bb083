#include "host/text/font_library.h"

#include "host/text/font_names.h"
#include "host/text/outline_font.h"
#include "host/text/system_fonts.h"

#include <dlfcn.h>

#include <filesystem>
#include <map>

namespace vktext {

namespace {

struct Found {
    std::shared_ptr<GlyphSource> source;  // null when nothing at all could be had
    std::string taken;
    FontMatch match = FontMatch::Substitute;
};

struct RequestHash {
    std::size_t operator()(const FontRequest& r) const
    {
        const std::hash<std::string> hash;
        return hash(r.font) ^ (hash(r.bigFont) * 31) ^ (r.bold ? 0x9E3779B9u : 0) ^ (r.italic ? 0x7F4A7C15u : 0);
    }
};

std::string folderOfThisLibrary()
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&folderOfThisLibrary), &info) == 0 || !info.dli_fname)
        return {};
    return std::filesystem::path(info.dli_fname).parent_path().string();
}

constexpr const char* kHersheyFolder = "/usr/share/hershey-fonts";

GlyphSource* systemSource(char32_t c) { return SystemFonts::instance().covering(c); }

}  // namespace

struct FontLibrary::State {
    struct Entry {
        FontRequest asked;
        std::string taken;
        FontMatch match;
        const Font& font;
    };

    std::vector<std::string> folders;
    bool foldersGivenToSystem = false;
    std::vector<std::unique_ptr<Entry>> entries;
    std::unordered_map<FontRequest, Entry*, RequestHash> byRequest;
    // A drawing may ask by any number of names for the few fonts that there are.
    std::map<std::pair<GlyphSource*, GlyphSource*>, std::unique_ptr<Font>> fonts;
    std::map<std::pair<std::string_view, StrokeSpacing>, std::shared_ptr<StrokeFont>> strokeSets;
    std::map<std::tuple<std::string, int, double>, std::shared_ptr<OutlineFont>> outlines;

    SystemFonts& systemFonts()
    {
        auto& fonts = SystemFonts::instance();
        if (!foldersGivenToSystem)
            for (const auto& folder : folders)
                fonts.addFolder(folder);
        foldersGivenToSystem = true;
        return fonts;
    }

    std::shared_ptr<StrokeFont> strokeFont(const StrokeSet& set)
    {
        auto [known, isNew] = strokeSets.try_emplace({set.file, set.spacing});
        if (isNew)
            known->second = loadStrokeFont(std::string(set.file) + ".jhf", set.spacing);
        return known->second;
    }

    std::shared_ptr<StrokeFont> loadStrokeFont(const std::string& file, StrokeSpacing spacing) const
    {
        for (const auto& folder : folders)
            if (auto font = StrokeFont::load(folder + '/' + file, spacing))
                return font;
        return StrokeFont::load(std::string(kHersheyFolder) + '/' + file, spacing);
    }

    std::shared_ptr<OutlineFont> outlineFont(const FontFile& file, double capHeight)
    {
        auto [known, isNew] = outlines.try_emplace({file.path, file.faceIndex, capHeight});
        if (isNew)
            known->second = OutlineFont::load(file.path, file.faceIndex, capHeight);
        return known->second;
    }

    Found findStrokes(const StrokeSet& set, FontMatch match) { return {strokeFont(set), std::string(set.name), match}; }

    Found findOutlines(const FontRequest& request)
    {
        const std::string file = baseName(request.font);
        if (const auto own = systemFonts().byFileName(file))
            if (auto source = outlineFont(*own, 0))
                return {std::move(source), own->family, FontMatch::Exact};

        const auto asked = typefaceOf(request);
        const auto near = systemFonts().nearest(asked.family, asked.bold, asked.italic);
        if (!near)
            return {};
        return found(*near, asked.family);
    }

    // What stands in for a font of unknown widths is scaled as though Arial had been asked for, since that is what
    // most outline fonts in drawings are like.
    Found found(const FontFile& file, const std::string& askedFamily)
    {
        const FontMatch match = baseName(file.family) == baseName(askedFamily) ? FontMatch::Exact
                                : sameWidths(askedFamily, file.family)         ? FontMatch::SameWidths
                                                                               : FontMatch::Substitute;
        const std::string model = match == FontMatch::Substitute ? "Arial" : askedFamily;
        const bool scaled = match != FontMatch::Exact && sameWidths(model, file.family);
        return {outlineFont(file, scaled ? publishedCapHeight(model) : 0), file.family, match};
    }

    Found find(const FontRequest& request)
    {
        const std::string base = baseName(request.font);
        if (const StrokeSet* set = strokeSet(stem(base)))
            return findStrokes(*set, set->exact ? FontMatch::Exact : FontMatch::Substitute);
        if (base.empty())
            return findStrokes(defaultStrokeSet(), FontMatch::Exact);
        if (hasEnding(base, ".shx"))
            return findStrokes(defaultStrokeSet(), FontMatch::Substitute);
        return findOutlines(request);
    }

    Entry& add(const FontRequest& request)
    {
        Found found = find(request);
        if (!found.source)
            found = findStrokes(defaultStrokeSet(), FontMatch::Substitute);
        if (!found.source)
            if (const auto any = systemFonts().nearest("Arial", request.bold, request.italic))
                found = {outlineFont(*any, 0), any->family, FontMatch::Substitute};

        const Font& font = sharedFont(found.source, bigFont(request));
        auto& entry = *entries.emplace_back(new Entry{request, found.taken, found.match, font});
        byRequest.emplace(request, &entry);
        return entry;
    }

    const Font& sharedFont(const std::shared_ptr<GlyphSource>& main, const std::shared_ptr<GlyphSource>& big)
    {
        auto& font = fonts[{main.get(), big.get()}];
        if (!font) {
            std::vector<std::shared_ptr<GlyphSource>> sources{main, big};
            std::erase(sources, nullptr);
            font = std::make_unique<Font>(std::move(sources), systemSource);
        }
        return *font;
    }

    // Big fonts of strokes are not to be had; what they hold comes from the fonts of the system, glyph by glyph.
    std::shared_ptr<GlyphSource> bigFont(const FontRequest& request)
    {
        const std::string base = baseName(request.bigFont);
        if (base.empty() || hasEnding(base, ".shx") || (!hasEnding(base, ".ttf") && !hasEnding(base, ".ttc")))
            return nullptr;
        FontRequest big;
        big.font = request.bigFont;
        return findOutlines(big).source;
    }
};

// The state is kept to the end of the process, so that fonts may be used while the program winds up.
FontLibrary::FontLibrary() : m_state(std::make_unique<State>())
{
    if (const std::string folder = folderOfThisLibrary(); !folder.empty())
        m_state->folders.push_back(folder + "/Support/fonts");
}

FontLibrary& FontLibrary::instance()
{
    static FontLibrary& library = *new FontLibrary;
    return library;
}

const Font& FontLibrary::font(const FontRequest& request)
{
    const auto known = m_state->byRequest.find(request);
    return known == m_state->byRequest.end() ? m_state->add(request).font : known->second->font;
}

std::vector<FontUse> FontLibrary::report() const
{
    std::vector<FontUse> uses;
    for (const auto& entry : m_state->entries)
        uses.push_back(
            {entry->asked, entry->taken, entry->match, entry->font.borrowedGlyphs(), entry->font.missingGlyphs()});
    return uses;
}

void FontLibrary::setFolders(std::vector<std::string> folders)
{
    m_state->folders = std::move(folders);
    m_state->foldersGivenToSystem = false;
}

}  // namespace vktext
