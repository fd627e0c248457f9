// Visibility of the TarvikUtility library's symbols: the library is built with
// hidden visibility and exports only what carries this mark.
#pragma once

#define TARVIKUTILITY_API __attribute__((visibility("default")))
