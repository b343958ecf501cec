#pragma once

#include "views/controls/Sheet.h"

namespace tamboro {

/// What the About panel tells; a version that the build doesn't know falls back to "1.0", a build number to "1".
struct AboutTexts {
  QString name, version, credits;
};
AboutTexts aboutTexts(const QString& shortVersion, const QString& buildVersion);

/// "About Tamboro": name, version, build and two lines of credits.
class AboutPanel : public Sheet {
  Q_OBJECT

 public:
  AboutPanel(const AboutTexts& texts, QWidget* parent);
};

}  // namespace tamboro
