// SPDX-License-Identifier: MIT
#include "tests/support/grips.h"

#include <QCheckBox>
#include <QSlider>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionSlider>

namespace qx::test {

QPoint handleOf(const QSlider *slider, int value)
{
    QStyleOptionSlider option;
    option.initFrom(slider);
    option.orientation = slider->orientation();
    option.minimum = slider->minimum();
    option.maximum = slider->maximum();
    option.sliderPosition = value;
    option.sliderValue = value;
    option.subControls = QStyle::SC_All;
    const QRect handle = slider->style()->subControlRect(QStyle::CC_Slider, &option,
                                                         QStyle::SC_SliderHandle, slider);
    return {handle.center().x(), slider->height() / 2};
}

QPoint boxOf(const QCheckBox *check)
{
    QStyleOptionButton option;
    option.initFrom(check);
    return check->style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, check).center();
}

} // namespace qx::test
