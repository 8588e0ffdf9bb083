// Entity data by chains of groups. A result is RTNORM, RTERROR or, where said, a chain or null.
#pragma once

#include "resbuf.h"
#include "vcdb_object.h"
#include "vcge.h"

extern "C" {

// The chain of an entity or of another object: -1 first, then its groups in the order of a file. Null for a name that is
// stale, foreign or of an erased object.
VK_SDK resbuf* vcdbEntGet(const vds_name name);
// With the extended data of the applications in the chain of names, which may hold wild-cards.
VK_SDK resbuf* vcdbEntGetX(const vds_name name, const resbuf* applications);
// Writes a chain back to the object that its group -1 names. What an entity's chain leaves out stays as it was; the groups of
// a table record become what the chain says. Refused on locked layers.
VK_SDK int vcdbEntMod(const resbuf* chain);
VK_SDK int vcdbEntUpd(const vds_name name);
// Makes an entity or a table record. POLYLINE or INSERT with attributes to SEQEND, and BLOCK to ENDBLK, are put
// together over several calls; null drops what is half built. RTKWORD is returned for the name of a block that is complete.
VK_SDK int vcdbEntMake(const resbuf* chain);
VK_SDK int vcdbEntMakeX(const resbuf* chain, vds_name nameOut);
// Erases the entity or, called again, brings it back.
VK_SDK int vcdbEntDel(const vds_name name);
VK_SDK int vcdbEntLast(vds_name nameOut);
// The next in the drawing; a null name starts from the first.
VK_SDK int vcdbEntNext(const vds_name name, vds_name nameOut);

VK_SDK int vcdbHandEnt(const wchar_t* handle, vds_name nameOut);
VK_SDK Vcad::ErrorStatus vcdbGetObjectId(VcDbObjectId& idOut, const vds_name name);
VK_SDK Vcad::ErrorStatus vcdbGetVdsName(vds_name nameOut, VcDbObjectId id);

// Table names are those of the drawing: LAYER, BLOCK, STYLE, DIMSTYLE, LTYPE, VIEW, VPORT, APPID, UCS.
VK_SDK resbuf* vcdbTblNext(const wchar_t* table, int rewind);
VK_SDK resbuf* vcdbTblSearch(const wchar_t* table, const wchar_t* name, int setNext);
VK_SDK int vcdbTblObjName(const wchar_t* table, const wchar_t* name, vds_name nameOut);

VK_SDK resbuf* vcdbDictSearch(const vds_name dictionary, const wchar_t* key, int setNext);
VK_SDK resbuf* vcdbDictNext(const vds_name dictionary, int rewind);
VK_SDK int vcdbNamedObjDict(vds_name nameOut);

VK_SDK int vcdbRegApp(const wchar_t* name);
// Bytes of extended data that the entity can still take, or that the chain needs.
VK_SDK int vcdbXdRoom(const vds_name name, long* sizeOut);
VK_SDK int vcdbXdSize(const resbuf* chain, long* sizeOut);

// Texts of numbers: unit -1 takes LUNITS or AUNITS, precision -1 LUPREC or AUPREC. The buffer holds 133 characters.
VK_SDK int vcdbRToS(double value, int unit, int precision, wchar_t* textOut);
VK_SDK int vcdbAngToS(double radians, int unit, int precision, wchar_t* textOut);
VK_SDK int vcdbDisToF(const wchar_t* text, int unit, double* valueOut);
VK_SDK int vcdbAngToF(const wchar_t* text, int unit, double* radiansOut);

}  // extern "C"

// The current UCS of a drawing as a matrix from UCS to world; true when it is not the world itself.
VK_SDK bool vcdbUcsMatrix(VcGeMatrix3d& matrixOut, VcDbDatabase* database = nullptr);
