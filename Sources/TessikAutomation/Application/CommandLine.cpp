#include "TessikAutomation/Application/CommandLine.h"

#include <QCommandLineParser>

namespace tessik {

namespace {

// Not the parser's own, which needs an application object and with it a display.
const char usage[] = R"(usage: tessik-automation [OPTION…] [SESSION.tessik]

Automation, recall and transport for an analog console with VCA faders.

  --rig           run on a simulated desk and recorder, without any MIDI hardware
  --tour DIR      drive the program through its whole job on the rig, write pictures and a report to DIR
  --check FILE    say what a session file holds and what in it cannot be read; exit 1 where there is any
  --log-cc        write every Control Change received from the console to standard error
  --version       print the version
  --help          print this
)";

CommandLine ended(const QString& text, bool isError) {
    CommandLine line;
    line.ending = {text, isError, isError ? 2 : 0};
    return line;
}

CommandLine wrong(const QString& what) { return ended(QStringLiteral("tessik-automation: %1\n").arg(what), true); }

} // namespace

CommandLine CommandLine::parse(const QStringList& arguments) {
    const QCommandLineOption rig(QStringLiteral("rig"));
    const QCommandLineOption logCC(QStringLiteral("log-cc"));
    const QCommandLineOption tour(QStringLiteral("tour"), {}, QStringLiteral("DIR"));
    const QCommandLineOption check(QStringLiteral("check"), {}, QStringLiteral("FILE"));
    const QCommandLineOption version(QStringLiteral("version"));
    const QCommandLineOption help(QStringList{QStringLiteral("help"), QStringLiteral("h")});
    QCommandLineParser parser;
    parser.addOptions({rig, logCC, tour, check, version, help});
    if (!parser.parse(arguments)) return wrong(parser.errorText() + QStringLiteral(" (see --help)"));
    if (parser.isSet(help)) return ended(QString::fromUtf8(usage), false);
    if (parser.isSet(version))
        return ended(QStringLiteral("tessik-automation %1\n").arg(QLatin1String(TESSIK_VERSION)), false);
    const QStringList sessions = parser.positionalArguments();
    if (sessions.size() > 1) return wrong(QStringLiteral("only one session can be opened"));
    CommandLine line{.rig = parser.isSet(rig),
                     .logCC = parser.isSet(logCC),
                     .tourFolder = parser.value(tour),
                     .checkFile = parser.value(check),
                     .sessionFile = sessions.value(0)};
    if (parser.isSet(tour) && line.tourFolder.isEmpty()) return wrong(QStringLiteral("--tour needs a folder"));
    if (parser.isSet(check) && line.checkFile.isEmpty()) return wrong(QStringLiteral("--check needs a file"));
    return line;
}

} // namespace tessik
