#include "TessikAutomation/Application/ApplicationFixture.h"
#include "TessikAutomation/Views/Controls/SymbolButton.h"
#include "TessikAutomation/Views/Controls/TextLine.h"
#include "TessikAutomation/Views/Metrics.h"
#include "TessikAutomation/Views/Window/HeaderView.h"

#include <QAbstractButton>

namespace tessik {
namespace {

/// The program's header, in the worst of what it may have to say.
struct HeaderViewTest : ApplicationTest {
    HeaderViewTest() { application.window.show(); }

    void resize(int width) {
        application.window.resize(width, 700);
        settle();
    }
    void loadPass() {
        const AutomationPass pass{.id = QUuid::createUuid(),
                                  .name = QStringLiteral("Second verse, the one with the long name"),
                                  .createdAt = currentSecond(),
                                  .frameRate = MTCFrameRate::fps30Drop};
        for (int i = 0; i < 1000; ++i)
            application.passes.save({.id = QUuid::createUuid(), .name = pass.name, .createdAt = pass.createdAt});
        application.passEngine.select(pass);
        application.passes.save(pass);
    }
    /// Status of two lines with the warning below, and three problems.
    void worst() {
        loadPass();
        application.mtcClock.handleFullFrame({.frameRate = MTCFrameRate::fps30});
        application.passEngine.mode = AutomationMode::update;
        application.passEngine.tick();
        for (const QLatin1String key : {SavedSettings::Key::consoleSourceID, SavedSettings::Key::midiOutDestinationID,
                                        SavedSettings::Key::timecodeSourceID})
            SavedSettings::setUniqueID(key, 77);
        for (int i = 0; i < 100 && !application.window.problemsKey().isVisible(); ++i)
            QApplication::processEvents();
        EXPECT_TRUE(application.window.problemsKey().isVisible());
    }
    /// Whatever is not made up of other parts.
    std::vector<QWidget*> items() const {
        std::vector<QWidget*> found;
        for (QWidget* widget : header.findChildren<QWidget*>())
            if (widget->isVisible() && widget->findChildren<QWidget*>().isEmpty()) found.push_back(widget);
        return found;
    }
    QRect place(const QWidget& item) const { return {item.mapTo(&header, QPoint()), item.size()}; }

    void expectWhole(const QWidget& item) {
        const QString name = item.objectName() + u'/' + item.accessibleName();
        EXPECT_TRUE(header.rect().contains(place(item))) << qPrintable(name);
        if (const auto* button = qobject_cast<const QAbstractButton*>(&item)) {
            const bool isPrintedInWhole = qobject_cast<const SymbolButton*>(button) != nullptr;
            EXPECT_GE(button->width(), isPrintedInWhole ? button->sizeHint().width() : 28) << qPrintable(name);
        } else if (const auto* line = qobject_cast<const TextLine*>(&item)) {
            const bool mayBeElided = name.startsWith(u"title") || name.startsWith(u"recalled");
            EXPECT_TRUE(mayBeElided || !line->isElided()) << qPrintable(name);
        } else if (const auto* label = qobject_cast<const QLabel*>(&item); label && !label->text().isEmpty()) {
            const QRect needed = QFontMetrics(label->font())
                                     .boundingRect(QRect(0, 0, label->width(), 1000),
                                                   label->wordWrap() ? Qt::TextWordWrap : 0, label->text());
            EXPECT_LE(needed.width(), label->width()) << qPrintable(label->text());
            EXPECT_LE(needed.height(), label->height() + 1) << qPrintable(label->text());
        }
    }

    HeaderView& header = *application.window.findChild<HeaderView*>();
};

TEST_F(HeaderViewTest, NothingMeetsOrIsCutAtAnyWidth) {
    const auto check = [this](int width) {
        SCOPED_TRACE(width);
        resize(width);
        ASSERT_EQ(header.width(), width);
        const std::vector<QWidget*> all = items();
        EXPECT_GE(all.size(), 25u);
        for (std::size_t i = 0; i < all.size(); ++i) {
            expectWhole(*all[i]);
            for (std::size_t j = 0; j < i; ++j)
                EXPECT_FALSE(place(*all[i]).intersects(place(*all[j])))
                    << qPrintable(all[i]->objectName() + all[i]->accessibleName()) << " meets "
                    << qPrintable(all[j]->objectName() + all[j]->accessibleName());
        }
        for (const char* always : {"WRITE", "UPDATE", "READ", "NULL", "title", "state", "status"}) {
            const auto* item = header.findChild<QWidget*>(QLatin1String(always));
            EXPECT_TRUE(item && item->isVisible() && item->width() > 0) << always;
        }
        const auto& title = *header.findChild<TextLine*>(QStringLiteral("title"));
        EXPECT_GE(title.width(), std::min(96, title.sizeHint().width()));
    };
    for (const int width : {1024, 1206, 1600})
        check(width);
    worst();
    for (int width = 1024; width <= 2600 && !HasFailure(); width += width < 1500 ? 8 : 100)
        check(width);
}

TEST_F(HeaderViewTest, GivesWayInOrder) {
    loadPass();
    resize(2600);
    HeaderFit last = HeaderFit::legends;
    std::vector<int> changes; // the widths at which the layout changes
    for (int width = 2600; width >= 1024; --width) {
        const HeaderFit fit = header.fitFor(width);
        ASSERT_GE(fit, last);
        if (std::exchange(last, fit) != fit) changes.push_back(width);
    }
    ASSERT_EQ(changes.size(), 2u);
    EXPECT_LT(changes[1], 1206) << "a window as it first opens on a screen of 1366 has its header in one row";
    resize(changes[0] + 4);
    EXPECT_TRUE(header.findChild<TextLine*>(QStringLiteral("recalled"))->isElided()) << "before any legend goes";
    for (const auto& [width, second] : {std::pair(changes[1], Metrics::headerSecondRowHeight), {changes[1] + 4, 0}}) {
        resize(width);
        EXPECT_EQ(header.height(), Metrics::headerHeight + second);
    }
}

} // namespace
} // namespace tessik
