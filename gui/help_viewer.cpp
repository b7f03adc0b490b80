#include "gui/help_viewer.h"

#include <QDir>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

#include "gui/display_text.h"

namespace nv {

namespace {

// Entry of `folder` named `name` ignoring case, as the installation's files were named
// on a system that does not tell case apart.
std::optional<QString> FindEntry(const QDir& folder, const QString& name, QDir::Filters filters) {
  if (name.isEmpty()) return std::nullopt;
  for (const QString& entry : folder.entryList(filters | QDir::Hidden)) {
    if (entry.compare(name, Qt::CaseInsensitive) == 0) return folder.filePath(entry);
  }
  return std::nullopt;
}

}  // namespace

std::optional<QString> FindHelpTopic(const std::string& installation_folder,
                                     std::string_view topic) {
  const QString name = FromWindowsText(topic);
  // A topic is a file name, never a path that could leave the help folder.
  if (name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\'))) return std::nullopt;
  const QDir installation(installation_folder.empty() ? QStringLiteral(".")
                                                      : FromWindowsText(installation_folder));
  const std::optional<QString> help =
      FindEntry(installation, QStringLiteral("help"), QDir::Dirs | QDir::NoDotAndDotDot);
  if (!help) return std::nullopt;
  return FindEntry(QDir(*help), name, QDir::Files);
}

HelpViewer::HelpViewer(QWidget* owner) : QWidget(owner, Qt::Window) {
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(QStringLiteral("Help"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  browser_ = new QTextBrowser(this);
  browser_->setOpenExternalLinks(false);
  layout->addWidget(browser_);
  resize(640, 480);
}

void HelpViewer::ShowTopic(const QString& path) {
  browser_->setSource(QUrl::fromLocalFile(path));
  if (!browser_->documentTitle().isEmpty()) setWindowTitle(browser_->documentTitle());
  show();
  raise();
  activateWindow();
}

}  // namespace nv
