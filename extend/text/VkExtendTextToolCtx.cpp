#include "text/VkExtendTextToolCtx.h"

#include "core/ExtendUtils.h"
#include "core/NotAvailable.h"
#include "core/PublicFunction.h"
#include "system.h"
#include "text/TextSelection.h"
#include "text/Underline.h"
#include "vcdb_chains.h"
#include "vcdb_text.h"
#include "vced.h"
#include "vcut.h"

CVkExtendTextToolCtx::CVkExtendTextToolCtx() = default;
CVkExtendTextToolCtx::~CVkExtendTextToolCtx() = default;

namespace {

constexpr int kWrongType = 2617;
constexpr int kHeightGroup = 40;
constexpr int kStyleGroup = 7;

void setHeight(const vds_name name, double height)
{
    VcDbObjectId id;
    VcDbObject* object = nullptr;
    if (vcdbGetObjectId(id, name) != Vcad::eOk || vcdbOpenVcDbObject(object, id, VcDb::kForWrite) != Vcad::eOk)
        return;
    if (VcDbMText* many = VcDbMText::cast(object))
        many->setTextHeight(height);
    else if (VcDbText* text = VcDbText::cast(object))
        text->setHeight(height);
    object->close();
}

CStdStrW styleOf(const vds_name name)
{
    CStdStrW style = L"Standard";
    resbuf* chain = vcdbEntGet(name);
    if (const resbuf* node = getResbuf(chain, kStyleGroup))
        style = node->resval.rstring;
    vcutRelRb(chain);
    return style;
}

void makeStyleCurrent(const CStdStrW& style)
{
    resbuf variable = {};
    variable.restype = RTSTR;
    vcutNewString(style, variable.resval.rstring);
    vcedSetVar(L"TEXTSTYLE", &variable);
    vkad_free(variable.resval.rstring);
}

void redraw()
{
    PrepareCmdEcho quiet;
    vcedCommand(RTSTR, L"_.REDRAW", RTNONE);
}

// Gives each text what the change makes of its string; a change that answers false leaves the text as it is.
int editTexts(const std::function<bool(CStdStrW&)>& change)
{
    vds_name set = {};
    const int status = selectTexts(2569, TextFilter::TextOnly, set);
    if (status != RTNORM)
        return status;
    forEachTextForWrite(set, [&](VcDbText& text) {
        wchar_t* handedOut = text.textString();
        CStdStrW string(handedOut);
        vcutDelString(handedOut);
        if (change(string))
            text.setTextString(string);
    });
    redraw();
    vcedSSFree(set);
    return status;
}

double heightOf(const vds_name name)
{
    double height = 0.0;
    GetEntReal(name, kHeightGroup, height);
    return height;
}

void copyHeight(const vds_name name, double height)
{
    resbuf* chain = vcdbEntGet(name);
    SetBufReal(chain, kHeightGroup, height);
    vcdbEntMod(chain);
    vcutRelRb(chain);
}

// Asks until TEXT or MTEXT is picked.
int pickHeightSource(vds_name source)
{
    const CStdStrW prompt = StringFromID(2577);
    for (;;) {
        vds_point at = {};
        const int status = vcedEntSel(prompt, source, at);
        if (status != RTNORM)
            return status;
        switch (inspectPickedText(source)) {
        case PickedText::Good:
            return RTNORM;
        case PickedText::WrongType:
            vcutPrintf(L"%s", StringFromID(kWrongType));
            break;
        case PickedText::Unreadable:
            break;
        }
    }
}

// The same, but a miss asks again.
int pickStyleSource(vds_name source)
{
    const CStdStrW prompt = StringFromID(2566);
    for (;;) {
        vds_point at = {};
        const int status = vcedEntSel(prompt, source, at);
        if (status == RTCAN || status == RTNONE)
            return status;
        if (status != RTNORM)
            continue;
        const PickedText picked = inspectPickedText(source);
        if (picked == PickedText::Good)
            return RTNORM;
        if (picked == PickedText::WrongType)
            vcutPrintf(L"%s", StringFromID(kWrongType));
    }
}

}  // namespace

int CVkExtendTextToolCtx::cmd_CHGTHEI()
{
    CVcModuleResourceOverride resources(hLibModule);
    vds_name set = {};
    int status = selectTexts(2566, TextFilter::TextOrMText, set);
    if (status != RTNORM)
        return status;
    constexpr int kNoZero = 2, kNoNegative = 4;
    vcedInitGet(kNoZero | kNoNegative, nullptr);
    double height = 0.0;
    status = vcedGetDist(nullptr, StringFromID(2567), &height);
    if (status == RTNORM)
        forEachMember(set, [height](vds_name name) { setHeight(name, height); });
    vcedSSFree(set);
    return status;
}

int CVkExtendTextToolCtx::cmd_CURSTYLE()
{
    CVcModuleResourceOverride resources(hLibModule);
    vds_name source = {};
    const int status = pickStyleSource(source);
    if (status != RTNORM)
        return status;
    const CStdStrW style = styleOf(source);
    makeStyleCurrent(style);
    vcutPrintf(StringFromID(2568), style);
    return status;
}

int CVkExtendTextToolCtx::cmd_TXTULINE()
{
    CVcModuleResourceOverride resources(hLibModule);
    return editTexts([](CStdStrW& text) {
        text = underlined(text);
        return true;
    });
}

int CVkExtendTextToolCtx::cmd_DELULINE()
{
    CVcModuleResourceOverride resources(hLibModule);
    return editTexts([](CStdStrW& text) {
        const bool wasUnderlined = countUnderlines(text) % 2 != 0;
        text = withoutUnderlines(text);
        return wasUnderlined;
    });
}

int CVkExtendTextToolCtx::cmd_MTEXP()
{
    CVcModuleResourceOverride resources(hLibModule);
    vds_name set = {};
    int status = selectTexts(2579, TextFilter::MTextOnly, set);
    if (status != RTNORM)
        return status;
    {
        PrepareCmdEcho quiet;
        status = vcedCommand(RTSTR, L"_.EXPLODE", RTPICKS, set, RTNONE);
    }
    vcutPrintf(L"%s", StringFromID(status == RTNORM ? 2580 : 2585));
    vcedSSFree(set);
    return status;
}

int CVkExtendTextToolCtx::cmd_MATHEI()
{
    constexpr int kHighlight = 3, kPlain = 4;
    CVcModuleResourceOverride resources(hLibModule);
    vds_name source = {};
    int status = pickHeightSource(source);
    if (status != RTNORM)
        return status;
    vcedRedraw(source, kHighlight);
    const double height = heightOf(source);
    vds_name targets = {};
    status = selectTexts(2578, TextFilter::TextOrMText, targets);
    if (status == RTNORM) {
        forEachMember(targets, [height](vds_name name) { copyHeight(name, height); });
        vcedSSFree(targets);
    }
    vcedRedraw(source, kPlain);
    return status;
}

int CVkExtendTextToolCtx::cmd_ARCTEXT() { return 1; }

int CVkExtendTextToolCtx::cmd_TEXTMASK() { return reportNotAvailable(L"TEXTMASK"); }
int CVkExtendTextToolCtx::cmd_TEXTUNMASK() { return reportNotAvailable(L"TEXTUNMASK"); }
int CVkExtendTextToolCtx::cmd_TXTALIGN() { return reportNotAvailable(L"TXTALIGN"); }
int CVkExtendTextToolCtx::cmd_TCOUNT() { return reportNotAvailable(L"TCOUNT"); }
int CVkExtendTextToolCtx::cmd_TCIRCLE() { return reportNotAvailable(L"TCIRCLE"); }
int CVkExtendTextToolCtx::cmd_TORIENT() { return reportNotAvailable(L"TORIENT"); }
int CVkExtendTextToolCtx::cmd_TJUST() { return reportNotAvailable(L"TJUST"); }
int CVkExtendTextToolCtx::cmd_TEXTFIT() { return reportNotAvailable(L"TextEdit"); }
