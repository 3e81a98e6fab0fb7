#include "TessikAutomation/Views/Window/ZeroConsoleMenu.h"

#include "TessikAutomation/Help/HelpContext.h"

#include <QPushButton>

namespace tessik {
namespace {

QString listed(const QString& heading, const QStringList& lines) {
    return lines.isEmpty()
               ? QString()
               : QStringLiteral("\n\n") + heading + (QStringList{QString()} + lines).join(QStringLiteral("\n•  "));
}

} // namespace

ZeroConsoleMenu::ZeroConsoleMenu(const ZeroConsole& zeroConsole, QUndoStack& history, QWidget* parent)
    : QMenu(QStringLiteral("&Zero Console"), parent), _zeroConsole(zeroConsole), _history(history) {
    for (const ResetTier tier : allResetTiers) {
        if (tier == ResetTier::channelsAndMasterSendToConsole) addSeparator();
        connect(addAction(texts(tier).menuTitle), &QAction::triggered, this, [this, tier] { ask(tier); });
    }
}

void ZeroConsoleMenu::ask(ResetTier tier) {
    const ResetTierTexts said = texts(tier);
    QString message = said.dialogMessage + listed(QStringLiteral("Back to defaults here"), said.resets);
    if (!said.sendsNow.isEmpty() && !_zeroConsole.output.port.connectedDestinationID.value())
        message += QStringLiteral("\n\nNo MIDI Out is connected: nothing will be sent.");
    else
        message += listed(QStringLiteral("Sent to the desk now"), said.sendsNow);
    _confirmation = new QMessageBox(QMessageBox::Warning, QStringLiteral("Zero Console"), said.dialogTitle,
                                    QMessageBox::Cancel, parentWidget()->window());
    _confirmation->setAttribute(Qt::WA_DeleteOnClose);
    setHelpContext(*_confirmation, HelpContext::zeroConsole);
    _confirmation->setInformativeText(message);
    _confirmation->setTextFormat(Qt::PlainText);
    QPushButton* zero = _confirmation->addButton(QStringLiteral("Zero It"), QMessageBox::DestructiveRole);
    _confirmation->setDefaultButton(QMessageBox::Cancel);
    connect(zero, &QPushButton::clicked, this, [this, tier] {
        _zeroConsole.run(tier);
        _history.clear();
    });
    _confirmation->open();
}

} // namespace tessik
