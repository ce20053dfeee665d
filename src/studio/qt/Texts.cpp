#include "studio/qt/Texts.h"

#include <QLocale>

namespace studio {

Language DesktopLanguage()
{
    const auto languages = QLocale::system().uiLanguages();
    return !languages.isEmpty() && languages.constFirst().startsWith("de") ? Language::German : Language::English;
}

void Describe(QWidget& control, const QString& name, const QString& description)
{
    control.setAccessibleName(name);
    control.setAccessibleDescription(description);
    control.setToolTip(description);
}

} // namespace studio
