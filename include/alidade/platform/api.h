// Marks what the shared library shows. Everything else stays hidden, so a name outside the list in cmake/exported.txt
// can change without breaking a host.
#pragma once

#if defined(_WIN32)
#define ALIDADE_API
#else
#define ALIDADE_API __attribute__((visibility("default")))
#endif
