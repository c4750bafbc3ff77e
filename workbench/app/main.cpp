#include <windows.h>

#include "Program.h"

/// The program with a window. A shell does not wait for it.
int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) { return workbench::run_program(); }
