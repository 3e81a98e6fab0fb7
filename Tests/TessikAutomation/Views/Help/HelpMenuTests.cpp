#include "TessikAutomation/Application/ApplicationFixture.h"
#include "TessikAutomation/Help/HelpContext.h"
#include "TessikAutomation/Views/Help/HelpMenu.h"

#include <QAbstractButton>
#include <QListWidget>
#include <QMenuBar>

namespace tessik {
namespace {

struct HelpMenuTest : ApplicationTest {
    HelpMenuTest() { activate(application.window); }
    /// Presses F1 where the keyboard is, and names the chapter that opens.
    QString chapter(QWidget& window) {
        activate(window);
        QTest::keyClick(window.windowHandle(), Qt::Key_F1);
        QApplication::processEvents();
        return help.view() ? help.view()->shownTitle() : QStringLiteral("none");
    }
    QAbstractButton& button(const char* name) {
        return *application.window.findChild<QAbstractButton*>(QLatin1String(name));
    }

    HelpMenu& help = *application.window.findChild<HelpMenu*>();
};

TEST_F(HelpMenuTest, F1OpensTheChapterOfWhereTheUserIs) {
    MainWindow& window = application.window;
    struct Case {
        QWidget* focus;
        HelpContext context;
    };
    for (const auto& [focus, context] :
         {Case{window.centralWidget(), HelpContext::mainWindow}, Case{&button("WRITE"), HelpContext::recording},
          Case{window.desk().master(), HelpContext::masterSection},
          Case{window.desk().inputModule(3), HelpContext::channelStrip},
          Case{window.desk().strip(ChannelKind::stereo()), HelpContext::channelStrip}}) {
        focus->setFocus();
        EXPECT_EQ(chapter(window), chapterTitle(context)) << qPrintable(focus->objectName());
    }
    window.desk().scribbles().editingID = QStringLiteral("input-1");
    QApplication::processEvents();
    EXPECT_EQ(chapter(window), chapterTitle(HelpContext::scribbleStrip));
}

TEST_F(HelpMenuTest, MenusAndDialogsOverTheWindowHaveTheirOwn) {
    MainWindow& window = application.window;
    const QList<QAction*> menus = window.menuBar()->actions();
    menus.first()->menu()->popup(window.mapToGlobal(QPoint()));
    EXPECT_EQ(chapter(window), QStringLiteral("Sessions, Snapshots and Passes"));
    EXPECT_FALSE(QApplication::activePopupWidget());

    window.openSettings();
    EXPECT_EQ(chapter(*window.settingsView()), QStringLiteral("Setting Up MIDI"));
    // Beside the dialog, which goes on blocking the window, the manual can be used.
    auto* topics = help.view()->findChild<QListWidget*>(QStringLiteral("topics"));
    const QPoint first = topics->viewport()->mapTo(help.view(), topics->visualItemRect(topics->item(0)).center());
    QTest::mouseClick(help.view()->windowHandle(), Qt::LeftButton, {}, first);
    EXPECT_EQ(help.view()->shownTitle(), QStringLiteral("Overview"));
    EXPECT_EQ(chapter(*help.view()), QStringLiteral("Overview")) << "within the manual there is nothing to look up";
    window.settingsView()->close();

    const QPointer<HelpView> opened = help.view();
    opened->setQuery(QStringLiteral("tape"));
    help.openManual();
    EXPECT_EQ(help.view(), opened) << "one window";
    opened->close();
    QApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(opened);
    help.openManual();
    EXPECT_EQ(help.view()->visibleTitles().size(), 18) << "the old search is gone";
}

} // namespace
} // namespace tessik
