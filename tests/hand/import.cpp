// Where Qt is linked into the program, its plugins are too.

#include <QtPlugin>

Q_IMPORT_PLUGIN(HandPlugin)
