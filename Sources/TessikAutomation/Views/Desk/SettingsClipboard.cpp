#include "TessikAutomation/Views/Desk/SettingsClipboard.h"

namespace tessik {
namespace {

class Paste final : public QUndoCommand {
public:
    Paste(const QString& what, ManualSettingsStore& store, const QStringList& channelIDs,
          const ManualChannelSettings& pasted)
        : QUndoCommand(what), _store(store), _pasted(pasted) {
        for (const QString& id : channelIDs)
            _before.insert(id, store.settings(id));
    }
    void redo() override {
        for (const QString& id : _before.keys())
            _store.store(id, _pasted);
    }
    void undo() override {
        for (auto entry = _before.cbegin(); entry != _before.cend(); ++entry)
            _store.store(entry.key(), entry.value());
    }

private:
    ManualSettingsStore& _store;
    ManualChannelSettings _pasted;
    QMap<QString, ManualChannelSettings> _before;
};

} // namespace

void SettingsClipboard::paste(const QStringList& channelIDs, const QString& what) {
    if (_copied) _history.push(new Paste(QStringLiteral("Paste Settings, ") + what, _store, channelIDs, *_copied));
}

} // namespace tessik
