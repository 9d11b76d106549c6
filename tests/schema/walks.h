// The members of all wire classes, for the walkers.
#ifndef SCHEMA_TEST_WALKS_H
#define SCHEMA_TEST_WALKS_H

#include "walk_async_operations.h"
#include "walk_events_changelists_iocontrol.h"
#include "walk_images_snapshots_exports.h"
#include "walk_sessions_servers_lsus.h"
#include "walkers.h"

#endif
