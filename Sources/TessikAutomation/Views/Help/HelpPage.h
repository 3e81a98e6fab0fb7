#pragma once

#include "TessikAutomation/Help/HelpTopic.h"
#include "TessikAutomation/Views/Help/HelpStyle.h"

#include <QRegularExpression>
#include <QTextBrowser>

namespace tessik {

/// One chapter, typeset: a column of readable width, selectable, searchable and with text that can be copied.
class HelpPage final : public QTextBrowser {
    Q_OBJECT

public:
    /// `chapters`: the titles that links can name.
    HelpPage(const HelpColors& colors, QStringList chapters, QWidget* parent = nullptr);

    /// Shows the chapter from its top.
    void show(const HelpTopic& topic);
    /// Marks the words of `query` wherever they stand together, else each of them; nothing if it is empty.
    void markMatches(const QString& query);
    /// Goes to the next marked place, from the last back to the first. False if there is none.
    bool goToNextMatch();
    void setColors(const HelpColors& colors);

Q_SIGNALS:
    /// A link to this chapter was followed.
    void chapterWanted(const QString& title);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    QMimeData* createMimeDataFromSelection() const override;

private:
    void typeset();
    void fitColumn();
    QRegularExpression matcher() const;
    QTextCursor nextMatch(const QTextCursor& after) const;

    const QStringList _chapters;
    HelpColors _colors;
    HelpTopic _topic;
    QString _query;
    QRegularExpression _match; ///< what is marked; empty for nothing
};

} // namespace tessik
