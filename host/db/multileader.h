// Multileaders: leaders with several lines to one text or one block. Their groups are kept as they came (VcDbKeptEntity);
// what is seen stands in a context that holds the text or the block, and the lines of each leader.
#pragma once

#include "sdk/vcdb_entity.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class DatabaseCore;
class VcDbBlockReference;
class VcDbKeptEntity;
class VcDbMText;

namespace vk::db {

struct LeaderOfMany {
    VcGePoint3d landing;
    VcGeVector3d dogleg;
    double doglegLength = 0;
    bool hasLanding = false, hasDogleg = false;
    std::vector<std::vector<VcGePoint3d>> lines;  // from the arrow on
};

struct MultiLeader {
    enum LineKind { kNoLines = 0, kStraight = 1, kSplined = 2 };

    std::string text;
    VcGePoint3d textAt, blockAt;
    VcGeVector3d normal{0, 0, 1}, direction{1, 0, 0}, blockNormal{0, 0, 1}, blockScale{1, 1, 1};
    double textHeight = 1, arrowSize = 0, width = 0, spacing = 1, blockRotation = 0, fillScale = 0;
    int alignment = 1;  // left, middle, right
    int lineKind = kStraight;
    struct Attribute {
        VcDbObjectId definition;
        std::string text;
    };
    std::vector<Attribute> attributes;  // of the block
    bool hasText = false, hasBlock = false, exactSpacing = false, isFilled = false, fillsLikeWindow = false;
    // As colourOfPacked takes them.
    std::int64_t textColour = 0, lineColour = 0, blockColour = 0, fillColour = 0;
    std::optional<std::int16_t> lineWeight;
    VcDbObjectId textStyle, block, arrow, linetype;
    std::vector<LeaderOfMany> leaders;
};

bool isMultiLeader(const VcDbKeptEntity& entity);
MultiLeader readMultiLeader(const VcDbEntity& entity, const DatabaseCore& db);

// Null where it has none.
std::unique_ptr<VcDbMText> textOf(const MultiLeader& leader, const DatabaseCore& db);
std::unique_ptr<VcDbBlockReference> blockOf(const MultiLeader& leader, const DatabaseCore& db);
// All that is seen of it: arrows, lines, landings, the text or the block with its attributes.
std::vector<std::unique_ptr<VcDbEntity>> multiLeaderPieces(const VcDbKeptEntity& entity);

}  // namespace vk::db
