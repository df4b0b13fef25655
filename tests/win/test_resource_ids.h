// Identifiers of the Windows test resources.
#pragma once
#define IDB_PALETTE8 301
