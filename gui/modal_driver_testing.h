// Answers the modal windows that code under test opens with exec(): each queued step runs
// on the next modal widget that becomes active, in order. A QTimer polls because exec()
// does not return until a step has closed the window.
#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QTimer>
#include <deque>
#include <functional>

namespace nv::testing {

class ModalDriver {
 public:
  using Step = std::function<void(QWidget* modal)>;

  ModalDriver() {
    timer_.setInterval(10);
    QObject::connect(&timer_, &QTimer::timeout, [this] { Poll(); });
    timer_.start();
  }

  void Then(Step step) { steps_.push_back(std::move(step)); }

  // After the queued steps, every further modal window is rejected (closing it).
  void RejectRest() { reject_rest_ = true; }

  int handled() const { return handled_; }
  bool done() const { return steps_.empty(); }

  // The button of `modal` whose text is `text`, or null.
  static QAbstractButton* Button(QWidget* modal, const QString& text) {
    for (QAbstractButton* button : modal->findChildren<QAbstractButton*>()) {
      if (button->text() == text) return button;
    }
    return nullptr;
  }

  static Step Click(const QString& text) {
    return [text](QWidget* modal) {
      if (QAbstractButton* button = Button(modal, text)) button->click();
    };
  }

 private:
  void Poll() {
    QWidget* modal = QApplication::activeModalWidget();
    if (!modal || modal == last_) return;
    if (steps_.empty() && !reject_rest_) return;
    last_ = modal;
    ++handled_;
    if (steps_.empty()) {
      if (auto* dialog = qobject_cast<QDialog*>(modal))
        dialog->reject();
      else
        modal->close();
      return;
    }
    Step step = std::move(steps_.front());
    steps_.pop_front();
    step(modal);
  }

  QTimer timer_;
  std::deque<Step> steps_;
  QPointer<QWidget> last_;
  bool reject_rest_ = false;
  int handled_ = 0;
};

}  // namespace nv::testing
