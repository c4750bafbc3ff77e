#include "Program.h"

/// The same program for a shell, which waits for it and shows what it writes.
int wmain() { return workbench::run_program(); }
