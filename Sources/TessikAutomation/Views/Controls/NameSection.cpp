#include "TessikAutomation/Views/Controls/NameSection.h"

#include "TessikAutomation/Views/Drawing/Type.h"

#include <QLabel>
#include <QVBoxLayout>

namespace tessik {
NameSection::NameSection(const QString& title, const QString& dropText, QWidget* parent)
    : QFrame(parent), _heading(new QHBoxLayout), _detail(new QLabel(this)), _field(new EntryField(this)) {
    setObjectName(QStringLiteral("card"));
    setAccessibleName(title);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 10, 12, 12);
    layout->setSpacing(8);
    auto* titleLabel = new QLabel(title, this);
    titleLabel->setFont(Type::font(12, QFont::DemiBold));
    _detail->setObjectName(QStringLiteral("secondary"));
    _detail->setFont(Type::font(11, QFont::Normal));
    _heading->addWidget(titleLabel);
    _heading->addStretch(1);
    _heading->addWidget(_detail);
    layout->addLayout(_heading);

    auto* line = new QHBoxLayout;
    line->setSpacing(8);
    auto* label = new QLabel(QStringLiteral("Name"), this);
    label->setBuddy(_field);
    _field->setObjectName(QStringLiteral("name"));
    _field->setAccessibleName(label->text());
    line->addWidget(label);
    line->addWidget(_field, 1);
    layout->addLayout(line);

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    auto* drop = new TextButton(dropText, "drop", this);
    auto* save = new TextButton(QStringLiteral("Save"), "save", this);
    buttons->addStretch(1);
    buttons->addWidget(drop);
    buttons->addWidget(save);
    layout->addLayout(buttons);

    const auto keep = [this] {
        const QString name = _field->text().trimmed();
        _field->clearFocus();
        Q_EMIT saved(name.isEmpty() ? _field->placeholderText() : name);
    };
    connect(save, &QPushButton::clicked, this, keep);
    connect(_field, &EntryField::kept, this, keep);
    connect(_field, &EntryField::moved, this,
            [drop, save](bool forward) { (forward ? save : drop)->setFocus(Qt::TabFocusReason); });
    connect(_field, &EntryField::dropped, this, [this] { _field->clearFocus(); });
    connect(drop, &QPushButton::clicked, this, [this] {
        _field->clearFocus();
        Q_EMIT dropped();
    });
}

void NameSection::addToHeading(QWidget* widget) { _heading->addWidget(widget); }
void NameSection::addLine(QWidget* line) { static_cast<QVBoxLayout*>(layout())->insertWidget(1, line); }

void NameSection::propose(const QString& name) {
    _field->setPlaceholderText(name);
    _field->setText(name);
}

void NameSection::setDetail(const QString& detail) { _detail->setText(detail); }

} // namespace tessik
