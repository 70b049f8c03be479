// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

/// The colours of the dark look that code paints with or compares; the style sheets write the same
/// ones as text, since theirs are fixed word by word.
namespace qx::colours {

inline constexpr QColor page{0x12, 0x14, 0x16};        ///< behind everything
inline constexpr QColor surface{0x19, 0x1c, 0x1f};     ///< of the groups and the player panel
inline constexpr QColor field{0x10, 0x12, 0x14};       ///< what can be typed into, the log
inline constexpr QColor edge{0x0d, 0x0f, 0x10};        ///< navigation and status bar
inline constexpr QColor raised{0x20, 0x24, 0x28};      ///< tool tips, the lower end of a button
inline constexpr QColor button{0x2a, 0x2e, 0x32};      ///< a button at rest
inline constexpr QColor buttonTop{0x34, 0x39, 0x3e};   ///< the upper end of a painted button
inline constexpr QColor border{0x3b, 0x40, 0x45};      ///< round groups, fields and buttons
inline constexpr QColor switchedOff{0x4b, 0x50, 0x55}; ///< the track of a switch
inline constexpr QColor text{0xf1, 0xf3, 0xf5};
inline constexpr QColor dimText{0xa8, 0xad, 0xb0};
inline constexpr QColor faintText{0x74, 0x7a, 0x7e}; ///< disabled
inline constexpr QColor accent{0x14, 0x79, 0xe8};
inline constexpr QColor brightAccent{0x29, 0x94, 0xff}; ///< focus
inline constexpr QColor softAccent{0x78, 0xb8, 0xff};   ///< connected, what waits or is repeated
inline constexpr QColor alarm{0x9b, 0x4d, 0x55};        ///< what is wrong
inline constexpr QColor light{0xc4, 0xc7, 0xc8};        ///< the upper end of the Pause button
inline constexpr QColor lightShade{0x93, 0x99, 0x9d};   ///< its lower end
inline constexpr QColor onLight{0x1a, 0x1c, 0x1e};      ///< symbols on a light button

} // namespace qx::colours
