#include "TessikAutomation/Views/Settings/SettingsView.h"

#include "TessikAutomation/Help/HelpContext.h"
#include "TessikAutomation/Views/Drawing/SVGSymbol.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Metrics.h"
#include "TessikAutomation/Views/Theme/AppStyle.h"

#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace tessik {
namespace {

constexpr int rowHeight = 36;
constexpr int pickerWidth = 236;
constexpr int statusWidth = 330; ///< fits the longest in two lines

const QString sheet = QStringLiteral(
    "QDialog { background: @sheet; }"
    "QLabel#title { color: @secondary; }"
    "QFrame#card { background: @card; border: 1px solid @line; border-radius: 8px; }"
    "QFrame#line { background: @line; border: none; }"
    "QLabel#status { color: @secondary; }"
    "QComboBox { color: @text; background: @field; border: 1px solid @fieldEdge; border-radius: 5px;"
    "  padding: 3px 10px; min-height: 18px; }"
    "QComboBox:focus, QPushButton:focus, QToolButton:focus { border: 1px solid @accent; }"
    "QComboBox::drop-down { border: none; width: 22px; }"
    "QComboBox QAbstractItemView { color: @text; background: @card; border: 1px solid @fieldEdge; padding: 4px;"
    "  selection-background-color: @primary; selection-color: white; outline: none; }"
    "QToolButton { color: @text; background: @field; border: 1px solid @fieldEdge; border-radius: 5px;"
    "  min-width: 28px; min-height: 24px; }"
    "QToolButton:hover, QComboBox:hover { background: @hover; }"
    "QToolButton:disabled { color: @secondary; background: @card; }"
    "QPushButton { color: white; background: @primary; border: 1px solid @fieldEdge; border-radius: 6px;"
    "  padding: 5px 22px; }");

/// A combo box whose arrow has the colour of its text, which a style sheet cannot do.
class Picker final : public QComboBox {
public:
    explicit Picker(QWidget* parent) : QComboBox(parent) { setFixedWidth(pickerWidth); }

protected:
    void paintEvent(QPaintEvent* event) override {
        QComboBox::paintEvent(event);
        QPainter painter(this);
        const QIcon arrow = symbolIcon(QStringLiteral("chevron-down"), palette().color(QPalette::Text));
        arrow.paint(&painter, QRect(width() - 21, (height() - 12) / 2, 12, 12));
    }
};

} // namespace

SettingsView::SettingsView(const AppObjects& objects, DrawingContext& drawing, QWidget* parent)
    : QDialog(parent), _objects(objects), _drawing(drawing) {
    setHelpContext(*this, HelpContext::settings);
    setWindowTitle(QStringLiteral("Settings"));
    setFixedSize(Metrics::settingsWidth, Metrics::settingsHeight);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 12, 20, 14);
    layout->setSpacing(0);
    _groups = new QVBoxLayout;
    _groups->setSpacing(0);
    layout->addLayout(_groups);
    layout->addStretch(1);

    QBoxLayout* console = addGroup(QStringLiteral("Console"));
    addPortPicker(console, QStringLiteral("MIDI In"), QStringLiteral("Receives fader/mute/EQ moves from the console"),
                  sourceChoice(SavedSettings::Key::consoleSourceID, objects.desk.input.connection));
    addPortPicker(console, QStringLiteral("MIDI Out"),
                  QStringLiteral("Sends snapshot recall and Zero Console data to the console"),
                  destinationChoice(SavedSettings::Key::midiOutDestinationID, objects.desk.output.port));
    addMIDIChannel(console);
    QStringList sizes;
    for (const ConsoleModel::ModelSize size : ConsoleModel::allModelSizes)
        sizes << ConsoleModel::rawValue(size);
    addPicker(console, QStringLiteral("Model"), QStringLiteral("Sets the channel count -- not a MIDI connection"),
              sizes, int(objects.desk.model.modelSize.value()), [this](int index) {
                  const ConsoleModel::ModelSize size = ConsoleModel::allModelSizes[std::size_t(index)];
                  _objects.desk.model.modelSize = size;
                  SavedSettings::setString(SavedSettings::Key::modelSize, ConsoleModel::rawValue(size));
              });
    addStatus(console);

    QBoxLayout* timecode = addGroup(QStringLiteral("Timecode"));
    addPortPicker(timecode, QStringLiteral("MTC Source"),
                  QStringLiteral("Deliberately separate from Console In -- timecode often arrives from another device "
                                 "(e.g. a hard-disk recorder) on its own cable"),
                  sourceChoice(SavedSettings::Key::timecodeSourceID, objects.mtcClock.connection));

    QBoxLayout* transport = addGroup(QStringLiteral("Transport (MMC Out)"));
    addPortPicker(
        transport, QStringLiteral("Send To"),
        QStringLiteral("Which device receives Play/Stop/Locate -- e.g. a hard-disk recorder, not necessarily the "
                       "console"),
        destinationChoice(SavedSettings::Key::transportDestinationID, objects.transport.port));
    addDeviceID(transport);

    QBoxLayout* appearance = addGroup(QStringLiteral("Appearance"));
    addPicker(appearance, QStringLiteral("Theme"), {},
              {QStringLiteral("System"), QStringLiteral("Dark"), QStringLiteral("Light")},
              int(objects.theme.theme.value()),
              [this](int index) { _objects.theme.setTheme(allAppThemes[std::size_t(index)]); });

    auto* done = new QPushButton(QStringLiteral("Done"), this);
    done->setDefault(true);
    layout->addWidget(done, 0, Qt::AlignRight);
    connect(done, &QPushButton::clicked, this, &QDialog::accept);

    _observers.push_back(drawing.look.addNotifier([this] { applyLook(); }));
    applyLook();
}

void SettingsView::applyLook() { AppStyle::applySheet(*this, sheet, *_drawing.look.value()); }

QBoxLayout* SettingsView::addGroup(const QString& title) {
    auto* label = new QLabel(title, this);
    label->setObjectName(QStringLiteral("title"));
    label->setFont(Type::font(12, QFont::DemiBold));
    label->setContentsMargins(4, 8, 0, 5);
    _groups->addWidget(label);
    auto* card = new QFrame(this);
    card->setObjectName(QStringLiteral("card"));
    card->setAccessibleName(title);
    _groups->addWidget(card);
    auto* rows = new QVBoxLayout(card);
    rows->setContentsMargins(12, 0, 8, 0);
    rows->setSpacing(0);
    return rows;
}

void SettingsView::addRow(QBoxLayout* group, const QString& label, QWidget* control, const QString& help) {
    if (group->count() > 0) {
        auto* line = new QFrame(this);
        line->setObjectName(QStringLiteral("line"));
        line->setFixedHeight(1);
        group->addWidget(line);
    }
    auto* row = new QWidget(this);
    row->setFixedHeight(rowHeight);
    row->setToolTip(help);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* name = new QLabel(label, row);
    name->setBuddy(control);
    layout->addWidget(name);
    layout->addStretch(1);
    layout->addWidget(control);
    control->setObjectName(label);
    control->setAccessibleName(label);
    control->setToolTip(help);
    group->addWidget(row);
}

void SettingsView::addPicker(QBoxLayout* group, const QString& label, const QString& help, const QStringList& choices,
                             int current, std::function<void(int)> choose) {
    auto* picker = new Picker(this);
    picker->addItems(choices);
    picker->setCurrentIndex(current);
    connect(picker, &QComboBox::activated, this, std::move(choose));
    addRow(group, label, picker, help);
}

void SettingsView::addPortPicker(QBoxLayout* group, const QString& label, const QString& help,
                                 const PortChoice& choice) {
    auto* picker = new Picker(this);
    const auto show = [picker, choice] {
        picker->clear();
        picker->addItem(QStringLiteral("None"));
        const bool isRemembered = choice.selected.value() || SavedSettings::uniqueID(choice.key);
        int current = isRemembered ? -1 : 0;
        const std::vector<MIDIPortInfo>& ports = choice.available.value();
        const QStringList names = distinctNames(ports);
        for (std::size_t i = 0; i < ports.size(); ++i) {
            if (ports[i].uniqueID == choice.selected.value()) current = picker->count();
            picker->addItem(names[qsizetype(i)], ports[i].uniqueID);
        }
        picker->setCurrentIndex(current);
    };
    show();
    _observers.push_back(choice.available.addNotifier(show));
    _observers.push_back(choice.selected.addNotifier(show));
    connect(picker, &QComboBox::activated, this, [picker, choice](int index) {
        choice.choose(index == 0 ? std::nullopt : std::optional(picker->itemData(index).toInt()));
    });
    addRow(group, label, picker, help);
}

void SettingsView::addDeviceID(QBoxLayout* group) {
    static constexpr std::array<std::uint8_t, 9> ids{TransportManager::allCall, 0, 1, 2, 3, 4, 5, 6, 7};
    QStringList choices{QStringLiteral("All (broadcast)")};
    for (std::size_t i = 1; i < ids.size(); ++i)
        choices << QString::number(ids[i]);
    const auto current = std::find(ids.begin(), ids.end(), _objects.transport.deviceID.value());
    addPicker(
        group, QStringLiteral("Device ID"),
        QStringLiteral("Some machines ignore the broadcast ID and only respond when addressed directly. If yours is "
                       "one of them, set this to the device ID in its own MIDI setup (often 0)."),
        choices, current == ids.end() ? -1 : int(current - ids.begin()),
        [this](int index) { _objects.transport.setDeviceID(ids[std::size_t(index)]); });
}

void SettingsView::addMIDIChannel(QBoxLayout* group) {
    static constexpr int first = 1;
    static constexpr int last = 16;
    QProperty<int>& channel = _objects.desk.output.midiChannel;
    const QString help = QStringLiteral("Must match the console's own Basic Channel setting");
    auto* stepper = new QWidget(this);
    auto* layout = new QHBoxLayout(stepper);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    const auto addButton = [&](const QString& sign, const QString& name, int step) {
        auto* button = new QToolButton(stepper);
        button->setText(sign);
        button->setFocusPolicy(Qt::StrongFocus);
        button->setAutoRepeat(true);
        button->setObjectName(name);
        button->setAccessibleName(name);
        button->setToolTip(help);
        layout->addWidget(button);
        connect(button, &QToolButton::clicked, this, [&channel, step] {
            channel = std::clamp(channel.value() + step, first, last);
            SavedSettings::setInteger(SavedSettings::Key::midiChannel, channel.value());
        });
        return button;
    };
    QToolButton* down = addButton(QStringLiteral("−"), QStringLiteral("MIDI Channel down"), -1);
    QToolButton* up = addButton(QStringLiteral("+"), QStringLiteral("MIDI Channel up"), 1);
    addRow(group, {}, stepper, help);
    auto* label = stepper->parentWidget()->findChild<QLabel*>();
    label->setObjectName(QStringLiteral("midiChannel"));
    const auto show = [label, down, up, &channel] {
        label->setText(QStringLiteral("MIDI Channel: %1").arg(channel.value()));
        down->setEnabled(channel.value() > first);
        up->setEnabled(channel.value() < last);
    };
    show();
    _observers.push_back(channel.addNotifier(show));
}

void SettingsView::addStatus(QBoxLayout* group) {
    const Observable<QString>& status = _objects.desk.input.connection.statusText;
    auto* text = new QLabel(this);
    text->setFont(Type::font(11, QFont::Normal));
    text->setWordWrap(true);
    text->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    text->setFixedWidth(statusWidth);
    const auto show = [text, &status] { text->setText(status.value()); };
    show();
    _observers.push_back(status.addNotifier(show));
    addRow(group, QStringLiteral("Status"), text, {});
    text->setObjectName(QStringLiteral("status"));
    text->setAccessibleName({}); // its text is its name
}

} // namespace tessik
