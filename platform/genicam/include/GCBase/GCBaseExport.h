// Visibility of the GenICam base library's symbols. Clients built with hidden
// visibility must still see one type identity for the exception classes.
#pragma once

#define GCBASE_API __attribute__((visibility("default")))
