#include "afx/message_map.h"

const AFX_MSGMAP_ENTRY* AfxFindMessageEntry(const AFX_MSGMAP* map, UINT message, UINT code, UINT id)
{
    for (; map; map = map->base ? map->base() : nullptr) {
        for (const AFX_MSGMAP_ENTRY* entry = map->entries; entry->invoke; ++entry) {
            if (entry->message == message && entry->code == code && id >= entry->first_id && id <= entry->last_id) {
                return entry;
            }
        }
    }
    return nullptr;
}
