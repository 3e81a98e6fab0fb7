#include "TessikAutomation/Application/CommandLine.h"

namespace tessik {

namespace {

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
    CommandLine line;
    bool optionsEnded = false;
    for (int i = 1; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        const auto value = [&](QString& into) {
            if (i + 1 >= arguments.size() || arguments[i + 1].isEmpty()) return false;
            into = arguments[++i];
            return true;
        };
        if (optionsEnded || !argument.startsWith(QLatin1Char('-'))) {
            if (!line.sessionFile.isEmpty()) return wrong(QStringLiteral("only one session can be opened"));
            line.sessionFile = argument;
        } else if (argument == QLatin1String("--")) {
            optionsEnded = true;
        } else if (argument == QLatin1String("--help") || argument == QLatin1String("-h")) {
            return ended(QString::fromUtf8(usage), false);
        } else if (argument == QLatin1String("--version")) {
            return ended(QStringLiteral("tessik-automation %1\n").arg(QLatin1String(TESSIK_VERSION)), false);
        } else if (argument == QLatin1String("--rig")) {
            line.rig = true;
        } else if (argument == QLatin1String("--log-cc")) {
            line.logCC = true;
        } else if (argument == QLatin1String("--tour")) {
            if (!value(line.tourFolder)) return wrong(QStringLiteral("--tour needs a folder"));
        } else if (argument == QLatin1String("--check")) {
            if (!value(line.checkFile)) return wrong(QStringLiteral("--check needs a file"));
        } else {
            return wrong(QStringLiteral("unknown option %1 (see --help)").arg(argument));
        }
    }
    return line;
}

} // namespace tessik
