#pragma once

#include "TessikAutomation/Views/Controls/EntryField.h"
#include "TessikAutomation/Views/Controls/TextButton.h"

#include <QFrame>

class QHBoxLayout;
class QLabel;

namespace tessik {

/// Where something new gets its name: a field with a proposal, "Save", and a way out. Clicking a button leaves the
/// keyboard focus where it is.
class NameSection : public QFrame {
    Q_OBJECT

public:
    NameSection(const QString& title, const QString& dropText, QWidget* parent);

    /// Begins with that name.
    void propose(const QString& name);
    void setDetail(const QString& detail);
    EntryField& field() const { return *_field; }

Q_SIGNALS:
    /// The name as typed, or the proposal if empty.
    void saved(const QString& name);
    void dropped();

protected:
    /// At the right end of the title.
    void addToHeading(QWidget* widget);
    /// Between the title and the name.
    void addLine(QWidget* line);

private:
    QHBoxLayout* _heading;
    QLabel* _detail;
    EntryField* _field;
};

} // namespace tessik
