#include "Support/Sessions.h"
#include "TessikAutomation/Automation/PassStore.h"
#include "TessikAutomation/Automation/PendingTake.h"

#include <gtest/gtest.h>

namespace tessik {
namespace {

AutomationPass pass(const char* name, qint64 created) {
    return {.id = QUuid::createUuid(), .name = QString::fromLatin1(name), .createdAt = second(created)};
}

QString names(const PassStore& store) {
    QString all;
    for (const AutomationPass& one : store.passes.value())
        all += one.name;
    return all;
}

TEST(PassStore, KeepsThePassesNewestFirst) {
    PassStore store;
    int changes = 0;
    int notices = 0;
    store.onChange = [&] { ++changes; };
    const auto notifier = store.passes.addNotifier([&] { ++notices; });
    const AutomationPass b = pass("b", 2);
    store.load({pass("a", 1), b, pass("c", 3), pass("d", 3)});
    EXPECT_EQ(names(store), QStringLiteral("cdba"));
    EXPECT_EQ(changes, 0);

    store.save(pass("e", 2)); // of the same second as b: behind it, as it was saved later
    store.save(pass("f", 9));
    EXPECT_EQ(names(store), QStringLiteral("fcdbea"));
    AutomationPass again = b;
    again.name = QStringLiteral("B");
    store.save(again);
    EXPECT_EQ(names(store), QStringLiteral("fcdeBa"));
    EXPECT_EQ(changes, 3);

    store.remove(b.id);
    EXPECT_EQ(names(store), QStringLiteral("fcdea"));
    EXPECT_EQ(notices, 5);
    store.remove(b.id); // changes nothing, and is a change all the same
    EXPECT_EQ(changes, 5);
    EXPECT_EQ(notices, 5);
}

TEST(AutomationPass, EventsOfOneFrameKeepTheirOrder) {
    const auto event = [](int offset, int value) {
        return TimedEvent{offset, ChannelKind::input(1), PassEventValue::fader(value)};
    };
    PendingTake take{.pass = pass("", 0), .chunks = {{event(5, 2), event(0, 3)}, {}, {event(5, 4), event(0, 5)}}};
    take.pass.events = {event(5, 1)};
    EXPECT_EQ(take.eventCount(), 5);
    EXPECT_EQ(take.finished().events,
              (QList<TimedEvent>{event(0, 3), event(0, 5), event(5, 1), event(5, 2), event(5, 4)}));
}

} // namespace
} // namespace tessik
