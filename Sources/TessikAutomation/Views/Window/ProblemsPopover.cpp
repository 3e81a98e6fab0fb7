#include "TessikAutomation/Views/Window/ProblemsPopover.h"

#include "TessikAutomation/Views/Controls/TextButton.h"
#include "TessikAutomation/Views/Drawing/Type.h"

#include <QFrame>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

namespace tessik {
namespace {

constexpr int roomAround = 200; ///< above and below the cards
constexpr int barWidth = 8;

} // namespace

ProblemsPopover::ProblemsPopover(const Observable<std::vector<Problem>>& problems, SymbolButton& button,
                                 DrawingContext& drawing, QWidget* over)
    : Popover(QStringLiteral("PROBLEMS"), button, drawing, over),
      _problems(problems),
      _scroll(new QScrollArea(this)),
      _cards(new QWidget),
      _observer(problems.addNotifier([this] { refreshSoon(); })) {
    auto* layout = new QVBoxLayout(_cards);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    _cards->setObjectName(QStringLiteral("list"));
    _scroll->setWidget(_cards);
    _scroll->setWidgetResizable(true);
    _scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    _scroll->setFocusPolicy(Qt::ClickFocus);
    _scroll->viewport()->setAutoFillBackground(false);
    addSection(_scroll);
    button.setColor(&Tints::warning);
    button.hide();
    refresh();
}

void ProblemsPopover::refresh() {
    const std::vector<Problem>& problems = _problems.value();
    const QString text =
        problems.size() == 1 ? QStringLiteral("1 problem") : QStringLiteral("%1 problems").arg(problems.size());
    button().setText(text);
    button().setAccessibleName(text);
    button().setToolTip(problems.empty() ? QString() : text + QStringLiteral(": click to see what to do"));
    button().setVisible(!problems.empty());
    if (problems.empty()) return close();
    if (std::exchange(_shown, problems) == problems) return;
    for (QWidget* old : _cards->findChildren<QWidget*>(QStringLiteral("card"), Qt::FindDirectChildrenOnly)) {
        leaveKeyboard(*old);
        old->hide();
        old->deleteLater();
    }
    for (const Problem& problem : problems)
        _cards->layout()->addWidget(card(problem));
    const int room = parentWidget()->height() - roomAround;
    _scroll->setFixedHeight(std::min(_cards->layout()->totalHeightForWidth(contentWidth - barWidth), room));
    fit();
}

const std::function<void()>* ProblemsPopover::answer(Problem::Offer offer) const {
    switch (offer) {
    case Problem::Offer::nothing: break;
    case Problem::Offer::settings: return &onSettingsWanted;
    case Problem::Offer::rig: return &onRigWanted;
    }
    return nullptr;
}

QWidget* ProblemsPopover::card(const Problem& problem) {
    auto* card = new QFrame(_cards);
    card->setObjectName(QStringLiteral("card"));
    card->setAccessibleName(problem.title);
    card->setAccessibleDescription(problem.remedy);
    auto* layout = new QVBoxLayout(card);
    layout->setContentsMargins(10, 8, 10, 10);
    layout->setSpacing(4);
    const auto addText = [&](const QString& text, QFont::Weight weight, const char* name) {
        auto* label = new QLabel(text, card);
        label->setObjectName(QLatin1String(name));
        label->setFont(Type::font(12, weight));
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        layout->addWidget(label);
    };
    addText(problem.title, QFont::DemiBold, "title");
    addText(problem.remedy, QFont::Normal, "secondary");
    if (const auto* act = answer(problem.offer); act && *act) {
        const bool isRig = problem.offer == Problem::Offer::rig;
        auto* button = new TextButton(isRig ? QStringLiteral("Try it with the rig") : QStringLiteral("Open Settings"),
                                      "offer", card);
        connect(button, &QPushButton::clicked, this, [this, act] {
            close();
            (*act)();
        });
        layout->addSpacing(2);
        layout->addWidget(button, 0, Qt::AlignLeft);
    }
    card->show();
    return card;
}

} // namespace tessik
