// The one translation unit that holds the TOML library's own code (TOML_IMPLEMENTATION, set by CMakeLists.txt).
#include <toml++/toml.h>
