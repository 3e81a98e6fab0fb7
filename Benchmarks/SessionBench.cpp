#include "Bench.h"
#include "TessikAutomation/Session/SessionController.h"
#include "TessikAutomation/Session/SessionFile.h"
#include "TessikAutomation/Session/SessionReader.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessik::bench {
namespace {

constexpr int passCount = 100;
constexpr int eventsAPass = 20'000;
constexpr int rounds = 3;

double seconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// How long this thread stood ready and was given no processor so far, in seconds: what other processes cost it.
double waitedForProcessor() {
    QFile file(QStringLiteral("/proc/thread-self/schedstat"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toDouble() / 1e9 : 0;
}

/// Two hours of a busy mix in each pass: rides, with a switch now and then.
SessionDocument generatedSession() {
    SessionDocument document = SessionDocument::empty(currentSecond());
    for (int n = 0; n < passCount; ++n) {
        AutomationPass pass{.id = QUuid::createUuid(),
                            .name = QStringLiteral("Pass %1").arg(n),
                            .createdAt = document.createdAt.addSecs(n),
                            .startTimecode = {.hours = 1},
                            .initialState = QList<ChannelSnapshot>(channelCount)};
        pass.events.reserve(eventsAPass);
        for (int i = 0; i < eventsAPass; ++i)
            pass.events.append({.frameOffset = i * 10 + n,
                                .kind = i % 41 < 32   ? ChannelKind::input(1 + i % 41)
                                        : i % 41 < 40 ? ChannelKind::group(i % 41 - 31)
                                                      : ChannelKind::stereo(),
                                .value = i % 20 ? PassEventValue::fader(i * 7 % 128)
                                                : PassEventValue::switches({.monMuted = i % 40 == 0})});
        document.passes.append(pass);
    }
    return document;
}

/// Runs `work` in a child process and returns the most memory that it held, in bytes.
double peakMemory(const std::function<void()>& work) {
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(0);
    }
    struct rusage usage {};
    int status = 0;
    if (child < 0 || wait4(child, &status, 0, &usage) != child || status != 0) std::abort();
    return double(usage.ru_maxrss) * 1024;
}

struct SilentDialogs final : SessionDialogs {
    std::optional<QString> chooseSessionToOpen(const QString&) override { return std::nullopt; }
    std::optional<QString> chooseWhereToSave(const QString&) override { return std::nullopt; }
    void alert(const QString& title, const QString& text) override {
        std::fprintf(stderr, "%s: %s\n", qUtf8Printable(title), qUtf8Printable(text));
        std::abort();
    }
    void alertOfFile(const QString& title, const QString& text, const QString&) override { alert(title, text); }
    bool confirmOverwrite(const QString&, const QString&) override { return true; }
    Unsaved askUnsaved(const QString&, const QString&) override { return Unsaved::discard; }
    TakeAnswer askTake(const QString&, const QString&, const QString&) override { return {Unsaved::discard, {}}; }
    Recovery askRecovery(const QString&, const QString&) override { return Recovery::later; }
};

/// All that opening does, into the stores and back out.
struct Session {
    SnapshotStore snapshots;
    PassStore passes;
    ManualSettingsStore manualSettings;
    ChannelLabelStore channelLabels;
    MasterSectionStore masterSection;
    LocatorStore locators;
    SilentDialogs dialogs;
    SessionController controller;

    explicit Session(const QString& recovery)
        : controller({snapshots, passes, manualSettings, channelLabels, masterSection, locators}, dialogs, recovery) {}
};

void run(const Report& report) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("large.tessik"));
    const QString recovery = folder.filePath(QStringLiteral("recovery"));
    const QUrl url = QUrl::fromLocalFile(path);
    // Memory first, in children, while this process has not grown.
    peakMemory([&] {
        if (!writeSessionFile(path, PreviousFile::drop, generatedSession()).error.isEmpty()) std::abort();
    });
    const double size = double(QFile(path).size());
    const double before = peakMemory([] {});
    const double peak = peakMemory([&] {
        if (!readSession(path, currentSecond()).document) std::abort();
    });
    report({"session_file_mb", size / 1e6, "MB", {}});
    report({"session_open_peak_ratio", (peak - before) / size, "×file", 4.0});

    double plain = 1e9;
    double opening = 1e9;
    for (int round = 0; round < rounds; ++round) {
        plain = std::min(plain, seconds([&] {
                             QFile file(path);
                             if (!file.open(QIODevice::ReadOnly)) std::abort();
                             if (QJsonDocument::fromJson(file.readAll()).isNull()) std::abort();
                         }));
        Session session(recovery);
        opening = std::min(opening, seconds([&] { session.controller.open(url); }));
        if (session.passes.passes.value().size() != passCount) std::abort();
    }
    report({"session_plain_parse_s", plain, "s", {}});
    report({"session_open_s", opening, "s", {}});
    report({"session_open_ratio", opening / plain, "×plain", 1.0 / 6});

    Session session(recovery);
    session.controller.open(url);
    const std::vector<AutomationPass> originals{session.passes.passes.value().begin(),
                                                session.passes.passes.value().end()};
    double longest = 0;
    double saving = 1e9;
    const auto onMainThread = [&](const std::function<void()>& work) {
        const double waited = waitedForProcessor();
        const double took = seconds(work);
        longest = std::max(longest, took - (waitedForProcessor() - waited));
    };
    for (int round = 0; round < rounds; ++round) {
        // An edited pass shares nothing with what is being written, as after a take.
        session.passes.save(originals[std::size_t(round)]);
        onMainThread([&] { session.controller.recoveryTick(); });
        session.controller.finishSaving();
        saving = std::min(saving, seconds([&] {
                              onMainThread([&] { session.controller.save(); });
                              while (session.controller.isSaving.value())
                                  onMainThread([] { QCoreApplication::processEvents(); });
                          }));
    }
    report({"session_save_mb_s", size / 1e6 / saving, "MB/s", {}});
    report({"save_main_block_ms", longest * 1e3, "ms", 5.0});
}

const Benchmark sessionBenchmark("session", run);

} // namespace
} // namespace tessik::bench
