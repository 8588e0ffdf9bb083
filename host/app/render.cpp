#include "host/app/render.h"

#include "host/app/loading.h"
#include "host/app/paths.h"
#include "host/app/remarks.h"
#include "host/app/stopping.h"
#include "host/base/files.h"
#include "host/base/numbers.h"
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/layouts.h"
#include "host/render/picture.h"
#include "host/text/font_library.h"
#include "sdk/vcdb_layout.h"
#include "sdk/vcdb_tables.h"

#include <algorithm>
#include <charconv>
#include <fmt/format.h>

namespace vk::app {

namespace {

int refuse(const std::string& why)
{
    fmt::print(stderr, "vekad: {}\n", why);
    return kWrongUsage;
}

// Numbers parted by one character; nothing when they are not as many.
template <class T, std::size_t N>
std::optional<std::array<T, N>> numbersIn(std::string_view text, char separator)
{
    std::array<T, N> values{};
    const char *at = text.data(), *end = text.data() + text.size();
    for (std::size_t i = 0; i < N; ++i) {
        const auto [next, error] = std::from_chars(at, end, values[i]);
        if (error != std::errc() || (i + 1 < N ? next == end || *next != separator : next != end))
            return std::nullopt;
        at = next + 1;
    }
    return values;
}

std::string setWindow(render::PictureRequest& request, const std::string& text)
{
    const auto v = numbersIn<double, 4>(text, ',');
    if (!v)
        return fmt::format("a window is X1,Y1,X2,Y2, not {}", text);
    const auto [x1, y1, x2, y2] = *v;
    request.window = {{std::min(x1, x2), std::min(y1, y2)}, {std::max(x1, x2), std::max(y1, y2)}};
    if (!(request.window->width() > 0 && request.window->height() > 0 && request.window->width() < 1e100 &&
          request.window->height() < 1e100))
        return fmt::format("the window {} has no size", text);
    return {};
}

std::string setSize(render::PictureRequest& request, const std::string& text)
{
    constexpr int kLargest = 32767;
    const auto v = numbersIn<int, 2>(text, 'x');
    if (!v)
        return fmt::format("a size is WIDTHxHEIGHT in pixels, not {}", text);
    if ((*v)[0] < 1 || (*v)[1] < 1 || (*v)[0] > kLargest || (*v)[1] > kLargest)
        return fmt::format("a picture is from 1 to {} pixels wide and high, not {}", kLargest, text);
    request.size = {(*v)[0], (*v)[1]};
    return {};
}

// What is wrong with the command line, or nothing.
std::string readRequest(const RenderOptions& options, render::PictureRequest& request)
{
    const auto format = render::formatByEnding(options.out);
    if (!format)
        return fmt::format("{} is no picture: its name ends neither in .png nor .svg nor .pdf", options.out);
    request.format = *format;
    if (isSameFile(options.drawing, options.out))
        return fmt::format("{} would be overwritten; give another name", options.drawing);
    if (!options.background.empty()) {
        const auto colour = render::colourByName(options.background);
        if (!colour)
            return fmt::format("there is no colour {}; say #rrggbb, a name, transparent or a number from 1 to 255",
                               options.background);
        request.background = *colour;
    }
    std::string wrong = options.window.empty() ? std::string() : setWindow(request, options.window);
    if (wrong.empty() && !options.size.empty())
        wrong = setSize(request, options.size);
    return wrong;
}

void tellOmissions(const render::Omissions& omissions)
{
    for (const auto& [what, count] : omissions.counts())
        fmt::print(stderr, "vekad: not drawn: {} ({})\n", what, count);
}

bool isEmpty(const DatabaseCore& db, VcDbObjectId space)
{
    const auto* block = db.objectAs<VcDbBlockTableRecord>(space);
    return !block || std::none_of(block->memberSlots().begin(), block->memberSlots().end(), [&](std::uint32_t slot) {
        const VcDbObject* member = db.objectAt(slot);
        return member && !member->isErased();
    });
}

// A drawing may have everything on its sheets.
void tellSheets(const DatabaseCore& db)
{
    if (!isEmpty(db, db.modelSpace()))
        return;
    std::string sheets;
    for (const VcDbLayout* layout : layoutsByTab(db))
        if (!isModelLayout(db, *layout) && !isEmpty(db, layout->getBlockTableRecordId()))
            sheets += (sheets.empty() ? "" : ", ") + layout->nameUtf8();
    if (!sheets.empty())
        fmt::print(stderr, "vekad: the model is empty; --layout shows a sheet: {}\n", sheets);
}

// Fonts that were taken for others change how long texts are.
void tellFonts()
{
    for (const vktext::FontUse& use : vktext::FontLibrary::instance().report()) {
        if (use.match == vktext::FontMatch::Substitute)
            fmt::print(stderr, "vekad: font {}: {} taken instead; its texts may be longer or shorter\n", use.asked.font,
                       equalNoCase(use.asked.font, use.taken) ? "similar strokes" : use.taken);
        if (use.missingGlyphs > 0)
            fmt::print(stderr, "vekad: font {}: {} characters are in no font and drawn as boxes\n", use.asked.font,
                       use.missingGlyphs);
    }
}

}

int render(const RenderOptions& options)
{
    render::PictureRequest request;
    if (const std::string wrong = readRequest(options, request); !wrong.empty())
        return refuse(wrong);
    const InterruptGuard interrupts;
    Remarks remarks;
    Loaded loaded = load(options.drawing, options.recover, remarks);
    if (loaded.status != kDone)
        return loaded.status;
    loadReferences(*loaded.database, remarks);
    const DatabaseCore& db = loaded.database->core();
    const auto layout = render::findLayout(db, options.layout);
    if (!layout)
        return refuse(fmt::format("{} has no layout {}", options.drawing, options.layout));
    request.layout = *layout;
    const render::PictureResult picture = render::paintPicture(db, request);
    std::string error = picture.error;
    if (!error.empty() || !writeFileAtomically(options.out, picture.bytes, error)) {
        fmt::print(stderr, "vekad: {} could not be written: {}\n", options.out, error);
        return kNotSaved;
    }
    if (layout->isModel)
        tellSheets(db);
    tellOmissions(picture.omissions);
    tellFonts();
    return kDone;
}

}  // namespace vk::app
