// SPDX-License-Identifier: MIT
#include "simulator/commandline.h"

#include <QCommandLineParser>

#include <functional>
#include <limits>

namespace qx {

using namespace std::chrono_literals;

namespace {

constexpr qint64 manyFrames = 1'000'000'000;
constexpr std::chrono::milliseconds longestWait = 1h;
constexpr double longestSeconds = 1'000'000;

struct Flag
{
    const char *name;
    const char *description;
    bool *target;
};

// A whole number.
struct Number
{
    const char *name;
    const char *valueName;
    const char *description;
    qint64 minimum;
    qint64 maximum;
    std::function<void(qint64)> take;
};

struct Real
{
    const char *name;
    const char *valueName;
    const char *description;
    double minimum;
    double maximum;
    std::function<void(double)> take;
};

// Writes a number that is within its bounds, as the target's type.
template<typename Target>
auto into(Target *target)
{
    return [target](auto value) { *target = static_cast<Target>(value); };
}

QString latin1(const char *text)
{
    return QString::fromLatin1(text);
}

QList<Flag> flags(CommandLine *line)
{
    return {
        {"ready-first", "Say READY to the first HELLO of a session.", &line->behaviour.readyFirst},
        {"silent", "Read, but reply to nothing.", &line->behaviour.silent},
        {"quiet", "Print no line for each frame.", &line->quiet},
        {"json", "At the end write a report to stdout; all other text goes to stderr.",
         &line->json},
    };
}

QList<Number> numbers(SimulatorBehaviour *b)
{
    return {
        {"hello-every", "N", "Answer each N-th HELLO only; 0 none.", 0, manyFrames,
         into(&b->answerHelloNumber)},
        {"delay", "MS", "Wait before each reply.", 0, longestWait.count(), into(&b->replyDelay)},
        {"chunk", "BYTES", "Cut replies into pieces.", 0, 4096, into(&b->chunkBytes)},
        {"drop-every", "N", "Leave out the reply to each N-th frame.", 0, manyFrames,
         into(&b->dropEvery)},
        {"bad-checksum-every", "N", "Complain about each N-th frame's checksum.", 0, manyFrames,
         into(&b->badChecksumEvery)},
        {"ac39-fail-every", "N", "Report a forwarding failure for each N-th frame.", 0, manyFrames,
         into(&b->ac39FailEvery)},
        {"need-hello-every", "N", "Forget the session at each N-th frame.", 0, manyFrames,
         into(&b->needHelloEvery)},
        {"seed", "N", "Start of the random sequence (default 1).", 0,
         std::numeric_limits<quint32>::max(), into(&b->seed)},
        {"flood", "LINES", "Send so many lines of text a second.", 0, 1'000'000,
         into(&b->floodLinesPerSecond)},
        {"vanish-after", "N", "Unplug at the N-th accepted frame.", 1, manyFrames,
         into(&b->vanishAfterFrames)},
        {"return-after", "MS", "Plug in again so long after that.", 1, longestWait.count(),
         into(&b->returnAfter)},
    };
}

QList<Real> reals(CommandLine *line)
{
    SimulatorBehaviour *b = &line->behaviour;
    return {
        {"drop-probability", "P", "Leave out replies at random, 0 to 1.", 0, 1,
         into(&b->dropProbability)},
        {"bad-checksum-probability", "P", "The same for checksum complaints.", 0, 1,
         into(&b->badChecksumProbability)},
        {"ac39-fail-probability", "P", "The same for forwarding failures.", 0, 1,
         into(&b->ac39FailProbability)},
        {"need-hello-probability", "P", "The same for lost sessions.", 0, 1,
         into(&b->needHelloProbability)},
        {"duration", "SECONDS", "End by itself after this time.", 0.001, longestSeconds,
         into(&line->duration)},
    };
}

void addOptions(QCommandLineParser *parser, CommandLine *line)
{
    parser->setApplicationDescription(
        QStringLiteral("A simulated lighting player on a pseudo-terminal, to connect to as to a "
                       "serial port."));
    parser->addOptions({
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Print this text.")},
        {QStringLiteral("version"), QStringLiteral("Print the version.")},
        {QStringLiteral("link"), QStringLiteral("Make a symbolic link to the port."),
         QStringLiteral("PATH")},
        {QStringLiteral("boot-text"), QStringLiteral("Say this line each time when plugged in."),
         QStringLiteral("TEXT")},
    });
    const auto addWithValue = [parser](const auto &options) {
        for (const auto &option : options) {
            parser->addOption(
                {latin1(option.name), latin1(option.description), latin1(option.valueName)});
        }
    };
    addWithValue(numbers(&line->behaviour));
    addWithValue(reals(line));
    for (const Flag &option : flags(line))
        parser->addOption({latin1(option.name), latin1(option.description)});
}

// The three below return what is wrong, or an empty string.

QString readNumbers(const QCommandLineParser &parser, CommandLine *line)
{
    for (const Number &option : numbers(&line->behaviour)) {
        const QString name = latin1(option.name);
        if (!parser.isSet(name))
            continue;
        bool isNumber = false;
        const qint64 value = parser.value(name).toLongLong(&isNumber);
        if (!isNumber || value < option.minimum || value > option.maximum) {
            return QStringLiteral("--%1 takes a whole number from %2 to %3, not '%4'.")
                .arg(name, QString::number(option.minimum), QString::number(option.maximum),
                     parser.value(name));
        }
        option.take(value);
    }
    return {};
}

QString readReals(const QCommandLineParser &parser, CommandLine *line)
{
    for (const Real &option : reals(line)) {
        const QString name = latin1(option.name);
        if (!parser.isSet(name))
            continue;
        bool isNumber = false;
        const double value = parser.value(name).toDouble(&isNumber);
        // Written so that "nan", which is a number to Qt, is refused too.
        if (!isNumber || !(value >= option.minimum && value <= option.maximum)) {
            return QStringLiteral("--%1 takes a number from %2 to %3, not '%4'.")
                .arg(name, QString::number(option.minimum),
                     QString::number(option.maximum, 'g', 10), parser.value(name));
        }
        option.take(value);
    }
    return {};
}

QString readRest(const QCommandLineParser &parser, CommandLine *line)
{
    for (const Flag &option : flags(line))
        *option.target = parser.isSet(latin1(option.name));
    if (parser.isSet(QStringLiteral("boot-text")))
        line->behaviour.bootText = parser.value(QStringLiteral("boot-text")).toUtf8() + '\n';
    line->linkPath = parser.value(QStringLiteral("link"));
    if (parser.isSet(QStringLiteral("link")) && line->linkPath.isEmpty())
        return QStringLiteral("--link takes a path.");
    if (line->behaviour.returnAfter > 0ms && line->behaviour.vanishAfterFrames == 0)
        return QStringLiteral("--return-after makes sense with --vanish-after only.");
    const QStringList others = parser.positionalArguments();
    if (!others.isEmpty()) {
        return QStringLiteral("'%1' is no option; there are no other arguments.")
            .arg(others.first());
    }
    return {};
}

} // namespace

CommandLine CommandLine::parse(const QStringList &arguments)
{
    CommandLine line;
    QCommandLineParser parser;
    addOptions(&parser, &line);

    if (!parser.parse(arguments)) {
        line.text = parser.errorText();
    } else if (parser.isSet(QStringLiteral("help"))) {
        line.action = Action::Inform;
        line.text = parser.helpText().trimmed();
        return line;
    } else if (parser.isSet(QStringLiteral("version"))) {
        line.action = Action::Inform;
        line.text = QStringLiteral("tessaly-simulator " TESSALY_VERSION);
        return line;
    }
    for (const auto read : {readNumbers, readReals, readRest})
        if (line.text.isEmpty())
            line.text = read(parser, &line);
    line.action = line.text.isEmpty() ? Action::Run : Action::Refuse;
    return line;
}

} // namespace qx
