#include "TessikAutomation/Views/Welcome/WelcomeView.h"

#include "TessikAutomation/Help/HelpContext.h"
#include "TessikAutomation/Persistence/SavedSettings.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Theme/AppStyle.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tessik {
namespace {

constexpr int cardWidth = 520;
constexpr int buttonWidth = 168;
constexpr int buttonHeight = 36;
constexpr int iconSide = 56;

const QString sheet =
    QStringLiteral("QDialog { background: @sheet; }"
                   "QLabel { color: @text; }"
                   "QLabel#help { color: @secondary; }"
                   "QPushButton { color: @text; background: @field; border: 1px solid @fieldEdge; border-radius: 6px;"
                   "  padding: 5px 16px; }"
                   "QPushButton:hover { background: @hover; }"
                   "QPushButton:default { color: white; background: @primary; }"
                   "QPushButton:focus { border: 2px solid @accent; padding: 4px 15px; }");

QLabel* wrapped(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

} // namespace

WelcomeView::WelcomeView(const Look& look, const QString& noMIDI, QWidget* parent) : QDialog(parent) {
    setHelpContext(*this, HelpContext::welcome);
    setWindowTitle(QStringLiteral("Welcome"));
    AppStyle::applySheet(*this, sheet, look);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(28, 24, 28, 20);
    layout->setSpacing(14);

    auto* top = new QHBoxLayout;
    top->setSpacing(16);
    auto* icon = new QLabel(this);
    icon->setPixmap(QApplication::windowIcon().pixmap(QSize(iconSide, iconSide), devicePixelRatioF()));
    top->addWidget(icon, 0, Qt::AlignTop);
    auto* words = new QVBoxLayout;
    words->setSpacing(4);
    auto* title = new QLabel(QStringLiteral("Welcome to TessikAutomation"), this);
    title->setFont(Type::font(20, QFont::DemiBold));
    words->addWidget(title);
    const bool hasMIDI = noMIDI.isEmpty();
    words->addWidget(wrapped(hasMIDI ? QStringLiteral("No MIDI ports are chosen yet. How do you want to begin?")
                                     : QStringLiteral("There is no MIDI on this machine: %1. The rig works without it; "
                                                      "the manual says how to get it.")
                                           .arg(noMIDI),
                             this));
    top->addLayout(words, 1);
    layout->addLayout(top);

    addChoice(*layout, setUpMIDI, QStringLiteral("Set up MIDI"),
              QStringLiteral("Choose the ports that your desk and your recorder are connected to."), hasMIDI);
    addChoice(*layout, useRig, QStringLiteral("Try it with the rig"),
              QStringLiteral("A simulated desk and recorder, with no hardware at all."), !hasMIDI);
    addChoice(*layout, readManual, QStringLiteral("Read the manual"),
              QStringLiteral("Short chapters. F1 opens the one that fits at any time."), false);
    auto* notNow = new QPushButton(QStringLiteral("Not Now"), this);
    notNow->setAutoDefault(false);
    connect(notNow, &QPushButton::clicked, this, &QDialog::reject);
    layout->addSpacing(4);
    layout->addWidget(notNow, 0, Qt::AlignRight);
    setFixedSize(cardWidth, layout->totalHeightForWidth(cardWidth));
}

void WelcomeView::addChoice(QVBoxLayout& rows, Choice choice, const QString& text, const QString& help, bool isFirst) {
    auto* row = new QHBoxLayout;
    row->setSpacing(16);
    auto* button = new QPushButton(text, this);
    button->setFixedSize(buttonWidth, buttonHeight);
    button->setAccessibleDescription(help);
    button->setDefault(isFirst);
    if (isFirst) button->setFocus();
    connect(button, &QPushButton::clicked, this, [this, choice] { done(choice); });
    row->addWidget(button);
    QLabel* words = wrapped(help, this);
    words->setObjectName(QStringLiteral("help"));
    row->addWidget(words, 1);
    rows.addLayout(row);
}

bool WelcomeView::isDue() {
    using namespace SavedSettings;
    if (isWelcomeDismissed()) return false;
    for (const QLatin1String port :
         {Key::consoleSourceID, Key::midiOutDestinationID, Key::timecodeSourceID, Key::transportDestinationID})
        if (uniqueID(port)) return false;
    return true;
}

void WelcomeView::done(int choice) {
    SavedSettings::setInteger(SavedSettings::Key::welcomeDismissed, 1);
    QDialog::done(choice);
}

} // namespace tessik
