// The dialogs and the factory's panels.
#include <QTimer>
#include <algorithm>
#include <vector>

#include "platform/widgets/activity_panel.h"
#include "platform/widgets/display_text.h"
#include "platform/widgets/form_layouts.h"
#include "platform/widgets/layout_parts.h"

namespace firmlane {

namespace {

constexpr int kPorts = 16;
constexpr int kHintEveryMs = 1500;

QVBoxLayout* dialogPage(int leastWidth = 0) {
  auto* layout = new QVBoxLayout;
  layout->setSpacing(kSpacing + 2);
  layout->addStrut(leastWidth);
  return layout;
}

/// Tells the devices that the numbers stand for, and looks them up anew as adapters come and go.
void keepHints(FormWindow& window, const LayoutContext& context, std::vector<Remark*> remarks) {
  const auto show = [remarks = std::move(remarks), hint = context.portHint] {
    int number = 1;
    for (Remark* remark : remarks) {
      const std::string device = hint ? hint(number) : std::string();
      remark->setRemark(device.empty() ? QStringLiteral("no device") : displayText(device), !device.empty());
      ++number;
    }
  };
  show();
  auto* again = new QTimer(&window);
  QObject::connect(again, &QTimer::timeout, &window, show);
  again->start(kHintEveryMs);
}

}  // namespace

void layOutPort(FormWindow& window, const LayoutContext& context) {
  auto* layout = dialogPage();
  for (const char* name : {"Command2", "Command3"}) {
    QWidget* button = written(window[name], TypeSize::Text);
    button->setMinimumHeight(std::max(44, button->sizeHint().height()));
  }
  layout->addLayout(row({window["Command2"], window["Command3"]}));
  layout->addWidget(written(window["Label1"], TypeSize::Text, true));
  auto* ports = new ChoiceGroup(QStringLiteral("COM port"), &window);
  auto* grid = spaced(new QGridLayout(ports));
  grid->setHorizontalSpacing(14);
  grid->setVerticalSpacing(4);
  constexpr int kRows = kPorts / 2;
  std::vector<Remark*> remarks;
  for (int i = 0; i < kPorts; ++i) {
    auto* option = static_cast<QAbstractButton*>(window["Option1(" + std::to_string(i) + ")"]);
    option->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
    grid->addWidget(option, i % kRows, 2 * (i / kRows));
    grid->addWidget(remarks.emplace_back(new Remark(*option)), i % kRows, 2 * (i / kRows) + 1);
  }
  grid->setColumnStretch(1, 1);
  grid->setColumnStretch(3, 1);
  layout->addWidget(ports);
  layout->addWidget(new ActivityPanel(context, ActivityScope::PortSearch));
  layout->addStretch();
  frameDialog(window, layout, new ButtonRow({nullptr, window["Command1"]}));
  keepHints(window, context, std::move(remarks));
  window.setDefaultButton("Command2");
  window.setDefaultButton("Command1");
}

void layOutVersion(FormWindow& window, const LayoutContext& context) {
  struct Row {
    const char* name;
    const char* value;
  };
  auto* layout = dialogPage(360);
  auto* serial = row({written(window["Label1"], TypeSize::Text), written(window["lblSN"], TypeSize::Heading)});
  serial->setStretch(1, 1);
  layout->addLayout(serial);
  layout->addWidget(line());
  auto* table = spaced(new QGridLayout);
  table->setHorizontalSpacing(40);
  table->addWidget(dimmed(window["Label2"]), 0, 0);
  table->addWidget(dimmed(window["Label3"]), 0, 1);
  int next = 1;
  for (const auto& [name, value] : {Row{"Label4", "lblHub"}, Row{"Label5", "lblDSP"}, Row{"Label6", "lblRF1"},
                                    Row{"Label7", "lblRF2"}, Row{"Label8", "lblFront"}}) {
    table->addWidget(written(window[name], TypeSize::Text), next, 0);
    table->addWidget(written(window[value], TypeSize::Text, true), next++, 1);
  }
  layout->addLayout(table);
  layout->addWidget(new ActivityPanel(context, ActivityScope::Reading));
  layout->addStretch();
  frameDialog(window, layout, new ButtonRow({nullptr, window["Command1"]}));
  window.setDefaultButton("Command1");
}

void layOutRecover(FormWindow& window, const LayoutContext& /*context*/) {
  auto* sign = new PictureWidget(&window);
  sign->setPicture(pictureOf(Sign::Caution));
  sign->setAccessibleName(wordOf(Sign::Caution));
  sign->setFixedSize(48, 48);
  auto* upper = spaced(new QHBoxLayout);
  upper->addWidget(sign, 0, Qt::AlignTop);
  upper->setSpacing(kMargin);
  upper->addLayout(column({pageText(window["lblMain"]), window["Label1"]}), 1);
  auto* layout = dialogPage(520);
  layout->addLayout(upper, 1);
  frameDialog(window, layout, new ButtonRow({nullptr, window["btnRecover"], window["btnComPort"], window["btnExit"]}), true);
  window.setDefaultButton("btnComPort");  // the choice that changes nothing in the unit
  window.setKey("btnExit", Qt::Key_X);
  window.announce("lblMain");
}

void layOutAbout(FormWindow& window, const LayoutContext& context) {
  auto* icon = new PictureWidget;
  icon->setPicture("firmlane");
  icon->setAccessibleName(QStringLiteral("The program's sign"));
  icon->setFixedSize(72, 72);
  auto* words = column({written(window["lblVersion"], TypeSize::Heading), dimmed(window["lblCopyright"])});
  words->addStretch();
  auto* upper = row({icon});
  upper->setSpacing(kMargin);
  upper->addLayout(words, 1);
  auto* layout = dialogPage(440);
  layout->addLayout(upper, 1);
  RoomyButton* copy = nullptr;
  if (context.copyDetails) {
    copy = new RoomyButton(&window);
    copy->setText(QString::fromLatin1(kCopyDetails));
    copy->setAutoDefault(false);
    QObject::connect(copy, &QPushButton::clicked, copy, context.copyDetails);
  }
  frameDialog(window, layout, new ButtonRow({copy, nullptr, window["Command1"]}));
  window.setDefaultButton("Command1");
}

void layOutInHouse(FormWindow& window, const LayoutContext& /*context*/) {
  auto* layout = dialogPage(340);
  layout->addWidget(written(window["Label1"], TypeSize::Heading));
  layout->addWidget(choices(window, "Processor", {"optUP(0)", "optUP(1)", "optUP(2)", "optUP(3)", "optUP(4)", "optUP(5)"}));
  layout->addStretch();
  layout->addWidget(window.described("prg", "Progress"));
  frameDialog(window, layout, new ButtonRow({nullptr, window["Command1"]}));
  window.setDefaultButton("Command1");
}

void layOutDebug(FormWindow& window, const LayoutContext& /*context*/) {
  struct Row {
    const char* name;
    const char* value;
  };
  auto* layout = dialogPage(540);
  layout->addWidget(written(window["Label1"], TypeSize::Heading));
  auto* table = spaced(new QGridLayout);
  table->setHorizontalSpacing(24);
  int next = 0;
  for (const auto& [name, value] :
       {Row{"Label2", "lblStage"}, Row{"Label3", "lblBytes"}, Row{"Label4", "lblErrors"}, Row{"Label5", "LblL1"},
        Row{"Label6", "lblL2"}, Row{"Label7", "lblHI"}, Row{"Label8", "lblHIR"}}) {
    table->addWidget(dimmed(window[name]), next, 0);
    table->addWidget(window[value], next++, 1);
  }
  table->setColumnStretch(0, 1);
  table->setColumnStretch(1, 1);
  layout->addLayout(table);
  layout->addStretch();
  frameDialog(window, layout, nullptr);
}

void layOutSerial(FormWindow& window, const LayoutContext& /*context*/) {
  auto* layout = dialogPage(360);
  layout->addWidget(window["Label1"]);
  auto* number = row({window["Text1"]});
  number->setStretch(0, 1);
  auto* steps = column({window["btnUp"], window["btnDown"]});
  number->addLayout(steps);
  layout->addLayout(number);
  window.nameBy("Label1", "Text1");
  layout->addStretch();
  frameDialog(window, layout, new ButtonRow({nullptr, window["btnOK"], window["btnCancel"]}));
  window.setDefaultButton("btnOK");
}

}  // namespace firmlane
