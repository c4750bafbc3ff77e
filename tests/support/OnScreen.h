#pragma once

namespace test_support {

/// The tests of this program that need the real keyboard, the real foreground or real painting, as patterns with ;
/// between them. The build defines it, from what SCREEN names in the program's CMakeLists.txt.
extern const char tests_on_screen[];

}  // namespace test_support
