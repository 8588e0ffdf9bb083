// Drawings in files as modules read and save them.
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/io/drawing_file.h"

namespace {

Vcad::ErrorStatus statusOf(FileStatus status)
{
    switch (status) {
    case FileStatus::Ok:
        return Vcad::eOk;
    case FileStatus::NotFound:
        return Vcad::eFileNotFound;
    case FileStatus::Unreadable:
        return Vcad::eFileUnreadable;
    case FileStatus::Unsupported:
        return Vcad::eUnsupportedVersion;
    case FileStatus::NotSaved:
        return Vcad::eFileAccess;
    case FileStatus::Refused:
    case FileStatus::Cancelled:
        break;
    }
    return Vcad::eNotApplicable;
}

}

Vcad::ErrorStatus VcDbDatabase::readDwgFile(const wchar_t* file, int, bool, const wchar_t*)
{
    if (!file || !*file)
        return Vcad::eInvalidInput;
    if (m_core->slotCount() > 1)
        return Vcad::eNotApplicable;
    return statusOf(readDrawing(*this, wideToUtf8(file)).status);
}

Vcad::ErrorStatus VcDbDatabase::saveAs(const wchar_t* file)
{
    if (!file || !*file)
        return Vcad::eInvalidInput;
    return statusOf(writeDrawing(*this, wideToUtf8(file)).status);
}
