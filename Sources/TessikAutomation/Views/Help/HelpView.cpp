#include "TessikAutomation/Views/Help/HelpView.h"

#include "TessikAutomation/Views/Drawing/SVGSymbol.h"
#include "TessikAutomation/Views/Help/HelpPage.h"

#include <QAction>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolButton>

#include <algorithm>

namespace tessik {

HelpView::HelpView(const Look& look, HelpTopics topics, QWidget* parent)
    : QWidget(parent, Qt::Window), _topics(std::move(topics)) {
    setObjectName(QStringLiteral("help"));
    setWindowTitle(QStringLiteral("TessikAutomation Manual"));
    resize(1000, 720);
    setMinimumSize(640, 400);

    auto* const splitter = new QSplitter;
    splitter->setHandleWidth(4);
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(makeSidebar());
    splitter->addWidget(makeDetail(look));
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({HelpStyle::sidebarWidth, width() - HelpStyle::sidebarWidth});
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(splitter);

    const auto onKey = [this](const QKeySequence& key, auto action) {
        connect(new QShortcut(key, this), &QShortcut::activated, this, action);
    };
    onKey(QKeySequence::Find, [this] {
        _search->setFocus();
        _search->selectAll();
    });
    onKey(Qt::Key_Escape, [this] {
        if (_query.isEmpty())
            close();
        else
            setQuery({});
    });
    setLook(look);
    refresh();
    _list->setFocus();
}

QWidget* HelpView::makeSidebar() {
    _search = new QLineEdit;
    _search->setObjectName(QStringLiteral("search"));
    _search->setPlaceholderText(QStringLiteral("Search the manual"));
    _search->setAccessibleName(QStringLiteral("Search the manual"));
    _search->setToolTip(QStringLiteral("Search the manual  (Ctrl+F)"));
    _search->setFont(HelpStyle::listFont());
    _search->installEventFilter(this);
    _searchIcon = _search->addAction(QIcon(), QLineEdit::LeadingPosition);
    _clear = _search->addAction(QIcon(), QLineEdit::TrailingPosition);
    _clear->setToolTip(QStringLiteral("Clear the search"));
    connect(_clear, &QAction::triggered, _search, &QLineEdit::clear);
    connect(_search, &QLineEdit::textChanged, this, &HelpView::search);
    connect(_search, &QLineEdit::returnPressed, this, [this] { _page->goToNextMatch(); });

    _list = new QListWidget;
    _list->setObjectName(QStringLiteral("topics"));
    _list->setAccessibleName(QStringLiteral("Chapters"));
    _list->setFont(HelpStyle::listFont());
    _list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    _list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    connect(_list, &QListWidget::currentTextChanged, this, &HelpView::select);

    auto* const sidebar = new QWidget;
    sidebar->setObjectName(QStringLiteral("sidebar"));
    sidebar->setAttribute(Qt::WA_StyledBackground);
    sidebar->setMinimumWidth(200);
    auto* const layout = new QVBoxLayout(sidebar);
    layout->setContentsMargins(0, 0, 1, 8);
    layout->setSpacing(0);
    auto* const top = new QHBoxLayout;
    top->setContentsMargins(12, 12, 12, 10);
    top->addWidget(_search);
    layout->addLayout(top);
    layout->addWidget(_list, 1);
    return sidebar;
}

QWidget* HelpView::makeDetail(const Look& look) {
    _close = new QToolButton;
    _close->setObjectName(QStringLiteral("close"));
    _close->setToolTip(QStringLiteral("Close the manual  (Esc)"));
    _close->setAccessibleName(QStringLiteral("Close the manual"));
    connect(_close, &QToolButton::clicked, this, &QWidget::close);

    _page = new HelpPage(HelpColors::of(look), visibleTitles());
    connect(_page, &HelpPage::chapterWanted, this, &HelpView::showTopic);
    _page->setObjectName(QStringLiteral("page"));
    _detail = new QStackedWidget;
    _detail->addWidget(_page);
    _detail->addWidget(makeNoResults());

    auto* const detail = new QWidget;
    auto* const layout = new QVBoxLayout(detail);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* const toolbar = new QHBoxLayout;
    toolbar->setContentsMargins(12, 12, 12, 4);
    toolbar->addStretch(1);
    toolbar->addWidget(_close);
    layout->addLayout(toolbar);
    layout->addWidget(_detail, 1);
    return detail;
}

QWidget* HelpView::makeNoResults() {
    auto* const title = new QLabel(QStringLiteral("No Results"));
    title->setObjectName(QStringLiteral("noResultsTitle"));
    title->setFont(HelpStyle::headingFont());
    title->setAlignment(Qt::AlignHCenter);
    _noResultsText = new QLabel;
    _noResultsText->setObjectName(QStringLiteral("noResultsText"));
    _noResultsText->setFont(HelpStyle::tableFont());
    _noResultsText->setTextFormat(Qt::PlainText);
    _noResultsText->setAlignment(Qt::AlignHCenter);
    _noResultsText->setWordWrap(true);

    auto* const placeholder = new QWidget;
    auto* const layout = new QVBoxLayout(placeholder);
    layout->setContentsMargins(HelpStyle::pageMargin, 0, HelpStyle::pageMargin, HelpStyle::pageMargin);
    layout->addStretch(2);
    layout->addWidget(title);
    layout->addSpacing(6);
    layout->addWidget(_noResultsText);
    layout->addStretch(3);
    return placeholder;
}

void HelpView::setLook(const Look& look) {
    const HelpColors colors = HelpColors::of(look);
    setStyleSheet(HelpStyle::sheet(colors));
    QPalette palette = this->palette();
    palette.setColor(QPalette::PlaceholderText, colors.dimText);
    palette.setColor(QPalette::Highlight, colors.focus);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    _search->setPalette(palette);
    _page->setPalette(palette);
    _searchIcon->setIcon(symbolIcon(QStringLiteral("magnifier"), colors.dimText));
    _clear->setIcon(symbolIcon(QStringLiteral("clear"), colors.dimText));
    _close->setIcon(symbolIcon(QStringLiteral("clear"), colors.text));
    _page->setColors(colors);
}

void HelpView::showTopic(const QString& title) {
    if (std::ranges::find(_topics, title, &HelpTopic::title) == _topics.end()) return;
    _selection = title;
    if (!visibleTitles().contains(title)) setQuery({});
    refresh();
}

void HelpView::setQuery(const QString& query) { _search->setText(query); }

QStringList HelpView::visibleTitles() const {
    QStringList titles;
    for (const HelpTopic& topic : visibleTopics(_topics, _query))
        titles.push_back(topic.title);
    return titles;
}

void HelpView::search(const QString& query) {
    _query = query;
    refresh();
}

void HelpView::select(const QString& title) {
    _selection = title;
    refresh();
}

/// Brings list and page in line with the query and the selection.
void HelpView::refresh() {
    const HelpTopics visible = visibleTopics(_topics, _query);
    const HelpTopic* const topic = shownTopic(visible, _selection);
    _clear->setVisible(!_query.isEmpty());
    {
        const QSignalBlocker quiet(_list); // here the list follows the selection instead of making one
        const auto isListed = [&](const HelpTopic& t) {
            const auto row = static_cast<int>(&t - visible.data());
            return _list->item(row) && _list->item(row)->text() == t.title;
        };
        if (_list->count() != static_cast<int>(visible.size()) || !std::ranges::all_of(visible, isListed)) {
            _list->clear();
            for (const HelpTopic& t : visible) {
                _list->addItem(t.title);
                _list->item(_list->count() - 1)->setToolTip(t.title);
            }
        }
        _list->setCurrentRow(topic ? static_cast<int>(topic - visible.data()) : -1);
    }
    _page->markMatches(_query);
    const HelpTopic shown = topic ? *topic : HelpTopic{};
    if (shown != _shown) {
        _shown = shown;
        if (topic) _page->show(shown);
    }
    _noResultsText->setText(QStringLiteral("Nothing in the manual matches “%1”.").arg(_query));
    _detail->setCurrentIndex(topic ? 0 : 1);
}

/// In the search field, the keys that move through a list move through the chapters.
bool HelpView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == _search && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown) {
            const int step = key == Qt::Key_Up || key == Qt::Key_PageUp ? -1 : 1;
            _list->setCurrentRow(std::clamp(_list->currentRow() + step, 0, std::max(0, _list->count() - 1)));
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace tessik
