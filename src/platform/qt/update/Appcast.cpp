#include "platform/qt/update/Appcast.h"

#include <QXmlStreamReader>

#include <algorithm>
#include <cctype>

namespace tallowbay::qt {

namespace {

const QString sparkleNamespace =
    QStringLiteral("http://www.andymatuschak.org/xml-namespaces/sparkle");

bool isDigit(char letter)
{
    return std::isdigit(static_cast<unsigned char>(letter)) != 0;
}

bool isLetter(char letter)
{
    return std::isalpha(static_cast<unsigned char>(letter)) != 0;
}

// Takes the next run of digits or letters off the version; empty at its end.
std::string_view takePart(std::string_view& version)
{
    const auto start = std::find_if(version.begin(), version.end(), [](char letter) {
        return isDigit(letter) || isLetter(letter) || letter == '+';
    });
    if (start == version.end() || *start == '+')
        return version = {};
    const auto end = std::find_if_not(start, version.end(), isDigit(*start) ? isDigit : isLetter);
    const std::string_view part(start, end);
    version = std::string_view(end, version.end());
    return part;
}

std::string_view withoutLeadingZeros(std::string_view number)
{
    return number.substr(std::min(number.find_first_not_of('0'), number.size()));
}

// Of any length, so that no number overflows.
std::strong_ordering compareNumbers(std::string_view one, std::string_view other)
{
    one = withoutLeadingZeros(one);
    other = withoutLeadingZeros(other);
    if (one.size() != other.size())
        return one.size() <=> other.size();
    return one <=> other;
}

// A word, such as "beta", comes before a number and before the end.
std::strong_ordering compareParts(std::string_view one, std::string_view other)
{
    const bool oneIsWord = !one.empty() && isLetter(one.front());
    const bool otherIsWord = !other.empty() && isLetter(other.front());
    if (oneIsWord != otherIsWord)
        return oneIsWord ? std::strong_ordering::less : std::strong_ordering::greater;
    return oneIsWord ? one <=> other : compareNumbers(one, other);
}

// What the feed says of a release before it is judged.
struct RawItem {
    QString version;
    QString shortVersion;
    QString channel;
    QString system;
    QString link;
    QString download;
};

void readEnclosure(const QXmlStreamAttributes& attributes, RawItem& item)
{
    item.download = attributes.value(QStringLiteral("url")).toString();
    item.system = attributes.value(sparkleNamespace, QStringLiteral("os")).toString();
    if (item.version.isEmpty())
        item.version = attributes.value(sparkleNamespace, QStringLiteral("version")).toString();
    if (item.shortVersion.isEmpty())
        item.shortVersion =
            attributes.value(sparkleNamespace, QStringLiteral("shortVersionString")).toString();
}

void readItemElement(QXmlStreamReader& xml, RawItem& item)
{
    const bool ofSparkle = xml.namespaceUri() == sparkleNamespace;
    const QString name = xml.name().toString();
    const auto text = [&] {
        return xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed();
    };
    if (ofSparkle && name == QLatin1String("version"))
        item.version = text();
    else if (ofSparkle && name == QLatin1String("shortVersionString"))
        item.shortVersion = text();
    else if (ofSparkle && name == QLatin1String("channel"))
        item.channel = text();
    else if (!ofSparkle && name == QLatin1String("link"))
        item.link = text();
    else if (name == QLatin1String("enclosure")) {
        readEnclosure(xml.attributes(), item);
        xml.skipCurrentElement();
    } else
        xml.skipCurrentElement();
}

RawItem readItem(QXmlStreamReader& xml)
{
    RawItem item;
    while (xml.readNextStartElement())
        readItemElement(xml, item);
    return item;
}

// Only the web: whoever can change the feed shall not choose a program to be opened.
QUrl webAddress(const QString& text)
{
    const QUrl url(text);
    const bool web =
        url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http");
    return web && url.isValid() ? url : QUrl();
}

std::optional<AppcastItem> offeredHere(const RawItem& item)
{
    const QString version = item.shortVersion.isEmpty() ? item.version : item.shortVersion;
    const bool forUs = item.system.isEmpty() || item.system == QLatin1String("linux");
    if (version.isEmpty() || !forUs || !item.channel.isEmpty())
        return std::nullopt;
    const QUrl link = webAddress(item.link);
    return AppcastItem{version.toStdString(), link.isEmpty() ? webAddress(item.download) : link};
}

} // namespace

std::strong_ordering compareVersions(std::string_view one, std::string_view other)
{
    while (!one.empty() || !other.empty()) {
        const auto order = compareParts(takePart(one), takePart(other));
        if (std::is_neq(order))
            return order;
    }
    return std::strong_ordering::equal;
}

std::optional<std::vector<AppcastItem>> parseAppcast(const QByteArray& feed)
{
    QXmlStreamReader xml(feed);
    if (!xml.readNextStartElement() || xml.name() != QLatin1String("rss"))
        return std::nullopt;
    std::vector<AppcastItem> items;
    while (!xml.atEnd()) {
        const bool isItem =
            xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("item");
        if (const auto item = isItem ? offeredHere(readItem(xml)) : std::nullopt)
            items.push_back(*item);
    }
    if (xml.hasError())
        return std::nullopt;
    return items;
}

std::optional<AppcastItem> newestUpdate(
    const std::vector<AppcastItem>& items, std::string_view ourVersion)
{
    const auto newest =
        std::max_element(items.begin(), items.end(), [](const auto& one, const auto& other) {
            return std::is_lt(compareVersions(one.version, other.version));
        });
    if (newest == items.end() || std::is_lteq(compareVersions(newest->version, ourVersion)))
        return std::nullopt;
    return *newest;
}

} // namespace tallowbay::qt
