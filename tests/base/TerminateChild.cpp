#include <io.h>

#include <cstdio>

/// Throws what nothing catches. What is printed then arrives on the standard output.
int main() {  // NOLINT(bugprone-exception-escape): it is meant to escape
  _dup2(_fileno(stdout), _fileno(stderr));
  throw 5;
}
