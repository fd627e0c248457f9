// Visibility of the processing framework's symbols. The package is built with
// hidden visibility, so every class whose identity crosses a library border is
// marked here.
#pragma once

#define TDPC_API __attribute__((visibility("default")))
