// SPDX-License-Identifier: MIT
#pragma once

#include "widgets/playerpanel.h"
#include "widgets/toggleswitch.h"
#include "widgets/transportbutton.h"

#include <QGroupBox>
#include <QLabel>
#include <QList>
#include <QSlider>

namespace qx::test {

/// The labels of a player panel, none of which has a name, in the order in which they are made.
enum class PanelLabel {
    FileTotal,
    FrameTotal,
    Time,
    StateBadge,
    Connection,
    Replay,
    ReplayState,
    FileName,
    FileCaption,
    Position,
    TimeCaption,
    ModelLine,
};

/// The children of a player panel, which owns them: by object name, by accessible name in the
/// language that is current when this is made, or by kind. Null where there is no such child.
class PanelControls
{
public:
    explicit PanelControls(const PlayerPanel &panel);

    QLabel *label(PanelLabel which) const { return labels.value(static_cast<int>(which)); }

    QGroupBox *const summaryBox;
    QGroupBox *const transportBox;
    TransportButton *const play;
    TransportButton *const pause;
    TransportButton *const stop;
    TransportButton *const increase;
    TransportButton *const decrease;
    ToggleSwitch *const replay;
    QSlider *const seekSlider;
    QSlider *const timeSlider;
    const QList<QLabel *> labels;
};

} // namespace qx::test
