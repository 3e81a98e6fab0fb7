// Kills copies of the program while they record, and compares what the next start recovers with what the hands did.
//
//   tessik-kill-takes [COUNT [SEED]]
//
// Each copy runs on the rig, where hands ride four faders over a rolling tape; before every move it is noted in a file
// of its own, which the program knows nothing of. After 0.3 to 10 seconds the copy gets SIGKILL. The take that is
// recovered then has to begin with the moves that were made, lane by lane, and may lack those of the last second.
#include "Support/SessionCopy.h"
#include "TessikAutomation/Application/Application.h"

#include <QApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <random>

using namespace tessik;
using namespace std::chrono_literals;

namespace {

constexpr Uptime mayBeLost = 1s;
constexpr std::array<int, 4> ridden{0, 5, 11, 31}; // few enough not to be taken for a dump of the desk

/// What a hand was about to do.
struct Move {
    Uptime at;
    std::int32_t cc;
    std::int32_t value;
};

// MARK: the copy that is killed

int record(QApplication& program, const QString& folder, const QString& truthPath) {
    Rig rig;
    Application application(rig.service, folder);
    application.connectToRig();
    application.showWindow();
    QFile truth(truthPath);
    if (!truth.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) return 1;
    application.passEngine.mode = AutomationMode::write;
    rig.recorder.play();
    QTimer hands;
    hands.setTimerType(Qt::PreciseTimer);
    int count = 0;
    hands.callOnTimeout([&] {
        if (!application.passEngine.isRecording()) return;
        const int cc = ridden[std::size_t(count) % ridden.size()];
        const Move move{UptimeClock::system().now(), cc, 1 + count / int(ridden.size()) % 127};
        ++count;
        if (truth.write(reinterpret_cast<const char*>(&move), sizeof move) != sizeof move) std::abort();
        rig.desk.moveFader(*MIDIChannelMapping::channelKindForFaderCC(cc), move.value);
    });
    hands.start(10ms);
    return program.exec();
}

// MARK: the next start

/// The passes that the next start recovers.
QList<AutomationPass> recoveredPasses(const QString& folder) {
    test::Copy copy(folder, &currentSecond);
    copy.controller.offerRecovery();
    copy.controller.finishSaving();
    for (const QString& each : copy.dialogs.taken())
        std::printf("  %s\n", qPrintable(each));
    return copy.passes.passes.value();
}

std::vector<Move> movesIn(const QString& truthPath) {
    QFile file(truthPath);
    file.open(QIODevice::ReadOnly);
    const QByteArray bytes = file.readAll();
    std::vector<Move> moves(std::size_t(bytes.size()) / sizeof(Move));
    std::copy_n(bytes.constData(), moves.size() * sizeof(Move), reinterpret_cast<char*>(moves.data()));
    return moves;
}

struct Outcome {
    std::size_t made = 0, recovered = 0;
    Uptime lost{}; // from the first move that is missing to the kill
    const char* fault = nullptr;
};

/// Every lane of the take has to be the beginning of what the hands did there.
Outcome compare(const std::vector<Move>& made, const QList<AutomationPass>& passes, Uptime killedAt) {
    Outcome outcome{.made = made.size()};
    std::array<std::vector<int>, MIDIChannelMapping::controllerCount> taken;
    if (!passes.isEmpty())
        for (const TimedEvent& event : passes[0].events)
            if (const auto lane = LaneEvent::of(event)) taken[lane->cc].push_back(lane->value);
    std::array<std::size_t, MIDIChannelMapping::controllerCount> next{};
    Uptime firstMissing = killedAt;
    for (const Move& move : made) {
        const std::size_t lane = std::size_t(move.cc);
        if (next[lane] >= taken[lane].size()) {
            firstMissing = std::min(firstMissing, move.at);
        } else if (taken[lane][next[lane]++] == move.value) {
            ++outcome.recovered;
        } else {
            outcome.fault = "the take has other moves than were made";
        }
    }
    for (std::size_t lane = 0; lane < taken.size(); ++lane)
        if (next[lane] < taken[lane].size()) outcome.fault = "the take has moves that were never made";
    outcome.lost = killedAt - firstMissing;
    if (passes.size() > 1) outcome.fault = "the take was recovered twice";
    if (!outcome.fault && outcome.lost > mayBeLost) outcome.fault = "more is missing than may be";
    return outcome;
}

Outcome killOne(const QString& program, Uptime after) {
    const QTemporaryDir own;
    const QString folder = own.filePath(QStringLiteral("recovery")), truth = own.filePath(QStringLiteral("moves"));
    QProcess copy;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), own.path());
    copy.setProcessEnvironment(environment);
    copy.setStandardErrorFile(QProcess::nullDevice());
    copy.start(program, {QStringLiteral("record"), folder, truth});
    for (int i = 0; i < 3000 && QFile(truth).size() == 0; ++i)
        QThread::msleep(10);
    QThread::usleep(static_cast<unsigned long>(after / 1us));
    const Uptime killedAt = UptimeClock::system().now();
    ::kill(pid_t(copy.processId()), SIGKILL);
    copy.waitForFinished(-1);
    return compare(movesIn(truth), recoveredPasses(folder), killedAt);
}

int killAll(const QString& program, int count, unsigned seed) {
    std::printf("%d kills, seed %u\n", count, seed);
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> seconds(0.3, 10);
    int faults = 0, empty = 0;
    std::vector<double> lost;
    for (int i = 0; i < count; ++i) {
        const double after = seconds(random);
        const Outcome outcome =
            killOne(program, std::chrono::duration_cast<Uptime>(std::chrono::duration<double>(after)));
        lost.push_back(std::chrono::duration<double>(outcome.lost).count());
        faults += outcome.fault ? 1 : 0;
        empty += outcome.recovered == 0 ? 1 : 0;
        std::printf("%3d  after %5.2f s: %4zu of %4zu moves, %.2f s missing%s%s\n", i + 1, after, outcome.recovered,
                    outcome.made, lost.back(), outcome.fault ? "  FAULT: " : "", outcome.fault ? outcome.fault : "");
        std::fflush(stdout);
    }
    std::sort(lost.begin(), lost.end());
    std::printf("missing: median %.2f s, worst %.2f s; %d of %d takes empty, %d at fault\n", lost[lost.size() / 2],
                lost.back(), empty, count, faults);
    return faults == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    const QStringList words(argv, argv + argc);
    if (words.size() == 4 && words[1] == QLatin1String("record")) {
        QApplication program(argc, argv);
        return record(program, words[2], words[3]);
    }
    const QCoreApplication program(argc, argv);
    const int count = words.size() > 1 ? words[1].toInt() : 60;
    const unsigned seed = words.size() > 2 ? words[2].toUInt() : std::random_device()();
    return killAll(QCoreApplication::applicationFilePath(), std::max(count, 1), seed);
}
