// -SCALELISTEDIT: the list of scales at the command line. Each answer changes the drawing at once.
#include "core/ExtendUtils.h"
#include "core/Handlers.h"
#include "scale/ScaleList.h"
#include "scale/ScaleText.h"
#include "vced.h"
#include "vcut.h"

#include <cwchar>

namespace {

constexpr std::size_t kBuffer = 512;
constexpr unsigned kLongestName = 64;

enum class Then { AskAgain, End };

int askText(const CStdStrW& prompt, VcString& text)
{
    wchar_t buffer[kBuffer] = {};
    const int status = vcedGetString(1, prompt, buffer);
    text = buffer;
    return status;
}

// The status of the question; what was answered where it is RTNORM.
int askKeyword(int keywordsId, const CStdStrW& prompt, VcString& reply)
{
    wchar_t buffer[kBuffer] = {};
    vcedInitGet(0, StringFromID(keywordsId));
    const int status = vcedGetKword(prompt, buffer);
    reply = buffer;
    return status;
}

bool isYes(const VcString& reply) { return reply.compareNoCase(L"Yes") == 0; }

void print(int textId) { vcutPrintf(L"%ls", StringFromID(textId)); }

void printAbout(int textId, const VcString& name) { vcutPrintf(L"%ls\n", vkFormat(StringFromID(textId), name)); }

int getScale(double& paper, double& drawing)
{
    for (;;) {
        VcString text;
        const int status = askText(StringFromID(6709), text);
        if (status == RTCAN || (status == RTNORM && isValidScale(text, paper, drawing)))
            return status;
        print(6710);
    }
}

int indexOf(const ScaleList& list, const VcString& name)
{
    for (int i = 0; i < list.length(); ++i)
        if (list[i].name.compareNoCase(name) == 0)
            return i;
    return -1;
}

void listScale(ScaleList list)
{
    print(6716);
    print(6717);
    for (int i = 0; i < list.length(); ++i) {
        const ScaleListInfo& row = list[i];
        VcString number;
        number.format(L"%d", i + 1);
        const std::wstring title = vkFormat(L"%ls:%ls", number, row.name);
        vcutPrintf(L"\n%-25ls%-13ls%-14ls%ls", title, unitsText(row.paperUnits), unitsText(row.drawingUnits),
                   unitsText(row.paperUnits / row.drawingUnits));
    }
}

// Blanks count for the name's length and belong to it. False when the person cancels.
bool askNewName(VcString& name)
{
    for (;;) {
        const int status = askText(StringFromID(6704), name);
        if (status == RTCAN)
            return false;
        VcString trimmed = name;
        TrimLeft(trimmed);
        TrimRight(trimmed);
        if (status != RTNORM || trimmed.isEmpty())
            print(6705);
        else if (name.length() > kLongestName)
            print(6706);
        else
            return true;
    }
}

// The row keeps what it had, so that the table tells the new units from the next run of the command on.
void changeUnits(const ScaleListInfo& row, const VcString& typedName)
{
    CStdStrW prompt;
    prompt.Format(L"%ls %ls", typedName, StringFromID(6707));
    VcString reply;
    double paper = 0, drawing = 0;
    if (askKeyword(6708, prompt, reply) != RTNORM || !isYes(reply) || getScale(paper, drawing) != RTNORM)
        return;
    VcDbScale* scale = nullptr;
    if (vcdbOpenObject(scale, row.id, VcDb::kForWrite) != Vcad::eOk)
        return;
    scale->setPaperUnits(paper);
    scale->setDrawingUnits(drawing);
    scale->close();
}

void appendScale(ScaleList& list, const VcString& name)
{
    ScaleListInfo row;
    row.name = name;
    if (getScale(row.paperUnits, row.drawingUnits) != RTNORM)
        return;
    list.append(row);
    addNewScale(list);
}

Then addScale(ScaleList& list)
{
    VcString name;
    if (!askNewName(name))
        return Then::AskAgain;
    if (const int known = indexOf(list, name); known >= 0)
        changeUnits(list[known], name);
    else
        appendScale(list, name);
    return Then::AskAgain;
}

// Whether the entry of the row could be taken out of the drawing.
bool removeScale(VcDbDictionary* dictionary, const ScaleListInfo& row)
{
    return dictionary && dictionary->remove(row.id) == Vcad::eOk;
}

void deleteAllUnused(ScaleList& list)
{
    ScaleNames used;
    getUsedScaleList(used);
    const OpenScaleList dictionary(createOrGetScaleListDict());
    ScaleList kept;
    for (const ScaleListInfo& row : list)
        if (isFullSize(row.name) || isUsed(used, row.name) || !removeScale(dictionary.get(), row))
            kept.append(row);
    list = kept;
}

void deleteNamed(ScaleList& list, const VcString& name)
{
    const int index = indexOf(list, name);
    ScaleNames used;
    getUsedScaleList(used);
    if (index < 0)
        return printAbout(6715, name);
    if (isUsed(used, name))
        return printAbout(6718, name);
    const OpenScaleList dictionary(createOrGetScaleListDict());
    if (removeScale(dictionary.get(), list[index]))
        list.removeAt(index);
}

Then deleteScale(ScaleList& list)
{
    VcString name;
    if (askText(StringFromID(6714), name) != RTNORM)
        return Then::AskAgain;
    if (isFullSize(name)) {
        printAbout(6718, name);
        return Then::End;
    }
    if (name == L"*")
        deleteAllUnused(list);
    else
        deleteNamed(list, name);
    return Then::AskAgain;
}

Then reset(ScaleList& list)
{
    VcString reply;
    if (askKeyword(6708, StringFromID(6711), reply) != RTNORM)
        return Then::AskAgain;
    if (isYes(reply))
        resetScaleList(list);
    print(isYes(reply) ? 6712 : 6713);
    return Then::AskAgain;
}

Then showList(ScaleList& list)
{
    listScale(list);
    return Then::AskAgain;
}

struct Option {
    const wchar_t* keyword;
    Then (*run)(ScaleList& list);
};

constexpr Option kOptions[] = {
    {L"?", &showList},
    {L"Add", &addScale},
    {L"Delete", &deleteScale},
    {L"Reset", &reset},
    {L"Exit", [](ScaleList&) { return Then::End; }},
};

Then runOption(ScaleList& scales)
{
    VcString reply;
    const int status = askKeyword(6702, StringFromID(6701), reply);
    if (status == RTCAN)
        return Then::End;
    if (status == RTNONE)
        reply = L"Add";
    else if (status != RTNORM)
        return Then::AskAgain;
    for (const Option& option : kOptions)
        if (reply.compareNoCase(option.keyword) == 0)
            return option.run(scales);
    return Then::AskAgain;
}

}  // namespace

void cmd_scaleListEditCli()
{
    CVcModuleResourceOverride resources(hLibModule);
    ScaleList scales;
    getScaleListInfo(scales);
    while (runOption(scales) == Then::AskAgain) {
    }
}
