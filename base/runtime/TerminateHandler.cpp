#include <cstdlib>

// The runtime's own handler prints the name of the lost exception to a console that a host does not have, and brings
// a demangler and a number formatter for it: a quarter of the module's size. The runtime takes this one instead.
namespace __gnu_cxx {  // NOLINT(bugprone-reserved-identifier): the name under which the runtime looks for it

void __verbose_terminate_handler() {  // NOLINT(bugprone-reserved-identifier)
  std::abort();
}

}  // namespace __gnu_cxx
