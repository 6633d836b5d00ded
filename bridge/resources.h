/* Numbers in the program's resources; read by the resource compiler too. */
#define ICON_PROGRAM 1
