// Entity data and chains of result buffers, as all commands read and change them.
//
// A chain that the host gave belongs to whoever got it. A function here that takes an entity name fetches and releases
// its own chain; one that takes a chain leaves it with the caller. In a chain the first node of a code counts.
//
// The families differ in what they return, and callers test for exactly that: found flags are 1 and 0, statuses are
// RTNORM and RTERROR.
#pragma once

#include "classlib_arrays.h"
#include "classlib_string.h"
#include "core/ModuleExport.h"
#include "resbuf.h"

class VcCmColor;

// Look-up. The chain may be null.
resbuf* dxf(resbuf* chain, short code);
resbuf* getResbuf(resbuf* chain, int code);
// 0, or -1 when there is no such node.
int vk_Associate(resbuf* chain, int code, resbuf** nodeOut);
bool chkrestype(const resbuf* node, int rbType);

// Checked getters: RTERROR when the group is missing or of another type.
int getrbstring(wchar_t* buffer, std::size_t size, resbuf* chain, short code);
int getrbshort(int* valueOut, resbuf* chain, short code);
int getrbreal(double* valueOut, resbuf* chain, short code);

// Unchecked, with a found flag.
int getrb_point(resbuf* chain, short code, vds_point pointOut);
int getrb_string(resbuf* chain, short code, wchar_t* buffer, std::size_t size);
int getrb_real(resbuf* chain, short code, double* valueOut);
// Stores 1 or 0; only the low byte of the value counts.
int setrb_int(resbuf* chain, short code, int value);
// The node takes over the string. The old one goes to oldOut, or is freed without it.
int setrb_string(resbuf* chain, short code, wchar_t* newString, wchar_t** oldOut);

// Unchecked, with a status.
int GetBufInt(resbuf* chain, int code, int& value);
int GetBufReal(resbuf* chain, int code, double& value);
int GetBufString(resbuf* chain, int code, wchar_t* buffer, std::size_t size);
int GetBufName(resbuf* chain, int code, vds_name name);
int SetBufInt(resbuf* chain, int code, int value);
int SetBufReal(resbuf* chain, int code, double value);
int SetBufString(resbuf* chain, int code, const wchar_t* text);
int SetBufPoint(resbuf* chain, int code, const vds_point point);

// Chains of entity names, as nested picks give them. RTERROR on a null chain.
int GetFirstNameInBuf(const resbuf* chain, vds_name name);
int GetLastNameInBuf(const resbuf* chain, vds_name name);
// A chain of one name leaves secondLast as it was.
int GetBufLast2Names(const resbuf* chain, vds_name last, vds_name secondLast);
// The reference is the first after the first whose block is an external reference; without one it stays as it was.
int GetBufFirstAndRefNames(const resbuf* chain, vds_name first, vds_name reference);

// One group of an entity. RTERROR only for an entity that cannot be read: a group that is missing leaves the output,
// in which the caller keeps a default, as it was.
int GetEntInt(const vds_name name, int code, int& value);
int GetEntReal(const vds_name name, int code, double& value);
int GetEntPoint(const vds_name name, int code, vds_point pointOut);
int GetEntString(const vds_name name, int code, wchar_t* buffer, std::size_t size);
int GetEntName(const vds_name name, int code, vds_name nameOut);
// Group 0, if there is a buffer for it.
int GetEntType(const vds_name name, wchar_t* buffer, std::size_t size);
// The kind of an entity as a number, 0 for one that has none.
int getEntType(const vds_name name);

int entity_data_int_set(short code, const vds_name name, int value);
int SetEntLayer(const vds_name name, const wchar_t* layer);
bool GetObjLayer(const vds_name name, CStdStrW& layer);

// Building chains. The kinds are "rint", "rreal", "rpoint", "rstring", "rlong" and "rlname".
resbuf* alloc_rb(short code, const wchar_t* kind, const void* value);
void appendRb(resbuf*& chain, resbuf* tail);
void append_rblist(resbuf*& chain, resbuf* tail);
resbuf* duplicateResbufNode(const resbuf* node);
void deleteResbufNode(resbuf*& chain, short code);
// Appends a vertex to the node and moves on to the new last node.
void LwplrbAddVertFromData(resbuf*& tail, const vds_point point, double startWidth, double endWidth, double bulge);

// Selection sets.
int ssaddss(const vds_name from, vds_name to);
// Adds what was made after the entity; a name of zeros takes everything.
int GetLastSel(const vds_name afterName, vds_name set);
void EmptyEntFromSS(const vds_name set);
void RedrawSel(const vds_name set, bool highlight);

// System variables and layers.
int get_acad_str_var(const wchar_t* name, wchar_t* buffer, std::size_t size);
int set_acad_str_var(const wchar_t* name, const wchar_t* value);
int set_acad_int_var(const wchar_t* name, int value);
int getCurLayer(wchar_t* buffer, std::size_t size);
int getCurTextStyle(wchar_t* buffer, std::size_t size);
// Thaws the layer, makes it where it is missing, and makes it current. The echo of commands is on afterwards.
int dsc_set_clayer(const wchar_t* name);
// Makes the layer and freezes it, with "0" current. The echo of commands is off afterwards.
VK_MODULE_EXPORT bool dsc_frz_layer(const wchar_t* name);
int createLayer(const wchar_t* name, int colour);
int createLayer(const wchar_t* name, int colour, const wchar_t* linetype);
int createLayer(CStdStrW name, int colour, CStdStrW linetype);
// A copy of the current layer under another name.
int CreateNewLayer(const wchar_t* name);
int vds_UpdateVkColorToResbufList(resbuf* chain, const VcCmColor& colour);

// Texts and names.
int strings_i_compare(const wchar_t* a, const wchar_t* b);
bool IsStringSelected(const wchar_t* text, const CStringArray& array);
bool IsAllNum(const wchar_t* text);
bool IsLegalName(const wchar_t* text);
// A width that is one of the standard line weights, as hundredths.
int MatchLineWidth(double width, int* hundredthsOut);

// The kind of value that a group code has, by two rules that differ.
int dxf2rbtype(int code);
int dxfCodeToDataType(int code);
