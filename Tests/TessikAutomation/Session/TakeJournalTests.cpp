#include "Support/Sessions.h"
#include "TessikAutomation/Session/TakeJournal.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tessik {
namespace {

TimedEvent move(std::int64_t offset, int value) {
    return {offset, ChannelKind::group(2), PassEventValue::fader(value)};
}

struct TakeJournalTest : testing::Test {
    /// Writes the take and reads it back.
    AutomationPass journaled(const PendingTake& take) {
        const TakeJournal::Written written = journal.write(take);
        EXPECT_EQ(written.error, QString());
        written.flush();
        const std::optional<PendingTake> read = TakeJournal::read(path);
        return read ? read->finished() : AutomationPass();
    }

    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("1.take"));
    TakeJournal journal{path};
};

TEST_F(TakeJournalTest, FollowsWhatATakeDoes) {
    const SessionDocument session = sampleSession(1);
    PendingTake take{.pass = session.passes[1], .chunks = {}, .rides = {}}; // with a state and events of its own
    take.pass.sortEvents();
    EXPECT_EQ(journaled(take), take.finished());
    take.chunks = {{move(1, 10), move(2, 20)}};
    EXPECT_EQ(journaled(take), take.finished());
    const qint64 size = QFile(path).size();
    EXPECT_EQ(journaled(take), take.finished());
    EXPECT_EQ(QFile(path).size(), size) << "nothing new";
    take.chunks[0].append({3, ChannelKind::stereo(), PassEventValue::switches({.eqOn = true})});
    take.chunks.append({move(4, 40), move(5, 50), move(6, 60)});
    EXPECT_EQ(journaled(take), take.finished());
    take.chunks[1].removeAt(1); // taken back
    take.chunks[1].append(move(7, 70));
    EXPECT_EQ(journaled(take), take.finished());
    take.chunks[0].clear();
    EXPECT_EQ(journaled(take), take.finished());
    QFile::remove(path); // cleared away under it
    EXPECT_EQ(journaled(take), take.finished());
}

TEST_F(TakeJournalTest, KnowsHowFarRidesGo) {
    const SessionDocument session = sampleSession(2);
    PendingTake take{.pass = session.passes[1],
                     .chunks = {},
                     .rides = PendingTake::Rides{.end = 0, .baseline = session.snapshots[0].channels}};
    take.pass.sortEvents();
    for (const TimedEvent& event : {move(1, 10), move(4, 20)}) {
        take.chunks = {{event}};
        take.rides->end = event.frameOffset + 3;
        EXPECT_EQ(journaled(take), take.finished());
    }
    take.rides->end = 40; // a hand that holds
    EXPECT_EQ(journaled(take), take.finished());
}

TEST_F(TakeJournalTest, ReadsUpToWhereItWasCut) {
    PendingTake take{.pass = sampleSession(3).passes[0], .chunks = {}, .rides = {}};
    take.pass.events.clear();
    std::vector<std::pair<qint64, qsizetype>> ends; // of what was appended, and the moves up to there
    for (int i = 0; i < 3; ++i) {
        take.chunks.append({move(2 * i, i), move(2 * i + 1, i + 1)});
        EXPECT_EQ(journal.write(take).error, QString());
        ends.emplace_back(QFile(path).size(), 2 * (i + 1));
    }
    const QByteArray whole = contentsOf(path);
    const QString cut = folder.filePath(QStringLiteral("cut.take"));
    const auto movesIn = [&](const QByteArray& bytes) {
        EXPECT_TRUE(writeFile(cut, bytes));
        const std::optional<PendingTake> read = TakeJournal::read(cut);
        return read ? read->finished().events.size() : qsizetype(0);
    };
    for (qsizetype length = 0; length < whole.size(); ++length) {
        qsizetype expected = 0;
        for (const auto& [end, moves] : ends)
            if (length >= end) expected = moves;
        ASSERT_EQ(movesIn(whole.first(length)), expected) << length;
    }
    for (const QByteArray& tail : {QByteArray(4096, '\0'), QByteArray("take 6 0 99999999999999999999\n{}"),
                                   QByteArray("take 99 0 2\n{}"), QByteArray("take 6 0 2\n{}")})
        EXPECT_EQ(movesIn(whole + tail), 6) << tail.left(20).constData();
    EXPECT_FALSE(TakeJournal::read(folder.filePath(QStringLiteral("absent"))));
}

} // namespace
} // namespace tessik
