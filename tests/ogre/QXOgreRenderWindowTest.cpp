#include <tests/ogre/QXOgreScenery.h>
