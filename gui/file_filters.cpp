#include "gui/file_filters.h"

#include "gui/display_text.h"

namespace nv {

QStringList NameFiltersFromPattern(std::string_view filter) {
  const QStringList parts = FromWindowsText(filter).split(QLatin1Char('|'));
  QStringList filters;
  // Parts come in pairs of description and patterns; a description without patterns
  // (an odd count) is dropped.
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    QStringList patterns;
    for (const QString& raw : parts[i + 1].split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
      const QString pattern = raw.trimmed();
      if (pattern.isEmpty()) continue;
      // "*.*" meant every file, also those without an extension.
      patterns.append(pattern == QStringLiteral("*.*") ? QStringLiteral("*") : pattern);
    }
    if (patterns.isEmpty()) continue;
    const QString description = parts[i].trimmed();
    filters.append(QStringLiteral("%1 (%2)").arg(description, patterns.join(QLatin1Char(' '))));
  }
  if (filters.isEmpty()) filters.append(QStringLiteral("All files (*)"));
  return filters;
}

}  // namespace nv
