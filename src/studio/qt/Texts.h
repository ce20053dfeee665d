// Texts.h: texts as the toolkit has them, in the language of the window.
#pragma once

#include "core/MessagePair.h"
#include "studio/Words.h"

#include <QString>
#include <QWidget>

namespace studio {

/// German on a German desktop, else English.
[[nodiscard]] Language DesktopLanguage();

[[nodiscard]] inline QString Text(const MessagePair& pair, Language language)
{
    const auto text = language == Language::German ? pair.ger : pair.eng;
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

[[nodiscard]] inline QString Text(const std::string& utf8)
{
    return QString::fromStdString(utf8);
}

/// What a screen reader says of a control: what it is, and what it does. The latter is the tool tip, too.
void Describe(QWidget& control, const QString& name, const QString& description);

} // namespace studio
