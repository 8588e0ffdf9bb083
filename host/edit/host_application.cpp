#include "host/edit/host_application.h"

#include "host/base/files.h"
#include "host/base/resources.h"
#include "host/base/settings.h"
#include "host/base/unicode.h"
#include "host/db/chain.h"
#include "host/db/database.h"
#include "host/edit/editor.h"
#include "host/edit/module_loader.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vcdb_text.h"
#include "sdk/vchost.h"

#include <cmath>

namespace vk::edit {

namespace {

class Services : public VcDbHostApplicationServices {
public:
    Services() : m_folder(utf8ToWide(hostFolder())) {}

    VcDbDatabase* workingDatabase() const override
    {
        if (m_other)
            return m_other;
        const Editor& ed = Editor::instance();
        return ed.hasDrawing() ? &ed.drawing() : nullptr;
    }
    void setWorkingDatabase(VcDbDatabase* database) override
    {
        const Editor& ed = Editor::instance();
        m_other = ed.hasDrawing() && database == &ed.drawing() ? nullptr : database;
    }
    const wchar_t* getMachineRegistryProductRootKey() const override { return productRootKey(); }
    const wchar_t* getUserRegistryProductRootKey() const override { return productRootKey(); }
    const wchar_t* getInstallFolder() const override { return m_folder.c_str(); }

private:
    std::wstring m_folder;
    VcDbDatabase* m_other = nullptr;  // a module works on a drawing of its own
};

class DocManager : public VcApDocManager {
public:
    void pushResourceHandle(void* handle) override { ::pushResourceHandle(handle); }
    void popResourceHandle() override { ::popResourceHandle(); }
};

// The X axis of the current UCS in the plane of an MTEXT, against that plane's own X axis.
double ucsAngle(const DatabaseCore& db, const VcDbObject& object)
{
    VcGeMatrix3d ucs;
    if (!vcdbUcsMatrix(ucs, &db.face()))
        return 0;
    const VcGeVector3d normal = static_cast<const VcDbMText&>(object).normal();
    const VcGeVector3d axis = VcGeMatrix3d::worldToPlane(normal) * (ucs * VcGeVector3d::xAxis());
    return std::atan2(axis.y, axis.x);
}

}

void startHostApplication()
{
    static Services services;
    vcdbSetHostApplicationServices(&services);
    setUcsAngleHook(&ucsAngle);
    ensureProfile("Default");
    ModuleLoader::prepareServices();
}

}

VcApDocManager* vcDocManagerPtr()
{
    static vk::edit::DocManager manager;
    return &manager;
}
