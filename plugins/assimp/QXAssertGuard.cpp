// The importer library is built with its assertions, and a failed one ends the process: a broken file would end the
// host. Its reporting function is an exported symbol, and a definition in the module stands before the library's own in
// the search of the module's dependencies; so a failed assertion becomes an exception, which the library passes on like
// those of its own. A host that has loaded the same library globally keeps the old behaviour.
#include <assimp/defs.h>

#include <stdexcept>
#include <string>

namespace Assimp {

__attribute__((visibility("default"))) void aiAssertViolation(char const* szExpression, char const* szFile, int nLine);

void aiAssertViolation(char const* szExpression, char const* /*szFile*/, int /*nLine*/) {
  throw std::runtime_error(std::string("the importer gave up: not so: ") + szExpression);
}

}  // namespace Assimp
