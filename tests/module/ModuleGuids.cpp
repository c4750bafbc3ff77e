// Gives the identifiers of the module's type library their storage.
#include <initguid.h>

#include "zdExpirationRules_h.h"
