// String identifiers of the widget tests' own string table.
#pragma once

// A message base: the box adds the language index (English is 1).
#define IDS_TEST_MESSAGE 900
