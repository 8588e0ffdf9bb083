// The families of host commands; each lists its entries.
#pragma once

#include "host/edit/command.h"

#include <span>

namespace vk::commands {

using edit::HostCommand;

std::span<const HostCommand> variableCommands();
std::span<const HostCommand> undoCommands();
std::span<const HostCommand> drawCommands();
std::span<const HostCommand> polylineCommands();
std::span<const HostCommand> arcCommands();
std::span<const HostCommand> textCommands();
std::span<const HostCommand> modifyCommands();
std::span<const HostCommand> transformCommands();
std::span<const HostCommand> offsetCommands();
std::span<const HostCommand> trimCommands();
std::span<const HostCommand> breakCommands();
std::span<const HostCommand> filletCommands();
std::span<const HostCommand> chamferCommands();
std::span<const HostCommand> joinCommands();
std::span<const HostCommand> lengthenCommands();
std::span<const HostCommand> stretchCommands();
std::span<const HostCommand> divideCommands();
std::span<const HostCommand> alignCommands();
std::span<const HostCommand> arrayCommands();
std::span<const HostCommand> layerCommands();
std::span<const HostCommand> styleCommands();
std::span<const HostCommand> inquiryCommands();
std::span<const HostCommand> listCommands();
std::span<const HostCommand> linearDimensionCommands();
std::span<const HostCommand> roundDimensionCommands();
std::span<const HostCommand> dimensionRowCommands();
std::span<const HostCommand> dimensionModeCommands();
std::span<const HostCommand> quickDimensionCommands();
std::span<const HostCommand> dimensionSpacingCommands();
std::span<const HostCommand> leaderCommands();
std::span<const HostCommand> dimensionEditCommands();
std::span<const HostCommand> dimensionStyleCommands();
std::span<const HostCommand> sessionCommands();
std::span<const HostCommand> fileCommands();
std::span<const HostCommand> ucsCommands();
std::span<const HostCommand> zoomCommands();
std::span<const HostCommand> dynamicViewCommands();
std::span<const HostCommand> viewCommands();
std::span<const HostCommand> spaceCommands();
std::span<const HostCommand> layoutCommands();
std::span<const HostCommand> viewportCommands();
std::span<const HostCommand> viewportLayerCommands();
std::span<const HostCommand> modeCommands();
std::span<const HostCommand> blockCommands();
std::span<const HostCommand> insertCommands();
std::span<const HostCommand> wblockCommands();
std::span<const HostCommand> xrefCommands();
std::span<const HostCommand> purgeCommands();
std::span<const HostCommand> groupCommands();
std::span<const HostCommand> wipeoutCommands();
std::span<const HostCommand> rectangleCommands();
std::span<const HostCommand> curveCommands();
std::span<const HostCommand> propertyCommands();
std::span<const HostCommand> linetypeCommands();
std::span<const HostCommand> mtextCommands();
std::span<const HostCommand> areaCommands();
std::span<const HostCommand> faceCommands();
std::span<const HostCommand> splineCommands();
std::span<const HostCommand> statusCommands();
std::span<const HostCommand> attributeCommands();

}  // namespace vk::commands
