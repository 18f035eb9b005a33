#include "demo/bench_window.h"

#include <QCloseEvent>
#include <QHeaderView>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>

#include "units/faults.h"

namespace firmlane::sim {

namespace {

constexpr int kRefreshInterval = 50;
constexpr int kWidth = 340;
constexpr double kTitleScale = 1.4;

QString text(const std::string& string) { return QString::fromStdString(string); }

/// The lamp of the power switch.
QIcon lamp(bool lit) {
  constexpr int kSide = 64;
  QPixmap pixmap(kSide, kSide);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(QColor(0, 0, 0, 90), 4));
  painter.setBrush(lit ? QColor(0x3c, 0xb3, 0x71) : QColor(0x8a, 0x93, 0x99));
  painter.drawEllipse(8, 8, kSide - 16, kSide - 16);
  painter.end();
  return {pixmap};
}

QLabel* makeTitle(const QString& caption) {
  auto* title = new QLabel(caption);  // NOLINT(cppcoreguidelines-owning-memory): the layout's window owns it
  QFont font = title->font();
  font.setPointSizeF(font.pointSizeF() * kTitleScale);
  font.setBold(true);
  title->setFont(font);
  return title;
}

}  // namespace

BenchWindow::BenchWindow(Unit& unit)
    : unit_(unit),
      serial_(new QLabel),
      doing_(new QLabel),
      factory_(new QLabel),
      facts_(new QFormLayout),
      processors_(new QTableWidget(static_cast<int>(unit.state().processors.size()), 2)),
      received_(new QProgressBar),
      power_(new QPushButton) {
  setWindowTitle(tr("The unit on the bench"));
  setWindowFlag(Qt::WindowStaysOnTopHint);  // a power switch under another window is none
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(makeTitle(text(unit.state().model->title)));
  facts_->addRow(tr("Serial number"), serial_);
  facts_->addRow(tr("Factory data"), factory_);
  layout->addLayout(facts_);

  processors_->setHorizontalHeaderLabels({tr("Processor"), tr("Firmware")});
  processors_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  processors_->verticalHeader()->hide();
  processors_->setFixedHeight(processors_->horizontalHeader()->sizeHint().height() + processors_->verticalHeader()->length() +
                              2 * processors_->frameWidth());
  processors_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  processors_->setSelectionMode(QAbstractItemView::NoSelection);
  processors_->setFocusPolicy(Qt::NoFocus);
  layout->addWidget(processors_);

  doing_->setWordWrap(true);
  doing_->setAlignment(Qt::AlignLeft | Qt::AlignBottom);
  doing_->setMinimumHeight(2 * doing_->fontMetrics().lineSpacing());
  layout->addWidget(doing_, 1);
  received_->setTextVisible(true);
  layout->addWidget(received_);
  layout->addWidget(makeFaults());
  layout->addWidget(makeAdapter());

  power_->setIconSize(QSize(1, 1) * power_->fontMetrics().height());
  power_->setMinimumHeight(2 * power_->sizeHint().height());
  connect(power_, &QPushButton::clicked, this, [this] { switchPower(!unit_.isOn()); });
  layout->addWidget(power_);
  power_->setFocus();

  gathering_.setSingleShot(true);
  connect(&gathering_, &QTimer::timeout, this, [this] { refresh(); });
  unit.onChange = [this] {
    if (!gathering_.isActive()) {
      gathering_.start(kRefreshInterval);
    }
  };
  refresh();
  resize(kWidth, sizeHint().height());
}

QWidget* BenchWindow::makeFaults() {
  auto* faults = new QComboBox;
  faults->setAccessibleName(tr("Fault"));
  faults->addItem(tr("no fault"), QStringLiteral("none"));
  for (const std::string_view name : faultNames()) {
    faults->addItem(tr("fault: ") + text(std::string(name)), text(std::string(name)));
  }
  connect(faults, &QComboBox::currentIndexChanged, this, [this, faults](int) {
    setFault(unit_.faults, "none");
    setFault(unit_.faults, faults->currentData().toString().toStdString());
  });
  return faults;
}

QWidget* BenchWindow::makeAdapter() {
  auto* adapter = new QPushButton(tr("Pull the adapter"));  // NOLINT(cppcoreguidelines-owning-memory): the window owns it
  connect(adapter, &QPushButton::clicked, this, [this, adapter] {
    adapter->setEnabled(false);
    adapter->setText(tr("The adapter is pulled"));
    if (onPulled) {
      onPulled();
    }
  });
  return adapter;
}

void BenchWindow::switchPower(bool on) {
  if (on) {
    unit_.powerOn();
  } else {
    unit_.powerOff();
  }
  refresh();
}

void BenchWindow::refresh() {
  const UnitState& state = unit_.state();
  serial_->setText(QString::number(state.serial));
  QStringList factory;
  if (state.presetLoads > 0) {
    factory << tr("preset loaded %1 times").arg(state.presetLoads);
  }
  if (!state.microphoneTable.empty()) {
    factory << tr("microphone table of %1 bytes").arg(state.microphoneTable.size());
  }
  factory_->setText(factory.join(QStringLiteral(", ")));
  facts_->setRowVisible(factory_, !factory.isEmpty());
  showProcessors();
  doing_->setText(text(state.doing()));
  const bool receiving = state.phase == Phase::Receiving || state.phase == Phase::Microphones;
  received_->setRange(0, receiving ? 0 : 1);
  received_->setFormat(receiving ? tr("%1 bytes").arg(state.received) : QString());
  power_->setIcon(lamp(unit_.isOn()));
  power_->setText(unit_.isOn() ? tr("Power is on: click to switch off") : tr("Power is off: click to switch on"));
}

void BenchWindow::showProcessors() {
  const UnitState& state = unit_.state();
  for (int row = 0; row < processors_->rowCount(); ++row) {
    const ProcessorState& processor = state.processors[static_cast<std::size_t>(row)];
    const bool busy = row == state.target && state.phase != Phase::Off && state.phase != Phase::Running;
    const QString cells[] = {text(processor.model->name), text(state.versionOf(processor.model->name))};
    for (int column = 0; column < 2; ++column) {
      if (processors_->item(row, column) == nullptr) {
        processors_->setItem(row, column, new QTableWidgetItem);
      }
      QTableWidgetItem* item = processors_->item(row, column);
      item->setText(cells[column]);
      QFont font = item->font();
      font.setBold(busy);
      item->setFont(font);
    }
  }
}

void BenchWindow::closeEvent(QCloseEvent* event) {
  event->accept();
  if (onClosed) {
    onClosed();
  }
}

}  // namespace firmlane::sim
