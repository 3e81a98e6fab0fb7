#pragma once

#include "TessikAutomation/Help/HelpTopic.h"
#include "TessikAutomation/Views/Help/HelpStyle.h"

#include <QWidget>

class QLabel;
class QLineEdit;
class QListWidget;
class QStackedWidget;
class QToolButton;

namespace tessik {

class HelpPage;

/// The manual: a list of chapters with a search field on the left, the chosen chapter on the right.
class HelpView final : public QWidget {
public:
    explicit HelpView(const Look& look, HelpTopics topics = manual(), QWidget* parent = nullptr);

    /// Chooses the chapter with that title and ends a search that hides it. An unknown title changes nothing.
    void showTopic(const QString& title);
    void setQuery(const QString& query);
    void setLook(const Look& look);

    /// The title of the chapter shown; empty if the search found none.
    QString shownTitle() const { return _shown.title; }
    /// The titles in the list, in its order.
    QStringList visibleTitles() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* makeSidebar();
    QWidget* makeDetail(const Look& look);
    QWidget* makeNoResults();
    void search(const QString& query);
    void select(const QString& title);
    void refresh();

    const HelpTopics _topics;
    QString _query;
    QString _selection; ///< the title chosen last, even while the search hides it
    HelpTopic _shown;

    QLineEdit* _search;
    QAction* _searchIcon;
    QAction* _clear;
    QListWidget* _list;
    QStackedWidget* _detail;
    HelpPage* _page;
    QToolButton* _close;
    QLabel* _noResultsText;
};

} // namespace tessik
