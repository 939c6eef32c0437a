/// @file
/// What the slot list is read from: every public header, and one instantiation of each class template with
/// virtual operations that no header instantiates itself.
#include <QxGraphics3D/All.h>

struct QXAnyRecord {};
template class QXC::QXSharedPtr<QXAnyRecord>;
