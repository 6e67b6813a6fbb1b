#include "app/app_options.h"

#include <QCommandLineParser>
#include <QStringList>
#include <cstdlib>

namespace qx9 {

OptionsResult parseAppOptions(int argc, char** argv, AppOptions& options) {
    QStringList arguments{"halvorn-qx9"};
    for (int i = 1; i < argc; ++i) {
        const QString a = QString::fromLocal8Bit(argv[i]);
        // --virtual takes its state file only after "=": alone it is a switch.
        if (a.startsWith("--virtual=")) arguments << "--virtual" << "--virtual-state" << a.mid(10);
        else arguments << a;
    }
    QCommandLineParser parser;
    parser.setApplicationDescription("Configures the HALVORN QX9 keyboard: keys, macros, lighting.");
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);  // -platform, as Qt takes it
    const QCommandLineOption help({"h", "help"}, "Show this help and exit.");
    const QCommandLineOption version("version", "Show the version and exit.");
    const QCommandLineOption virtualKeyboard("virtual", "Attach a virtual QX9 (--virtual=STATE.json: its memory lives in that file).");
    QCommandLineOption virtualState("virtual-state", "", "STATE.json");
    virtualState.setFlags(QCommandLineOption::HiddenFromHelp);
    const QCommandLineOption database("db", "Use another database file.", "FILE");
    const QCommandLineOption hidden("hidden", "Start in the tray without the window (as at login); where the desktop shows no tray, the window opens.");
    const QCommandLineOption verbose("verbose", "Print the diagnostic lines on standard output (also QX9_VERBOSE=1).");
    QCommandLineOption noMonitor("no-monitor", "Do not watch for keyboards (tests).");
    noMonitor.setFlags(QCommandLineOption::HiddenFromHelp);
    parser.addOptions({help, version, virtualKeyboard, virtualState, database, hidden, verbose, noMonitor});
    for (const char* qtOption : {"platform", "style", "display"}) {  // Qt reads them itself
        QCommandLineOption o(qtOption, "", "VALUE");
        o.setFlags(QCommandLineOption::HiddenFromHelp);
        parser.addOption(o);
    }
    // Before the application exists, Qt cannot name the program in the help.
    const std::string helpText = parser.helpText().replace("<executable_name>", "halvorn-qx9").toStdString();
    if (!parser.parse(arguments)) return {OptionsResult::kRefuse, parser.errorText().toStdString() + "\n" + helpText};
    if (parser.isSet(help)) return {OptionsResult::kPrint, helpText};
    if (parser.isSet(version)) return {OptionsResult::kPrint, std::string("halvorn-qx9 ") + QX9_VERSION + "\n"};
    if (!parser.positionalArguments().isEmpty()) {
        return {OptionsResult::kRefuse, "unexpected argument " + parser.positionalArguments().front().toStdString() + "\n" +
                                            helpText};
    }
    options.virtualKeyboard = parser.isSet(virtualKeyboard);
    options.virtualState = parser.value(virtualState).toStdString();
    options.database = parser.value(database).toStdString();
    options.noMonitor = parser.isSet(noMonitor);
    options.hidden = parser.isSet(hidden);
    const char* env = std::getenv("QX9_VERBOSE");
    options.verbose = parser.isSet(verbose) || (env && std::string(env) == "1");
    return {};
}

}  // namespace qx9
