// The drawing database: entity data by chains, tables, and the object classes.
//
// Functions that fill an argument write nothing when they fail. Chains and strings belong to the caller.
#pragma once

#include "resbuf.h"
#include "vcdb_curves.h"
#include "vcdb_database.h"
#include "vcdb_dims.h"
#include "vcdb_entity.h"
#include "vcdb_faces.h"
#include "vcdb_hatch.h"
#include "vcdb_images.h"
#include "vcdb_insert.h"
#include "vcdb_layout.h"
#include "vcdb_misc.h"
#include "vcdb_object.h"
#include "vcdb_objects.h"
#include "vcdb_records.h"
#include "vcdb_tables.h"
#include "vcdb_text.h"
#include "vcdb_viewport.h"

#include "vcdb_chains.h"
#include "vchost.h"
