#pragma once

#include "RuleStore.h"

/// Applies the `number`-th of an endless series of adds, updates and deletes. What it does follows from the number and
/// from what the store holds, so two stores that hold the same still do so afterwards. A refusal of the rules' own kind
/// (a rule in use) is part of the series.
void apply_operation(workbench::RuleStore& store, unsigned number);

/// What a store holds before the first operation.
workbench::StoreContent content_before_operations();
