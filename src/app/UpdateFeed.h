#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <QVersionNumber>
#include <compare>
#include <optional>

namespace tamboro {

/// A release's number: components compared as numbers, missing ones 0, then the suffix. "1.2-beta 10" lies above
/// "1.2-beta 9" and below "1.2"; a leading "v" and what stands behind a "+" don't count.
class ReleaseVersion {
 public:
  /// Nothing where the text doesn't begin with a number.
  static std::optional<ReleaseVersion> read(const QString& text);

  /// As it stood in the feed, on one line and of bounded length.
  const QString& text() const { return text_; }
  friend std::weak_ordering operator<=>(const ReleaseVersion& a, const ReleaseVersion& b);
  friend bool operator==(const ReleaseVersion& a, const ReleaseVersion& b) { return (a <=> b) == 0; }

 private:
  QVersionNumber numbers_;
  QString suffix_;
  QString text_;
};

struct UpdateItem {
  ReleaseVersion version;
  QString title;  ///< on one line, of bounded length; can be empty
  QUrl link;      ///< the page about it; empty where the feed has none that can be read
};

struct UpdateFeed {
  std::optional<UpdateItem> newest;  ///< of the items that tell a version
};

/// Reads an RSS feed of releases: `channel`, in it `item` with `title`, `link` and a version as `shortVersionString` or
/// else `version`, an element of the item or an attribute of its `enclosure`. Namespace prefixes don't count. Nothing
/// where the bytes aren't a whole well-formed RSS document, or one that blows itself up by its entities.
std::optional<UpdateFeed> parseUpdateFeed(const QByteArray& bytes);

}  // namespace tamboro
