// Gives the identifiers of the sample type library their storage.
#include <initguid.h>

#include "zdExpirationRules_h.h"
