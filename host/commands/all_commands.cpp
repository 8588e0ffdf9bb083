#include "host/commands/all_commands.h"

#include "host/commands/families.h"

namespace vk::commands {

void registerHostCommands()
{
    static bool done = false;
    if (std::exchange(done, true))
        return;
    for (const auto& family : {variableCommands(),
                               undoCommands(),
                               drawCommands(),
                               polylineCommands(),
                               arcCommands(),
                               textCommands(),
                               modifyCommands(),
                               transformCommands(),
                               offsetCommands(),
                               trimCommands(),
                               breakCommands(),
                               filletCommands(),
                               chamferCommands(),
                               joinCommands(),
                               lengthenCommands(),
                               stretchCommands(),
                               divideCommands(),
                               alignCommands(),
                               arrayCommands(),
                               layerCommands(),
                               styleCommands(),
                               inquiryCommands(),
                               listCommands(),
                               sessionCommands(),
                               fileCommands(),
                               ucsCommands(),
                               zoomCommands(),
                               dynamicViewCommands(),
                               viewCommands(),
                               spaceCommands(),
                               layoutCommands(),
                               viewportCommands(),
                               viewportLayerCommands(),
                               modeCommands(),
                               blockCommands(),
                               insertCommands(),
                               wblockCommands(),
                               xrefCommands(),
                               purgeCommands(),
                               groupCommands(),
                               wipeoutCommands(),
                               rectangleCommands(),
                               curveCommands(),
                               propertyCommands(),
                               linetypeCommands(),
                               mtextCommands(),
                               areaCommands(),
                               faceCommands(),
                               splineCommands(),
                               statusCommands(),
                               attributeCommands(),
                               linearDimensionCommands(),
                               roundDimensionCommands(),
                               dimensionRowCommands(),
                               dimensionModeCommands(),
                               quickDimensionCommands(),
                               dimensionSpacingCommands(),
                               leaderCommands(),
                               dimensionEditCommands(),
                               dimensionStyleCommands()})
        edit::CommandTable::instance().addHostCommands(family);
}

}
