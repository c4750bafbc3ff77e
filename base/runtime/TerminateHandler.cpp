#include <cstdlib>

// What happens to an exception that nothing catches. The runtime's own handler prints the name of its type to a console
// that a host does not have, and brings a demangler and a number formatter for it: a quarter of the module's size. The
// runtime takes this handler instead, which ends the process as its own does.

// The runtime looks for the handler under this name.
// NOLINTBEGIN(bugprone-reserved-identifier)
namespace __gnu_cxx {

void __verbose_terminate_handler() { std::abort(); }

}  // namespace __gnu_cxx
// NOLINTEND(bugprone-reserved-identifier)
