#include "TessikAutomation/Views/Session/WidgetSessionDialogs.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>

namespace tessik {

namespace {

std::optional<QString> run(QFileDialog& panel) {
    if (panel.exec() != QDialog::Accepted || panel.selectedFiles().isEmpty()) return std::nullopt;
    return panel.selectedFiles().constFirst();
}

/// A question whose first line is `title`. The buttons are added by the caller.
class Question final : public QMessageBox {
public:
    Question(QWidget& window, Icon icon, const QString& title, const QString& text) : QMessageBox(&window) {
        setIcon(icon);
        setText(title);
        setInformativeText(text);
        setTextFormat(Qt::PlainText); // file names are no markup
        setWindowModality(Qt::WindowModal);
    }
};

} // namespace

std::optional<QString> WidgetSessionDialogs::chooseSessionToOpen(const QString& message) {
    QFileDialog panel(&_window, message);
    panel.setFileMode(QFileDialog::ExistingFile);
    panel.setNameFilters({QStringLiteral("Sessions (*.tessik)"), QStringLiteral("All files (*)")});
    return run(panel);
}

std::optional<QString> WidgetSessionDialogs::chooseWhereToSave(const QString& proposed) {
    QFileDialog panel(&_window, QStringLiteral("Save Session As"));
    panel.setAcceptMode(QFileDialog::AcceptSave);
    panel.setFileMode(QFileDialog::AnyFile);
    panel.setDefaultSuffix(QStringLiteral("tessik"));
    panel.setNameFilters({QStringLiteral("Sessions (*.tessik)"), QStringLiteral("All files (*)")});
    panel.selectFile(proposed);
    return run(panel);
}

void WidgetSessionDialogs::alert(const QString& title, const QString& text) {
    Question box(_window, QMessageBox::Warning, title, text);
    box.addButton(QStringLiteral("OK"), QMessageBox::AcceptRole);
    box.exec();
}

bool WidgetSessionDialogs::confirmOverwrite(const QString& title, const QString& text) {
    Question box(_window, QMessageBox::Warning, title, text);
    const QPushButton* replace = box.addButton(QStringLiteral("Replace"), QMessageBox::DestructiveRole);
    box.setDefaultButton(box.addButton(QStringLiteral("Cancel"), QMessageBox::RejectRole));
    box.exec();
    return box.clickedButton() == replace;
}

SessionDialogs::Unsaved WidgetSessionDialogs::askUnsaved(const QString& title, const QString& text) {
    Question box(_window, QMessageBox::Question, title, text);
    QPushButton* save = box.addButton(QStringLiteral("Save"), QMessageBox::AcceptRole);
    const QPushButton* discard = box.addButton(QStringLiteral("Discard"), QMessageBox::DestructiveRole);
    box.addButton(QStringLiteral("Cancel"), QMessageBox::RejectRole);
    box.setDefaultButton(save);
    box.exec();
    if (box.clickedButton() == save) return Unsaved::save;
    return box.clickedButton() == discard ? Unsaved::discard : Unsaved::cancel;
}

SessionDialogs::Recovery WidgetSessionDialogs::askRecovery(const QString& title, const QString& text) {
    Question box(_window, QMessageBox::Question, title, text);
    QPushButton* recover = box.addButton(QStringLiteral("Recover"), QMessageBox::AcceptRole);
    const QPushButton* discard = box.addButton(QStringLiteral("Discard"), QMessageBox::DestructiveRole);
    box.setEscapeButton(box.addButton(QStringLiteral("Ask Later"), QMessageBox::RejectRole));
    box.setDefaultButton(recover);
    box.exec();
    if (box.clickedButton() == recover) return Recovery::recover;
    return box.clickedButton() == discard ? Recovery::discard : Recovery::later;
}

} // namespace tessik
