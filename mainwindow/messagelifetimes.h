// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

/// How long messages stay in the status bar.
namespace qx::lifetimes {

inline constexpr std::chrono::milliseconds untilReplaced{0};
inline constexpr std::chrono::milliseconds page{3500};         ///< a page that is not provided
inline constexpr std::chrono::milliseconds handshake{4000};    ///< it has succeeded
inline constexpr std::chrono::milliseconds frameOutcome{4500}; ///< a frame's success or failure
inline constexpr std::chrono::milliseconds connection{5000};   ///< the port and its complaints
inline constexpr std::chrono::milliseconds notice{5000};       ///< about media
inline constexpr std::chrono::milliseconds mediaError{8000};

} // namespace qx::lifetimes
