// tessik-rig: the simulated desk and recorder as ALSA sequencer clients, to stand in for real ones.
#include "TessikKit/MIDI/ALSA/ALSAMIDIService.h"
#include "TessikRig/RigCommands.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QSocketNotifier>

#include <cstdio>
#include <unistd.h>

using namespace tessik;

namespace {

int fail(const QString& why, int status) {
    std::fprintf(stderr, "tessik-rig: %s\n", qUtf8Printable(why));
    return status;
}

std::optional<MTCFrameRate> rateNamed(const QString& name) {
    if (name == QLatin1String("24")) return MTCFrameRate::fps24;
    if (name == QLatin1String("25")) return MTCFrameRate::fps25;
    if (name == QLatin1String("29.97")) return MTCFrameRate::fps30Drop;
    if (name == QLatin1String("30")) return MTCFrameRate::fps30;
    return std::nullopt;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tessik-rig"));
    QCoreApplication::setApplicationVersion(QLatin1String(TESSIK_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "A simulated console and recorder on the ALSA sequencer, \"Rig Console\" and \"Rig Recorder\".\n"
        "Reads commands from standard input, a line each: fader 5 100, mute 5 on, scene 3, play, locate 01:00:00:00, "
        "show 5, where."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption inputs(QStringLiteral("inputs"), QStringLiteral("Size of the desk."),
                                    QStringLiteral("24|32"), QStringLiteral("32"));
    const QCommandLineOption channel(QStringLiteral("channel"), QStringLiteral("The desk's basic channel."),
                                     QStringLiteral("1-16"), QStringLiteral("1"));
    const QCommandLineOption device(QStringLiteral("device-id"), QStringLiteral("The recorder's MMC device ID."),
                                    QStringLiteral("0-126"), QStringLiteral("0"));
    const QCommandLineOption rate(QStringLiteral("rate"), QStringLiteral("The tape's timecode rate."),
                                  QStringLiteral("24|25|29.97|30"), QStringLiteral("25"));
    parser.addOptions({inputs, channel, device, rate});
    if (!parser.parse(QCoreApplication::arguments())) return fail(parser.errorText(), 2);
    if (parser.isSet(QStringLiteral("help"))) parser.showHelp();
    if (parser.isSet(QStringLiteral("version"))) parser.showVersion();
    const int inputCount = parser.value(inputs).toInt();
    const int basicChannel = parser.value(channel).toInt();
    const int deviceID = parser.value(device).toInt();
    const auto frameRate = rateNamed(parser.value(rate));
    if (inputCount != 24 && inputCount != 32) return fail(QStringLiteral("a desk has 24 or 32 inputs"), 2);
    if (basicChannel < 1 || basicChannel > 16) return fail(QStringLiteral("MIDI channels are 1 to 16"), 2);
    if (deviceID < 0 || deviceID > 126) return fail(QStringLiteral("device IDs are 0 to 126"), 2);
    if (!frameRate) return fail(QStringLiteral("rates are 24, 25, 29.97 and 30"), 2);

    ALSAMIDIService service;
    SimulatedConsole desk(service, UptimeClock::system(), inputCount);
    if (desk.status() != 0)
        return fail(
            QStringLiteral("cannot open the ALSA sequencer: %1").arg(QString::fromUtf8(strerror(-desk.status()))), 1);
    desk.setBasicChannel(basicChannel);
    SimulatedRecorder recorder(service, {.rate = *frameRate, .deviceID = std::uint8_t(deviceID)});
    RigCommands commands(desk, recorder);

    std::printf("Rig Console (%d inputs) and Rig Recorder are there.\n", inputCount);
    std::fflush(stdout);
    QByteArray pending;
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &app, [&] {
        char bytes[4096];
        const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0) return input.setEnabled(false); // without a terminal the rig runs on by itself
        pending.append(bytes, int(count));
        for (qsizetype end; (end = pending.indexOf('\n')) >= 0; pending.remove(0, end + 1)) {
            const QString answer = commands.obey(QString::fromUtf8(pending.left(end)));
            if (!answer.isEmpty()) std::printf("%s\n", qUtf8Printable(answer));
            std::fflush(stdout);
        }
    });
    return QCoreApplication::exec();
}
