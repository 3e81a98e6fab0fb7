#include "TessikAutomation/Views/Session/WidgetSessionDialogs.h"

#include "TessikAutomation/Help/HelpContext.h"

#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QStyle>
#include <QUrl>

namespace tessik {

namespace {

const QString programName = QStringLiteral("TessikAutomation");

std::optional<QString> run(QFileDialog& panel, const WidgetSessionDialogs::FileType& type) {
    panel.setNameFilters({type.filter, QStringLiteral("All files (*)")});
    setHelpContext(panel, HelpContext::snapshots);
    if (panel.exec() != QDialog::Accepted || panel.selectedFiles().isEmpty()) return std::nullopt;
    return panel.selectedFiles().constFirst();
}

WidgetSessionDialogs::FileType sessionType() {
    return {QStringLiteral("Sessions (*.tessik)"), QStringLiteral("tessik")};
}

/// A question whose first line is `title`. The buttons are added by the caller.
class Question final : public QMessageBox {
public:
    Question(QWidget& window, Icon icon, const QString& title, const QString& text) : QMessageBox(&window) {
        setHelpContext(*this, HelpContext::snapshots);
        setIcon(icon);
        setText(title);
        setInformativeText(text);
        setTextFormat(Qt::PlainText); // file names are not markup
        setWindowModality(Qt::WindowModal);
        setWindowTitle(programName);
    }

protected:
    void showEvent(QShowEvent* event) override {
        QMessageBox::showEvent(event);
        activateWindow(); // at the start the main window may ask for the keyboard at the same time
    }
};

} // namespace

std::optional<QString> WidgetSessionDialogs::chooseToOpen(const QString& title, const FileType& type) {
    QFileDialog panel(&_window, title);
    panel.setFileMode(QFileDialog::ExistingFile);
    return run(panel, type);
}

std::optional<QString> WidgetSessionDialogs::chooseToSave(const QString& title, const FileType& type,
                                                          const QString& proposed) {
    QFileDialog panel(&_window, title);
    panel.setAcceptMode(QFileDialog::AcceptSave);
    panel.setFileMode(QFileDialog::AnyFile);
    panel.setDefaultSuffix(type.suffix);
    panel.selectFile(proposed);
    return run(panel, type);
}

std::optional<QString> WidgetSessionDialogs::chooseSessionToOpen(const QString& message) {
    return chooseToOpen(message, sessionType());
}

std::optional<QString> WidgetSessionDialogs::chooseWhereToSave(const QString& proposed) {
    return chooseToSave(QStringLiteral("Save Session As"), sessionType(), proposed);
}

void WidgetSessionDialogs::alert(const QString& title, const QString& text) {
    Question box(_window, QMessageBox::Warning, title, text);
    box.addButton(QStringLiteral("OK"), QMessageBox::AcceptRole);
    box.exec();
}

void WidgetSessionDialogs::alertOfFile(const QString& title, const QString& text, const QString& path) {
    Question box(_window, QMessageBox::Warning, title, text);
    const QPushButton* show = box.addButton(QStringLiteral("Show Folder"), QMessageBox::ActionRole);
    QPushButton* ok = box.addButton(QStringLiteral("OK"), QMessageBox::AcceptRole);
    box.setDefaultButton(ok);
    box.setEscapeButton(ok);
    box.exec();
    if (box.clickedButton() == show) QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).absolutePath()));
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

SessionDialogs::TakeAnswer WidgetSessionDialogs::askTake(const QString& title, const QString& text,
                                                         const QString& proposedName) {
    QDialog box(&_window);
    setHelpContext(box, HelpContext::passes);
    box.setWindowTitle(programName);
    box.setWindowModality(Qt::WindowModal);
    auto* layout = new QGridLayout(&box);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->setHorizontalSpacing(16);
    layout->setVerticalSpacing(12);
    const int iconSide = box.style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, &box);
    auto* icon = new QLabel(&box);
    icon->setPixmap(box.style()
                        ->standardIcon(QStyle::SP_MessageBoxQuestion)
                        .pixmap(QSize(iconSide, iconSide), box.devicePixelRatio()));
    const auto addLine = [&](int row, const QString& line) {
        auto* label = new QLabel(line, &box);
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        layout->addWidget(label, row, 1, 1, 2);
        return label;
    };
    layout->addWidget(icon, 0, 0, 2, 1, Qt::AlignTop);
    addLine(0, title)->setObjectName(QStringLiteral("qt_msgbox_label")); // styled like the titles of all questions
    addLine(1, text);
    auto* name = new QLineEdit(proposedName, &box);
    name->setObjectName(QStringLiteral("name"));
    name->setPlaceholderText(proposedName);
    name->selectAll();
    auto* nameLabel = new QLabel(QStringLiteral("&Name"), &box);
    nameLabel->setBuddy(name);
    layout->addWidget(nameLabel, 2, 1);
    layout->addWidget(name, 2, 2);
    layout->setColumnStretch(2, 1);
    layout->setColumnMinimumWidth(2, 280);

    auto* buttons = new QDialogButtonBox(&box);
    const QPushButton* save = buttons->addButton(QStringLiteral("Save"), QDialogButtonBox::AcceptRole);
    const QPushButton* discard = buttons->addButton(QStringLiteral("Discard"), QDialogButtonBox::DestructiveRole);
    buttons->addButton(QStringLiteral("Cancel"), QDialogButtonBox::RejectRole);
    layout->addWidget(buttons, 3, 0, 1, 3);
    Unsaved choice = Unsaved::cancel;
    QObject::connect(buttons, &QDialogButtonBox::clicked, &box, [&](const QAbstractButton* button) {
        choice = button == save ? Unsaved::save : button == discard ? Unsaved::discard : Unsaved::cancel;
        box.accept();
    });
    box.exec();
    const QString typed = name->text().trimmed();
    return {choice, typed.isEmpty() ? proposedName : typed};
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
