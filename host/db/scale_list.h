// The drawing's list of annotation scales, as the host reads it. Whoever writes the list anew, as modules do for every
// scale that they add, leaves references to the scales that stood in it before; these mean the new scale of the same name.
#pragma once

#include "host/base/api.h"

#include <string>
#include <string_view>

class DatabaseCore;
class VcDbDictionary;
class VcDbScale;
class VcDbViewport;

// Null when the drawing has none.
VKHOST_API VcDbDictionary* scaleListOf(const DatabaseCore& db);
// Without regard to case; null when the list has no such scale.
VKHOST_API VcDbScale* scaleNamed(const DatabaseCore& db, std::string_view name);
// The scale itself while the list holds it, else the one of its name that the list holds; null without one.
VKHOST_API VcDbScale* listedScale(const DatabaseCore& db, const VcDbScale& scale);

// Empty when the viewport names none.
VKHOST_API std::string annotationScaleOf(const VcDbViewport& viewport);
// Makes the viewport name a scale of the list, whether or not it has named one before.
VKHOST_API bool assignAnnotationScale(VcDbViewport& viewport, const VcDbScale& scale);
