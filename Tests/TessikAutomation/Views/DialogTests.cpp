#include "Support/Sessions.h"
#include "TessikAutomation/Application/ApplicationFixture.h"
#include "TessikAutomation/Views/Theme/ToolTips.h"

#include <QFile>
#include <QHelpEvent>
#include <QMessageBox>
#include <QTimer>
#include <QToolTip>

namespace tessik {
namespace {

TEST_F(ApplicationTest, ToolTipsAreWrappedWhereverTheyAreLong) {
    QWidget widget;
    QString text = QStringLiteral("Use as this session's starting console state -- recalled automatically when the "
                                  "session opens  (S)\nA second line");
    widget.setToolTip(text);
    QHelpEvent asked(QEvent::ToolTip, QPoint(1, 1), QPoint(1, 1));
    QApplication::sendEvent(&widget, &asked);
    const QStringList lines = QToolTip::text().split(QLatin1Char('\n'));
    EXPECT_EQ(lines.size(), 3);
    for (const QString& line : lines)
        EXPECT_LE(QFontMetrics(QToolTip::font()).horizontalAdvance(line), ToolTips::width) << qPrintable(line);
    EXPECT_EQ(lines.join(QLatin1Char(' ')), text.replace(QLatin1Char('\n'), QLatin1Char(' '))) << "no word is lost";
    QToolTip::hideText();
}

TEST_F(ApplicationTest, AFileThatCannotBeOpenedPointsToTheVersionBefore) {
    const auto alertFor = [this](const QString& path) {
        QString text;
        QTimer::singleShot(0, &application.window, [&text] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_TRUE(box);
            text = box->informativeText();
            box->close();
        });
        application.session.open(QUrl::fromLocalFile(path));
        return text;
    };
    const QString path = folder.filePath(QStringLiteral("Mix.tessik"));
    ASSERT_TRUE(writeFile(path, "{\n\"passes\": [,]\n}"));
    EXPECT_TRUE(alertFor(path).contains(QStringLiteral("line 2, at “passes”")));
    EXPECT_FALSE(alertFor(path).contains(QLatin1Char('~')));
    ASSERT_TRUE(QFile::copy(path, path + QLatin1Char('~')));
    EXPECT_TRUE(alertFor(path).contains(QStringLiteral("open “%1~”").arg(path)));
}

} // namespace
} // namespace tessik
