// SPDX-License-Identifier: MIT
#include "tests/support/panelcontrols.h"

#include "i18n/language.h"
#include "tests/support/finding.h"

namespace qx::test {

PanelControls::PanelControls(const PlayerPanel &panel)
    : summaryBox(panel.findChild<QGroupBox *>(QStringLiteral("summaryGroup")))
    , transportBox(panel.findChild<QGroupBox *>(QStringLiteral("transportGroup")))
    , play(panel.findChild<TransportButton *>(QStringLiteral("transportPlayButton")))
    , pause(panel.findChild<TransportButton *>(QStringLiteral("transportPauseButton")))
    , stop(panel.findChild<TransportButton *>(QStringLiteral("transportStopButton")))
    , increase(spokenAs<TransportButton>(panel, Language::text(UiText::Increase)))
    , decrease(spokenAs<TransportButton>(panel, Language::text(UiText::Decrease)))
    , replay(panel.findChild<ToggleSwitch *>())
    , seekSlider(panel.findChild<QSlider *>(QStringLiteral("frameSeekSlider")))
    , timeSlider(spokenAs<QSlider>(panel, Language::text(UiText::TimeLabel)))
    , labels(panel.findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly))
{}

} // namespace qx::test
