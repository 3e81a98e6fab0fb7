#pragma once

#include "TessikAutomation/Views/Theme/Look.h"

#include <QDialog>

class QVBoxLayout;

namespace tessik {

/// The first-run card: ways to begin. Its result is the `Choice`.
class WelcomeView final : public QDialog {
    Q_OBJECT

public:
    enum Choice : int { later = QDialog::Rejected, setUpMIDI, useRig, readManual };

    /// `noMIDI`: why this machine has no MIDI; empty if it has.
    WelcomeView(const Look& look, const QString& noMIDI, QWidget* parent);

    /// Whether nobody on this machine has chosen a port or dismissed the card.
    static bool isDue();

protected:
    void done(int choice) override;

private:
    void addChoice(QVBoxLayout& rows, Choice choice, const QString& text, const QString& help, bool isFirst);
};

} // namespace tessik
