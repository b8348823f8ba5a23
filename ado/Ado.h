// The data layer's objects: everything above it reads and writes databases through these five, as programs written
// against ActiveX Data Objects do. Start with Connection.h and Recordset.h. Needs the list of providers (SetProviders)
// before the first connection is opened.
#pragma once

#include "ado/Command.h"
#include "ado/Connection.h"
#include "ado/Recordset.h"
