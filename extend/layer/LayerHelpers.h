// What the layer tools share, beside the layer functions of core/PublicFunction.h.
#pragma once

#include "classlib_string.h"
#include "resbuf.h"

// Moves an entity to a layer; 1 on success, 0 on failure.
int mod_ent_layer(const vds_name name, const wchar_t* layer);

// Turns a layer off, the current one only after a question to which Enter means yes. RTNORM, RTERROR when the answer
// was no, RTCAN.
int OffOneLayer(const wchar_t* name);

// Writes the flags of a layer's record; 1, or 0 with the reason printed for "0", the current layer, one that is missing,
// locked or from an external reference.
int dsc_frz_layer(CStdStrW name, int flags);

// Asks for a layer name and lists that layer, or all for "*" and Enter; 0 on cancel, else 1.
int ListLayer();
// One layer with its state, or all for an empty name, and the current layer.
void ShowLayer(CStdStrW name);
// The row of a record of the layer table.
void GetLayInf(const resbuf* record);

// Makes the layer of the first object selected current; RTNORM, or 0 when nothing was selected.
int SetCurLayer();
