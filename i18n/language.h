// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qx {

/// The languages the interface speaks. The numbers are fixed.
enum class UiLanguage : int {
    Chinese = 0, ///< Simplified Chinese, the default
    English = 1,
};

/// Keys of the text table, 0 to 126 in the order of the table.
///
/// A text may hold the placeholders %1 to %4, the same ones in both languages; the caller
/// fills them with QString::arg. NoMediaSelected is shown nowhere; WindowsError, WindowsSerialPort,
/// ConfigureBuffersFailed, ReadSettingsFailed, ConfigureTimeoutsFailed, PlatformUnsupported,
/// SerialReadOperation and SerialWriteZero belong to ways of working a port that this program has
/// not; they stay, since the numbers are fixed.
enum class UiText : int {
    AppTitle = 0,
    MediaSyncHint,
    SelectPortStatus,
    PlayerOnlyNotice,
    NavPlayer,
    NavBrowse,
    NavUFiles,
    NavTime,
    NavSetup,
    NavNet,
    NavAbout,
    ConnectionGroupTitle,
    PortCaption,
    RefreshButton,
    HostSettingsCaption,
    ConnectHandshakeButton,
    DisconnectButton,
    DemoModeCheck,
    Disconnected,
    SerialOpenWaitingHandshake,
    Handshaking,
    HandshakingAttempt,
    HandshakeComplete,
    NotHandshaken,
    OfflineDemo,
    FrameGroupTitle,
    ReservedBytesCaption,
    ReservedBytesToolTip,
    FrameSummaryCaption,
    FrameSummaryToolTip,
    StatusGroupTitle,
    UsbChannelCaption,
    HandshakeCaption,
    LocalStateCaption,
    TrafficCaption,
    StopSendFrameZeroButton,
    SendCurrentFrameButton,
    HandshakeAgainButton,
    LogGroupTitle,
    LogPlaceholder,
    ManualFramePlaceholder,
    SendHexButton,
    ClearLogButton,
    NoUsablePort,
    NoPortSwitchEspHint,
    PortsFound,
    DemoModeDescription,
    DemoModeDisabled,
    HandshakeNotRequiredInDemo,
    HandshakePortDisconnected,
    HelloLogLine,
    HandshakeSucceeded,
    EspFrameAccepted,
    EspForwardingFailed,
    ReservedFieldInvalid,
    FrameNotSentReserved,
    FrameNotSentInvalid,
    FrameNotSentDisconnected,
    NotHandshakenFrameRetained,
    WaitingAckFrameReplaced,
    AckTimeout,
    SerialWriteFailed,
    ResultWithCounts,
    CompleteHandshakeFirst,
    PausedResending,
    StoppedResendingZero,
    ManualFrameIncomplete,
    ManualFrameInvalid,
    LanguageChangedToChinese,
    LanguageChangedToEnglish,
    ChooseMediaHint,
    ChooseMediaTitle,
    MediaFileFilter,
    NoMediaSelected,
    MediaSelected,
    MediaReady,
    MediaNotReadable,
    MediaPlaybackFailed,
    MediaErrorTitle,
    VideoPreviewTitle,
    MediaWithoutUsb,
    MediaNotSeekable,
    InformationTitle,
    PlaybackControlsTitle,
    FileTotal,
    TotalFrames,
    TimeInterval,
    StateStopped,
    StatePlaying,
    StatePaused,
    StateUnknown,
    Connected,
    NotConnected,
    Replay,
    FileLabel,
    TimeLabel,
    PlayDescription,
    Play,
    PauseDescription,
    Pause,
    StopDescription,
    Stop,
    HomeDescription,
    Home,
    Increase,
    Decrease,
    QueryStatusDescription,
    QueryStatus,
    WindowsError,
    WindowsSerialPort,
    MacSerialPort,
    MacSerialPortError,
    OpenPortFailed,
    ConfigureBuffersFailed,
    ReadSettingsFailed,
    ConfigurePortFailed,
    ConfigureTimeoutsFailed,
    PortOpened,
    PlatformUnsupported,
    DisconnectedFrom,
    CommandNotSent,
    SerialWriteOperation,
    SerialReadOperation,
    SerialWriteZero,
    SerialWritePartial,
    ResponseBufferOverflow,
    OperationFailed,
};

/// The interface language, one value for the whole process, and the table of every text that
/// the interface shows. GUI thread only.
class Language
{
public:
    Language() = delete;

    /// The language that text() answers in; Chinese until setCurrent() is called.
    static UiLanguage current();

    /// Changes the answers of later text() calls and nothing else: texts already handed out are
    /// copies, and saving the choice is the caller's business.
    static void setCurrent(UiLanguage language);

    /// English for the code "en" in any letter case, Chinese for every other string.
    static UiLanguage fromCode(const QString &code);

    /// The code kept in the settings: "en" for English, "zh_CN" for every other value.
    static QString code(UiLanguage language);

    /// The text of a key in the current language. LanguageChangedToChinese and
    /// LanguageChangedToEnglish read the same in both, so that a switch of language is announced
    /// in the one just chosen. A null string for a value outside the table.
    static QString text(UiText key);
};

} // namespace qx
