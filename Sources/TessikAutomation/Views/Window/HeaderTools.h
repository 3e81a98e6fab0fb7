#pragma once

#include "TessikAutomation/Views/AppObjects.h"
#include "TessikAutomation/Views/Controls/PanelButton.h"
#include "TessikAutomation/Views/Window/HeaderPart.h"

namespace tessik {

class ActivityLamp;

/// The right end of the header: a lamp each for what comes from the desk and what goes to it, and the settings.
class HeaderTools final : public HeaderPart {
    Q_OBJECT

public:
    HeaderTools(const AppObjects& objects, DrawingContext& drawing, QWidget* parent = nullptr);

    PanelButton& settingsKey() { return *_settings; }

    int neededWidth(HeaderFit fit) const override;
    void setFit(HeaderFit fit) override;

private:
    ActivityLamp* _in;
    ActivityLamp* _out;
    PanelButton* _settings;
    std::vector<QPropertyNotifier> _observers;
};

} // namespace tessik
