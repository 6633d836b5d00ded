#pragma once

#include <QGenericPlugin>

/// A hand in the real program, for the tests: a plugin that Qt loads where QT_QPA_GENERIC_PLUGINS=hand says
/// so. It takes orders from standard input, one a line, and answers each with a line:
///   click NAME   presses the button of this name
///   open NAME    chooses the menu entry, or presses the button, of this name; answers before that opens a
///   box choose NAME TEXT  chooses an entry in the list of this name text NAME    what the label of this name
///   shows box          the text of the message box that is open, or "none" accept, decline  presses its OK
///   or its Cancel hang         an endless loop on the user-interface thread exit, abort  what std::exit and
///   std::abort do
class HandPlugin : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "hand.json")

  public:
    QObject* create(const QString& key, const QString& arguments) override;
};
