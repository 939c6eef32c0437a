// Opens the library named on the command line, closes it again and sends itself an interrupt: with a handler left
// behind in memory that is no longer there the process would end by a fault instead.
#include <dlfcn.h>
#include <signal.h>

int main(int nArgumentCount, char** arrArguments) {
  if (nArgumentCount < 2) return 99;
  void* const pLibrary = ::dlopen(arrArguments[1], RTLD_NOW | RTLD_LOCAL);
  if (!pLibrary) return 98;
  struct sigaction action {};
  ::sigaction(SIGINT, nullptr, &action);
  if (action.sa_handler == SIG_DFL) return 97;
  ::dlclose(pLibrary);
  ::raise(SIGINT);
  return 0;
}
