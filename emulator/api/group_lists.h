// group_lists.h - a drawing's records as the host hands them to the module:
// result-buffer lists of group codes and values, as ads_entget and
// ads_tblsearch give them. The caller owns a list and frees it with
// ads_relrb.
#ifndef VORHOST_API_GROUP_LISTS_H
#define VORHOST_API_GROUP_LISTS_H

#include <string_view>

#include "emulator/drawing/entity.h"
#include "emulator/drawing/tables.h"
#include "host/ads.h"

namespace vorhost {

// The entity's data: -1 its name, 0 its type, 5 its handle, 8 its layer, 6
// and 62 when not BYLAYER, its own groups, and -2 its owner for a SEQEND.
// Null when memory is short.
resbuf* EntityData(const Entity& e);

// A table record's data: (0 . "STYLE") (2 . name) and the table's groups;
// null for an unknown table or name, or when memory is short. Tables are
// STYLE, LAYER, LTYPE and BLOCK, named in any case.
resbuf* TableRecordData(const Tables& tables, std::string_view table, std::string_view name);

}  // namespace vorhost

#endif
