// The editor: prompts, selection, system variables, commands.
//
// Results are RTNORM, RTNONE, RTERROR, RTCAN, RTKWORD or REJ codes (vkdefs.h). Functions that fill an argument write
// nothing when they fail. Prompts may be null.
#pragma once

#include "resbuf.h"
#include "vcdb_object.h"
#include "vcge.h"
#include "vcrx.h"

class VcDbAbstractViewTableRecord;
class VcDbViewTableRecord;
class VcDbViewport;

extern "C" {

// Questions. Angles are radians, points are in the current UCS.
VK_SDK int vcedInitGet(int bits, const wchar_t* keywords);
VK_SDK int vcedGetPoint(const vds_point base, const wchar_t* prompt, vds_point pointOut);
VK_SDK int vcedGetCorner(const vds_point base, const wchar_t* prompt, vds_point pointOut);
VK_SDK int vcedGetDist(const vds_point base, const wchar_t* prompt, double* distanceOut);
VK_SDK int vcedGetAngle(const vds_point base, const wchar_t* prompt, double* radiansOut);
VK_SDK int vcedGetOrient(const vds_point base, const wchar_t* prompt, double* radiansOut);
VK_SDK int vcedGetReal(const wchar_t* prompt, double* valueOut);
VK_SDK int vcedGetInt(const wchar_t* prompt, int* valueOut);
// The buffer holds 512 characters with its end.
VK_SDK int vcedGetKword(const wchar_t* prompt, wchar_t* keywordOut);
// Up to 511 characters and their end; with spacesAllowed only Enter ends it.
VK_SDK int vcedGetString(int spacesAllowed, const wchar_t* prompt, wchar_t* textOut);
// The keyword, in its global form, or the arbitrary text that answered the last question. 512 characters.
VK_SDK int vcedGetInput(wchar_t* textOut);
VK_SDK int vcedEntSel(const wchar_t* prompt, vds_name nameOut, vds_point pointOut);
// pickFlag: the point is given in pointOut and no question is asked. The matrix goes from the definition's system to the world.
// The chain of containers belongs to the caller: innermost first.
VK_SDK int vcedNEntSelP(const wchar_t* prompt, vds_name nameOut, vds_point pointOut, int pickFlag, vds_matrix matrixOut,
                        resbuf** containersOut);
// 1 after Esc or Ctrl-C since the command began.
VK_SDK int vcedUsrBrk();
typedef int (*VcEdDragSampler)(vds_point point, vds_matrix matrix);
VK_SDK int vcedDragGen(const vds_name set, const wchar_t* prompt, int cursor, VcEdDragSampler sampler,
                       vds_point pointOut);

// Output.
VK_SDK int vcedPrompt(const wchar_t* text);
VK_SDK int vcedTextScr();
VK_SDK int vcedGraphScr();
VK_SDK int vcedRedraw(const vds_name name, int mode);
VK_SDK int vcedGrDraw(const vds_point from, const vds_point to, int colour, int highlight);
VK_SDK int vcedGrVecs(const resbuf* vectors, const vds_matrix matrix);
VK_SDK int vcedTextBox(const resbuf* chain, vds_point lowerLeftOut, vds_point upperRightOut);
VK_SDK void vcedAlert(const wchar_t* text);

// Selection sets; whoever obtained a set frees it.
VK_SDK int vcedSSGet(const wchar_t* mode, const void* first, const void* second, const resbuf* filter, vds_name setOut);
VK_SDK int vcedSSLength(const vds_name set, int* lengthOut);
VK_SDK int vcedSSName(const vds_name set, int index, vds_name nameOut);
// A null set makes a new one; a null name makes it empty. setOut may be the set itself.
VK_SDK int vcedSSAdd(const vds_name name, const vds_name set, vds_name setOut);
VK_SDK int vcedSSDel(const vds_name name, const vds_name set);
VK_SDK int vcedSSMemb(const vds_name name, const vds_name set);
VK_SDK int vcedSSFree(const vds_name set);
VK_SDK int vcedSSSetFirst(const vds_name set, const vds_name nested);
VK_SDK int vcedSSGetFirst(resbuf** gripSet, resbuf** pickSet);
VK_SDK int vcedXformSS(const vds_name set, const vds_matrix matrix);
// Callbacks for modes ":K" and ":?" take the keyword or text typed and give a chain of a new mode, or null to go on.
typedef resbuf* (*VcEdSSCallback)(const wchar_t* text);
VK_SDK int vcedSSSetKwordCallbackPtr(VcEdSSCallback callback);
VK_SDK int vcedSSSetOtherCallbackPtr(VcEdSSCallback callback);

// System variables. A string value belongs to the caller (vcad_free).
VK_SDK int vcedGetVar(const wchar_t* name, resbuf* valueOut);
VK_SDK int vcedSetVar(const wchar_t* name, const resbuf* value);
VK_SDK int vcedGetEnv(const wchar_t* name, wchar_t* valueOut);
VK_SDK int vcedSetEnv(const wchar_t* name, const wchar_t* value);
VK_SDK int vcedFindFile(const wchar_t* name, wchar_t* pathOut, std::size_t size = 1024);

// Runs a command within the current one; pairs of code and value ended by RTNONE. RTSTR "" is Enter, "\\" asks the person.
VK_SDK int vcedCommand(int firstCode, ...);
VK_SDK int vcedCmd(const resbuf* chain);

// Lisp functions of modules.
VK_SDK int vcedDefunEx(const wchar_t* name, const wchar_t* localName, int code);
VK_SDK int vcedUndef(const wchar_t* name, int code);
VK_SDK int vcedGetFunCode();
VK_SDK resbuf* vcedGetArgs();
VK_SDK int vcedRetInt(int value);
VK_SDK int vcedRetReal(double value);
VK_SDK int vcedRetStr(const wchar_t* value);
VK_SDK int vcedRetPoint(const vds_point value);
VK_SDK int vcedRetName(const vds_name name, int type);
VK_SDK int vcedRetList(const resbuf* chain);
VK_SDK int vcedRetVal(const resbuf* value);
VK_SDK int vcedRetNil();
VK_SDK int vcedRetT();
VK_SDK int vcedRetVoid();
VK_SDK int vcdbFail(const wchar_t* text);

// Coordinates: codes in from and to are RTSHORT 0 world, 1 UCS, 2 display, 3 paper display, or an entity name or a normal (RT3DPOINT).
VK_SDK int vcedTrans(const vds_point point, const resbuf* from, const resbuf* to, int displacement,
                     vds_point resultOut);

VK_SDK int vcedMspace();
VK_SDK int vcedPspace();

}  // extern "C"

VK_SDK VcDbObjectId vcedGetCurViewportObjectId();
VK_SDK Vcad::ErrorStatus vcedSetCurrentView(VcDbViewTableRecord* record, VcDbViewport* viewport);
// Mode 3: the given objects go directly beneath the parent in the draw order; mode 1 directly above it.
VK_SDK Vcad::ErrorStatus vcedDrawOrderInherit(VcDbObjectId parent, const VcDbObjectIdArray& ids, int mode);

VK_SDK std::uint32_t vcedGetRGB(int colourIndex);
VK_SDK bool vcedSetColorDialog(int& colour, bool allowByLayer, int currentLayerColour);

// The command stack: groups of commands that modules register.
typedef void (*VcEdCommandFunction)();
class VcEdUIContext;
class VcEdCommand;

enum VcEdCommandFlags : int {
    VCED_CMD_MODAL = 0,
    VCED_CMD_TRANSPARENT = 1,
    VCED_CMD_USEPICKSET = 2,  // a set picked before the command stays available to it
    VCED_CMD_REDRAW = 4,
};

class VK_SDK VcEdCommandStack : public VcRxObject {
    VCRX_DECLARE(VcEdCommandStack)
public:
    virtual Vcad::ErrorStatus addCommand(const wchar_t* group, const wchar_t* globalName, const wchar_t* localName,
                                         int flags, VcEdCommandFunction handler, VcEdUIContext* context = nullptr,
                                         int functionCode = -1, void* resourceHandle = nullptr,
                                         VcEdCommand** commandOut = nullptr) = 0;
    virtual Vcad::ErrorStatus removeCommand(const wchar_t* group, const wchar_t* globalName) = 0;
    virtual Vcad::ErrorStatus removeGroup(const wchar_t* group) = 0;
};
