// What a Control Change costs on its way in, and whether the desk ends on what was asked of it.
#include "Bench.h"
#include "TessikAutomation/Desk/MIDIOutputManager.h"
#include "TessikKit/MIDI/MIDIManager.h"
#include "TessikKit/MIDI/MIDIWords.h"
#include "TessikKit/MIDI/Virtual/VirtualMIDIService.h"
#include "TessikRig/SimulatedConsole.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <random>
#include <thread>

namespace tessik::bench {
namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// Resident memory of this process in MB.
double residentMB() {
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly)) return 0;
    return file.readAll().split(' ').value(1).toDouble() * 4096 / 1e6;
}

/// A desk's port, and the manager that listens to it.
struct Line {
    explicit Line(VirtualMIDIService::Delivery delivery) : service(delivery) {
        service.createClient(QStringLiteral("Far"), {}, far);
        service.createSource(far, QStringLiteral("Desk"), desk);
        manager.emplace(service, model, QStringLiteral("Bench"));
        manager->connection.selectSource(service.sources().front().uniqueID);
    }
    VirtualMIDIService service;
    MIDIClientRef far = 0;
    MIDIEndpointRef desk = 0;
    ConsoleModel model;
    std::optional<MIDIManager> manager;
};

// One word at a time, from the receive block to the model, the queue's hop included. A million at 40 different faders.
const Benchmark ccToModel("cc_to_model_ns", [](const Report& report) {
    Line line(VirtualMIDIService::Delivery::synchronous);
    constexpr int count = 200'000;
    std::vector<double> runs;
    for (int run = 0; run < 5; ++run) {
        const auto start = Clock::now();
        for (int i = 0; i < count; ++i) {
            const std::uint32_t word = MIDIWords::controlChange(1, i % 40, i & 0x7F);
            const MIDIEventPacket packet{{}, {&word, 1}};
            line.service.inject(line.desk, {.packets = {&packet, 1}});
            if (i % 64 == 63) QCoreApplication::sendPostedEvents();
        }
        QCoreApplication::processEvents();
        runs.push_back(millisecondsSince(start) * 1e6 / count);
    }
    std::sort(runs.begin(), runs.end());
    report({"cc_to_model_ns", runs[runs.size() / 2], "ns", 600});
});

const Benchmark ccFlood("cc_flood", [](const Report& report) {
    constexpr int count = 1'000'000;
    double memoryAfterFirst = 0;
    for (int round = 0; round < 3; ++round) {
        Line line(VirtualMIDIService::Delivery::thread);
        const auto start = Clock::now();
        std::jthread producer([&line] {
            for (int i = 0; i < count; ++i) {
                const std::uint32_t word = MIDIWords::controlChange(1, i % 40, i & 0x7F);
                line.service.transmit(line.desk, {&word, 1});
            }
        });
        double worstBlock = 0;
        const auto received = [&line] { return line.model.messageCount.value(); };
        while (received() < count && millisecondsSince(start) < 60'000) {
            const auto slice = Clock::now();
            QCoreApplication::processEvents(QEventLoop::AllEvents, 0);
            worstBlock = std::max(worstBlock, millisecondsSince(slice));
        }
        const double total = millisecondsSince(start);
        producer.join();
        if (round == 0) {
            memoryAfterFirst = residentMB();
            continue;
        }
        if (round < 2) continue;
        std::int64_t misplaced = 0;
        for (int i = count - 40; i < count; ++i)
            misplaced +=
                line.model.channelState(*MIDIChannelMapping::channelKindForFaderCC(i % 40))->faderValue.value() !=
                (i & 0x7F);
        report({"cc_flood.lost", double(count - received()), "", 0});
        report({"cc_flood.misplaced", double(misplaced), "", 0});
        report({"cc_flood.overtaken", double(line.manager->connection.overtakenCount.value()), "", std::nullopt});
        report({"cc_flood.worst_block_ms", worstBlock, "ms", 10});
        report({"cc_flood.growth_at_rest_mb", std::max(0.0, residentMB() - memoryAfterFirst), "MB", 4});
        report({"cc_flood.total_ms", total, "ms", std::nullopt});
    }
});

// 20,000 random sends as fast as they come, over the rig's real cable in real time.
const Benchmark pacerDeskEqual("pacer_desk_equal", [](const Report& report) {
    VirtualMIDIService service;
    SimulatedConsole desk(service);
    ConsoleModel model;
    MIDIOutputManager output(service);
    output.setupClient();
    output.refreshDestinations();
    output.selectDestination(output.port.availableDestinations.value().front().uniqueID);
    std::minstd_rand random(1);
    const std::vector<ChannelKind> kinds = desk.channels();
    for (int i = 0; i < 20'000; ++i) {
        const ChannelState& channel = *model.channelState(kinds[random() % kinds.size()]);
        if (random() % 2 == 0) {
            const int value = int(random() % 128);
            model.shown(MIDIChannelMapping::faderCC(channel.kind), value);
            output.sendFader(channel.kind, value);
        } else {
            model.shown(MIDIChannelMapping::switchCC(channel.kind), int(random() % 128));
            output.sendSwitches(channel.kind, channel.switches());
        }
        if (i % 50 == 0) QCoreApplication::processEvents();
    }
    const auto start = Clock::now();
    const auto quiet = [&] { return !output.isBusy() && desk.isQuiet(); };
    for (auto since = Clock::now(); millisecondsSince(since) < 50 && millisecondsSince(start) < 5000;) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        if (!quiet()) since = Clock::now();
    }
    int different = 0;
    for (const ChannelKind kind : kinds)
        different += (desk.vca(kind) != model.channelState(kind)->faderValue.value()) +
                     (desk.switches(kind) != model.channelState(kind)->switches());
    report({"pacer_desk_equal.different", double(different), "", 0});
    report({"pacer_desk_equal.dropped_bytes", double(desk.droppedBytes()), "", 0});
    report({"pacer_desk_equal.overtaken", double(output.overtakenCount()), "", std::nullopt});
});

} // namespace
} // namespace tessik::bench
