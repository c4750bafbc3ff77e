#pragma once

#include <cstdio>

namespace test_support {

/// Writes every top-level window of this process as UTF-8: class, title, rectangle and visibility, and indented below
/// it its child windows with identifier and text. Never waits for a thread that hangs.
void dump_screen(std::FILE* out);

}  // namespace test_support
