#include "text/TextSelection.h"

#include "core/ExtendUtils.h"
#include "vcdb_chains.h"
#include "vcdb_text.h"
#include "vced.h"
#include "vcut.h"

namespace {

constexpr int kRemovePrompt = 3548;

resbuf* filterChain(TextFilter filter)
{
    switch (filter) {
    case TextFilter::TextOrMText:
        return vcutBuildList(-4, L"<OR", RTDXF0, L"TEXT", RTDXF0, L"MTEXT", -4, L"OR>", RTNONE);
    case TextFilter::TextOnly:
        return vcutBuildList(RTDXF0, L"TEXT", RTNONE);
    case TextFilter::MTextOnly:
        return vcutBuildList(RTDXF0, L"MTEXT", RTNONE);
    }
    return nullptr;
}

}  // namespace

int selectTexts(int promptId, TextFilter filter, vds_name set)
{
    const CStdStrW select = StringFromID(promptId);
    const CStdStrW remove = StringFromID(kRemovePrompt);
    const wchar_t* prompts[] = {select, remove};
    resbuf* chain = filterChain(filter);
    const int status = vcedSSGet(L":$", prompts, nullptr, chain, set);
    vcutRelRb(chain);
    return status;
}

void forEachMember(const vds_name set, const std::function<void(vds_name)>& action)
{
    int length = 0;
    vcedSSLength(set, &length);
    for (int i = 0; i < length; ++i) {
        vds_name name = {};
        if (vcedSSName(set, i, name) == RTNORM)
            action(name);
    }
}

void forEachTextForWrite(const vds_name set, const std::function<void(VcDbText&)>& action)
{
    forEachMember(set, [&](vds_name name) {
        VcDbObjectId id;
        VcDbObject* object = nullptr;
        if (vcdbGetObjectId(id, name) != Vcad::eOk || vcdbOpenVcDbObject(object, id, VcDb::kForWrite) != Vcad::eOk)
            return;
        if (VcDbText* text = VcDbText::cast(object))
            action(*text);
        object->close();
    });
}

PickedText inspectPickedText(const vds_name name)
{
    VcDbObjectId id;
    VcDbObject* object = nullptr;
    if (vcdbGetObjectId(id, name) != Vcad::eOk || vcdbOpenVcDbObject(object, id, VcDb::kForRead) != Vcad::eOk)
        return PickedText::Unreadable;
    const bool isText = object->isKindOf(VcDbMText::desc()) || object->isKindOf(VcDbText::desc());
    const bool isAttribute =
        object->isKindOf(VcDbAttributeDefinition::desc()) || object->isKindOf(VcDbAttribute::desc());
    object->close();
    return isText && !isAttribute ? PickedText::Good : PickedText::WrongType;
}
