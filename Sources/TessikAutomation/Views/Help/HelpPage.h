#pragma once

#include "TessikAutomation/Views/Help/HelpStyle.h"
#include "TessikAutomation/Views/Help/HelpTopic.h"

#include <QTextBrowser>

#include <functional>

namespace tessik {

/// One chapter, typeset: a column of readable width, selectable, searchable and with text that can be copied.
class HelpPage final : public QTextBrowser {
public:
    /// `chapters`: the titles that links can name.
    HelpPage(const HelpColors& colors, QStringList chapters, QWidget* parent = nullptr);

    /// A link to this chapter was followed.
    std::function<void(const QString& title)> onChapterWanted;

    /// Shows the chapter from its top.
    void show(const HelpTopic& topic);
    /// Marks every occurrence of `query`; none if it is empty.
    void markMatches(const QString& query);
    /// Goes to the next marked place, from the last back to the first. False if there is none.
    bool goToNextMatch();
    void setColors(const HelpColors& colors);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    QMimeData* createMimeDataFromSelection() const override;

private:
    void typeset();
    void fitColumn();
    QTextCursor nextMatch(const QTextCursor& after) const;

    const QStringList _chapters;
    HelpColors _colors;
    HelpTopic _topic;
    QString _query;
};

} // namespace tessik
