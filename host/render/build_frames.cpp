// Images, wipeouts, viewports and frames of other programs' objects; and what has nothing to be seen.
#include "host/base/files.h"
#include "host/db/database.h"
#include "host/render/build_parts.h"
#include "sdk/vcdb_images.h"
#include "sdk/vcdb_misc.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_viewport.h"

namespace vk::render {

namespace {

template <class T>
const T* rootEntry(const DatabaseCore& db, const char* name)
{
    const auto* root = db.liveAs<VcDbDictionary>(db.rootDictionary());
    return root ? db.liveAs<T>(root->find(name)) : nullptr;
}

std::uint32_t addOutline(ListBuilder& b, const VcDbRasterImage& image)
{
    std::vector<VcGePoint3d> corners;
    image.getVertices(corners);
    const std::uint32_t first = b.figureCount();
    b.polygon(corners);
    return first;
}

// As the drawing says it, beside the drawing, or by its name alone in the drawing's folder.
std::string imageFile(const DatabaseCore& db, const std::string& said)
{
    const std::string path = nativePath(said);
    if (fileExists(path))
        return path;
    const std::string folder(folderOf(db.origin.path));
    for (const std::string& name : {path, std::string(fileNameOf(path))})
        if (const auto found = findFileNoCase(folder.empty() ? "." : folder, name))
            return *found;
    return said;
}

void buildImage(const VcDbEntity& e, ListBuilder& b)
{
    const auto& image = static_cast<const VcDbRasterImage&>(e);
    if (!image.isSetDisplayOpt(VcDbRasterImage::kShow))
        return;
    Picture picture;
    const auto* definition = b.db().liveAs<VcDbRasterImageDef>(image.imageDefId());
    picture.file = definition ? imageFile(b.db(), definition->fileUtf8()) : std::string();
    VcGeVector3d u, v;
    image.getOrientation(picture.origin, u, v);
    picture.width = u * image.imageSize().x;
    picture.height = v * image.imageSize().y;
    picture.outline = addOutline(b, image);
    picture.transparent = image.isSetDisplayOpt(VcDbRasterImage::kTransparent);
    picture.brightness = image.brightness();
    picture.contrast = image.contrast();
    picture.fade = image.fade();
    const std::uint32_t outline = picture.outline;
    b.list().pictures.push_back(std::move(picture));
    b.item(Item::Image, 0, b.list().pictures.size() - 1);
    const auto* variables = rootEntry<VcDbRasterVariables>(b.db(), "ACAD_IMAGE_VARS");
    if (!variables || variables->imageFrame() != 0)
        b.item(Item::Stroke, 0, outline);
}

void buildWipeout(const VcDbEntity& e, ListBuilder& b)
{
    const std::uint32_t outline = addOutline(b, static_cast<const VcDbWipeout&>(e));
    b.mask(outline);
    const auto* variables = rootEntry<VcDbWipeoutVariables>(b.db(), "ACAD_WIPEOUT_VARS");
    if (variables && variables->showFrame() != 0)
        b.stroke(outline);
}

void buildViewport(const VcDbEntity& e, ListBuilder& b)
{
    const auto& viewport = static_cast<const VcDbViewport&>(e);
    if (viewport.number() == 1)
        return;
    b.list().windows.push_back({viewport.objectId()});
    b.item(Item::Window, 0, b.list().windows.size() - 1);
    if (viewport.isNonRectClipOn())
        return;  // the entity that clips it is its border
    const VcGePoint3d c = viewport.centerPoint();
    const VcGeVector3d right(viewport.width() / 2, 0, 0), up(0, viewport.height() / 2, 0);
    const std::uint32_t first = b.figureCount();
    b.polygon({c - right - up, c + right - up, c + right + up, c - right + up});
    b.stroke(first);
}

void buildOleFrame(const VcDbEntity& e, ListBuilder& b)
{
    const auto& frame = static_cast<const VcDbOle2Frame&>(e);
    const VcGePoint3d p = frame.upperLeft(), q = frame.lowerRight();
    const std::uint32_t first = b.figureCount();
    b.polygon({p, {q.x, p.y, p.z}, q, {p.x, q.y, q.z}});
    b.stroke(first);
    b.omit("contents of OLE2FRAME");
}

void buildNothing(const VcDbEntity&, ListBuilder&) {}

constexpr BuildEntry kBuilders[] = {
    {&VcDbWipeout::desc, buildWipeout},    {&VcDbRasterImage::desc, buildImage}, {&VcDbViewport::desc, buildViewport},
    {&VcDbOle2Frame::desc, buildOleFrame}, {&VcDbLight::desc, buildNothing},     {&VcDbSequenceEnd::desc, buildNothing},
    {&VcDbBlockBegin::desc, buildNothing}, {&VcDbBlockEnd::desc, buildNothing},  {&VcDbVertex::desc, buildNothing},
};

}

std::span<const BuildEntry> frameBuilders() { return kBuilders; }

}  // namespace vk::render
