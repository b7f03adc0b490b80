// A plain viewer for the HTML help topics of the installation's help folder.
#pragma once

#include <QString>
#include <QWidget>
#include <optional>
#include <string>
#include <string_view>

class QTextBrowser;

namespace nv {

// Path of `topic` in the help folder under `installation_folder` ("help/"), with the
// folder and file names matched ignoring case; nothing when there is no such file.
std::optional<QString> FindHelpTopic(const std::string& installation_folder,
                                     std::string_view topic);

class HelpViewer : public QWidget {
  Q_OBJECT

 public:
  explicit HelpViewer(QWidget* owner);

  void ShowTopic(const QString& path);
  QTextBrowser* browser() const { return browser_; }

 private:
  QTextBrowser* browser_ = nullptr;
};

}  // namespace nv
