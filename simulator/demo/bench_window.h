// The bench beside the wizard: what a user would see of the unit on the table, its power switch included.
#pragma once

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTableWidget>
#include <QTimer>
#include <QWidget>
#include <functional>

#include "units/unit.h"

namespace firmlane::sim {

class BenchWindow : public QWidget {
 public:
  /// Shows the unit, which outlives the window, and takes its onChange.
  explicit BenchWindow(Unit& unit);

  /// Called when the user closes the window.
  std::function<void()> onClosed;
  /// The user has pulled the adapter between program and unit.
  std::function<void()> onPulled;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void refresh();
  void showProcessors();
  void switchPower(bool on);
  QWidget* makeFaults();
  QWidget* makeAdapter();

  Unit& unit_;
  QLabel* serial_;
  QLabel* doing_;
  QLabel* factory_;
  QFormLayout* facts_;
  QTableWidget* processors_;
  QProgressBar* received_;
  QPushButton* power_;
  QTimer gathering_;
};

}  // namespace firmlane::sim
