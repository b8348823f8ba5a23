// The one place that names every provider.
#pragma once

#include <vector>

#include "ado/types/Provider.h"

namespace varnel {

/// All providers, in the order in which connection strings are tried against them; they live as long as the program.
std::vector<const Provider*> AllProviders();

}  // namespace varnel
