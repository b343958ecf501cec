#include "app/UpdateFeed.h"

#include <QRegularExpression>
#include <QXmlStreamReader>

namespace tamboro {

namespace {

constexpr int longestText = 120;

/// Letters of no shape of their own, which can turn the text around or hide a part of it. Joiners shape their
/// neighbours.
bool isCommand(QChar c) {
  const bool isJoiner = c == QChar(0x200C) || c == QChar(0x200D);
  return c.category() == QChar::Other_Control || (c.category() == QChar::Other_Format && !isJoiner);
}

/// What a stranger's feed may put into an alert.
QString shownText(const QString& text) {
  QString shown = text.simplified();
  shown.removeIf(isCommand);
  shown.truncate(longestText);
  if (!shown.isEmpty() && shown.back().isHighSurrogate()) shown.chop(1);
  return shown;
}

/// Compares run by run, digits as numbers and without separators: "beta.9" before "beta10".
std::weak_ordering compareNaturally(const QString& a, const QString& b) {
  static const QRegularExpression run(QStringLiteral("[0-9]+|[^-._\\s0-9]+"));
  auto inA = run.globalMatch(a);
  auto inB = run.globalMatch(b);
  while (inA.hasNext() && inB.hasNext()) {
    const QString left = inA.next().captured();
    const QString right = inB.next().captured();
    bool leftIsNumber = false;
    bool rightIsNumber = false;
    const auto order = left.toULongLong(&leftIsNumber) <=> right.toULongLong(&rightIsNumber);
    if (leftIsNumber && rightIsNumber && order != 0) return order;
    if (leftIsNumber && rightIsNumber) continue;
    if (const int texts = left.compare(right, Qt::CaseInsensitive)) return texts <=> 0;
  }
  return inA.hasNext() <=> inB.hasNext();
}

class FeedReader {
 public:
  explicit FeedReader(const QByteArray& bytes) : xml_(bytes) {
    xml_.setNamespaceProcessing(false);  // feeds use prefixes that they don't declare
  }

  std::optional<UpdateFeed> read() {
    if (!xml_.readNextStartElement() || localName(xml_.qualifiedName()) != QLatin1String("rss")) return std::nullopt;
    bool hasChannel = false;
    while (xml_.readNextStartElement()) {
      if (localName(xml_.qualifiedName()) == QLatin1String("channel")) {
        hasChannel = true;
        readChannel();
      } else {
        xml_.skipCurrentElement();
      }
    }
    while (!xml_.atEnd())
      xml_.readNext();
    if (xml_.hasError() || !hasChannel) return std::nullopt;
    return feed_;
  }

 private:
  struct Entry {
    QString shortVersion, version, title, link;
  };

  static QStringView localName(QStringView name) { return name.mid(name.lastIndexOf(QLatin1Char(':')) + 1); }

  void readChannel() {
    while (xml_.readNextStartElement()) {
      if (localName(xml_.qualifiedName()) == QLatin1String("item")) {
        readItem();
      } else {
        xml_.skipCurrentElement();
      }
    }
  }

  void readItem() {
    Entry entry;
    while (xml_.readNextStartElement()) {
      const QString name = localName(xml_.qualifiedName()).toString();
      if (name == QLatin1String("enclosure")) {
        for (const QXmlStreamAttribute& attribute : xml_.attributes())
          take(entry, localName(attribute.qualifiedName()), attribute.value().toString());
        xml_.skipCurrentElement();
      } else if (name == QLatin1String("title")) {
        entry.title = shownText(elementText());
      } else if (name == QLatin1String("link")) {
        if (const QString link = elementText().trimmed(); !link.isEmpty()) entry.link = link;
      } else {
        take(entry, name, elementText());
      }
    }
    keepNewest(entry);
  }

  QString elementText() { return xml_.readElementText(QXmlStreamReader::SkipChildElements); }

  /// An element's version goes before the enclosure's, wherever it stands.
  static void take(Entry& entry, QStringView name, const QString& value) {
    if (name == QLatin1String("shortVersionString") && entry.shortVersion.isEmpty()) entry.shortVersion = value;
    if (name == QLatin1String("version") && entry.version.isEmpty()) entry.version = value;
  }

  void keepNewest(const Entry& entry) {
    const auto version = ReleaseVersion::read(entry.shortVersion.isEmpty() ? entry.version : entry.shortVersion);
    if (!version || (feed_.newest && *version <= feed_.newest->version)) return;
    feed_.newest = UpdateItem{*version, entry.title, QUrl(entry.link, QUrl::StrictMode)};
  }

  QXmlStreamReader xml_;
  UpdateFeed feed_;
};

}  // namespace

std::optional<ReleaseVersion> ReleaseVersion::read(const QString& text) {
  ReleaseVersion version;
  version.text_ = shownText(text);
  QString number = version.text_.section(QLatin1Char('+'), 0, 0).trimmed();
  if (number.startsWith(QLatin1Char('v'), Qt::CaseInsensitive)) number.remove(0, 1);
  if (version.text_.startsWith(QLatin1Char('v'), Qt::CaseInsensitive)) version.text_.remove(0, 1);
  qsizetype suffixStart = 0;
  version.numbers_ = QVersionNumber::fromString(number, &suffixStart);
  if (version.numbers_.isNull()) return std::nullopt;
  version.numbers_ = version.numbers_.normalized();
  static const QRegularExpression separators(QStringLiteral("^[-._\\s]+$"));
  version.suffix_ = number.mid(suffixStart).remove(separators);  // "1.2." is no pre-release
  return version;
}

std::weak_ordering operator<=>(const ReleaseVersion& a, const ReleaseVersion& b) {
  if (const int numbers = QVersionNumber::compare(a.numbers_, b.numbers_)) return numbers <=> 0;
  if (a.suffix_.isEmpty() || b.suffix_.isEmpty()) return a.suffix_.isEmpty() <=> b.suffix_.isEmpty();
  return compareNaturally(a.suffix_, b.suffix_);
}

std::optional<UpdateFeed> parseUpdateFeed(const QByteArray& bytes) {
  return FeedReader(bytes).read();
}

}  // namespace tamboro
