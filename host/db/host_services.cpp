#include "host/db/host_services.h"

#include "host/db/database.h"

VcDbHostApplicationServices::~VcDbHostApplicationServices() = default;
VcApDocManager::~VcApDocManager() = default;

namespace {

// What there is before an editor puts its own services in place: a working database and nothing else.
class BareServices : public VcDbHostApplicationServices {
public:
    VcDbDatabase* workingDatabase() const override { return m_database; }
    void setWorkingDatabase(VcDbDatabase* database) override { m_database = database; }
    const wchar_t* getMachineRegistryProductRootKey() const override { return L"Software\\vekad"; }
    const wchar_t* getUserRegistryProductRootKey() const override { return L"Software\\vekad"; }
    const wchar_t* getInstallFolder() const override { return L""; }

private:
    VcDbDatabase* m_database = nullptr;
};

BareServices s_bare;
VcDbHostApplicationServices* s_services = &s_bare;

}

VcDbHostApplicationServices* vcdbHostApplicationServices() { return s_services; }
void vcdbSetHostApplicationServices(VcDbHostApplicationServices* services)
{
    s_services = services ? services : &s_bare;
}

DatabaseCore* workingCore()
{
    VcDbDatabase* database = s_services->workingDatabase();
    return database ? &database->core() : nullptr;
}
