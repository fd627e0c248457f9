// Visibility of the GenApi runtime's symbols. Clients built with hidden
// visibility must still see one type identity for the node interfaces, so that
// dynamic_cast between them works across library borders.
#pragma once

#define GENAPI_API __attribute__((visibility("default")))
