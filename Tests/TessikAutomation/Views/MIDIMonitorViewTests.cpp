#include "TessikAutomation/Views/Monitor/MIDIMonitorView.h"
#include "TessikKit/MIDI/MIDIWords.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <gtest/gtest.h>

namespace tessik {
namespace {

struct MIDIMonitorViewTest : testing::Test {
    MIDIMonitorViewTest() {
        MIDIMonitor ports;
        ports.watch(QStringLiteral("MIDI In"), words);
        view = std::make_unique<MIDIMonitorView>(std::move(ports), nullptr);
    }
    void pass(std::uint32_t word) { words.record(UptimeClock::system().now(), word); }
    int rows() const { return view->table().model()->rowCount(); }
    QStringList copied() const {
        view->copy();
        return QApplication::clipboard()->text().split(u'\n', Qt::SkipEmptyParts);
    }
    template <typename Button>
    Button& key(const char* text) const {
        for (Button* each : view->findChildren<Button*>())
            if (each->text().remove(u'&') == QLatin1String(text)) return *each;
        ADD_FAILURE() << text;
        return *view->findChild<Button*>();
    }

    WordRing words;
    std::unique_ptr<MIDIMonitorView> view;
};

TEST_F(MIDIMonitorViewTest, ListsWhatPassedBeforeItOpenedAndWhatTheFiltersLeave) {
    pass(MIDIWords::controlChange(1, 11, 88));
    EXPECT_EQ(rows(), 0) << "nothing is made while it is closed";
    view->show();
    pass(MIDIWords::system(0xFE));
    view->look();
    ASSERT_EQ(rows(), 2);
    EXPECT_TRUE(copied()[0].endsWith(QStringLiteral("\tMIDI In\tFader 12 → −6.1 dB\tB0 0B 58")));
    view->table().selectRow(1);
    EXPECT_EQ(copied().size(), 1);
    key<QCheckBox>("Other").click();
    EXPECT_EQ(rows(), 1);
    pass(MIDIWords::system(0xFE));
    view->look();
    EXPECT_EQ(rows(), 1);
    key<QCheckBox>("Other").click();
    EXPECT_EQ(rows(), 3) << "what was hidden is kept";
    key<QPushButton>("Clear").click();
    EXPECT_EQ(rows(), 0);
    for (std::size_t i = 0; i < 5 * MonitorModel::maxLines; ++i) {
        pass(MIDIWords::controlChange(1, 0, int(i % 128)));
        if (i % 500 == 0) view->look();
    }
    EXPECT_LE(std::size_t(rows()), MonitorModel::maxLines);
    EXPECT_TRUE(copied().constLast().contains(QStringLiteral("Fader 1 ")));
}

TEST_F(MIDIMonitorViewTest, APauseHoldsTheListStillAndEscClosesIt) {
    view->show();
    view->pauseKey().click();
    pass(MIDIWords::controlChange(1, 11, 88));
    view->hide();
    view->show();
    EXPECT_EQ(rows(), 0);
    view->pauseKey().click();
    EXPECT_TRUE(QTest::qWaitFor([this] { return rows() == 1; }));
    QTest::keyClick(&view->table(), Qt::Key_Escape);
    EXPECT_FALSE(view->isVisible());
}

} // namespace
} // namespace tessik
