// The contract's lists in one. Who includes them says what TYPE and MESSAGE make of a name and its elements,
// and defines VALUE, NILLABLE, CHOICE and REPEATED, each with the name of an element and its type.
#ifndef SOAPWRAPPER_TESTS_SCHEMA_CONTRACT_LISTS_H
#define SOAPWRAPPER_TESTS_SCHEMA_CONTRACT_LISTS_H

#include "contract_async_operations.h"             // IWYU pragma: export
#include "contract_events_changelists_iocontrol.h" // IWYU pragma: export
#include "contract_images_snapshots_exports.h"     // IWYU pragma: export
#include "contract_sessions_servers_lsus.h"        // IWYU pragma: export

#define CONTRACT_TYPES(TYPE)                                                                                 \
    TYPES_OF_SESSIONS_SERVERS_LSUS(TYPE)                                                                     \
    TYPES_OF_IMAGES_SNAPSHOTS_EXPORTS(TYPE)                                                                  \
    TYPES_OF_ASYNC_OPERATIONS(TYPE)                                                                          \
    TYPES_OF_EVENTS_CHANGELISTS_IOCONTROL(TYPE)

#define CONTRACT_MESSAGES(MESSAGE)                                                                           \
    MESSAGES_OF_SESSIONS_SERVERS_LSUS(MESSAGE)                                                               \
    MESSAGES_OF_IMAGES_SNAPSHOTS_EXPORTS(MESSAGE)                                                            \
    MESSAGES_OF_ASYNC_OPERATIONS(MESSAGE)                                                                    \
    MESSAGES_OF_EVENTS_CHANGELISTS_IOCONTROL(MESSAGE)

#endif
