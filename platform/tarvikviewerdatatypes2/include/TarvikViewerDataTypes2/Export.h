// Visibility of the viewer data types' symbols (see the framework's Export.h).
#pragma once

#define TVDT2_API __attribute__((visibility("default")))
