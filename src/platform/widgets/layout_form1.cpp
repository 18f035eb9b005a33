// The main form: the page's text at the top, what the page asks below it, progress at the foot, the buttons under a line.
#include "platform/widgets/activity_panel.h"
#include "platform/widgets/form_layouts.h"
#include "platform/widgets/layout_parts.h"

namespace firmlane {

namespace {

constexpr QSize kProductPicture(66, 48);
constexpr int kProductWidth = 340;

QLayout* productButtons(FormWindow& window) {
  struct Product {
    const char* button;
    const char* picture;
  };
  auto* buttons = column();
  for (const auto& [name, picture] : {Product{"VRCButton", "VRCBox"}, Product{"VRColdButton", "VRCOld"},
                                      Product{"LWXButton", "imgLWX"}, Product{"LWX300Button", "imgLWX"}}) {
    auto* button = static_cast<RoomyButton*>(written(window[name], TypeSize::Text));
    button->setPicture(picture, kProductPicture);
    button->setMinimumWidth(kProductWidth);
    buttons->addWidget(button, 0, Qt::AlignLeft);
  }
  return buttons;
}

/// Each picture stands beside the option that a click on it selects.
QLayout* taskChoice(FormWindow& window) {
  auto* options = new QVBoxLayout(window["frmFS"]);
  options->setContentsMargins(4, 0, 0, 0);
  options->addStretch(1);
  options->addWidget(written(window["Option5"], TypeSize::Text));
  options->addStretch(2);
  options->addWidget(written(window["Option6"], TypeSize::Text));
  options->addStretch(1);

  auto* grid = spaced(new QGridLayout);
  grid->addWidget(window.described("imgLWX", "The unit"), 0, 0);
  grid->addWidget(window.described("imgGUI", "The computer with its remote control software"), 1, 0);
  grid->addWidget(window.described("frmFS", "What to do"), 0, 1, 2, 1);
  grid->setColumnStretch(1, 1);
  return grid;
}

QLayout* framed(FormWindow& window, const char* frame, const std::string& array, int count) {
  auto* inside = new QVBoxLayout(window[frame]);
  for (int i = 0; i < count; ++i) {
    inside->addWidget(window[array + "(" + std::to_string(i) + ")"]);
  }
  return row({window[frame], nullptr});
}

QLayout* contactForm(FormWindow& window) {
  auto* form = column();
  form->setSpacing(4);
  struct Field {
    const char* label;
    const char* field;
  };
  for (const auto& [label, field] : {Field{"lblFirst", "txtFirst"}, Field{"lblLast", "txtLast"}, Field{"lblEmail", "txtEmail"}}) {
    form->addWidget(window[label]);
    form->addWidget(window[field]);
    window.nameBy(label, field);
  }
  return form;
}

QLayout* factory(FormWindow& window) {
  auto* part = column();
  part->addLayout(framed(window, "frmModel", "Option3", 4));
  part->addWidget(written(window["lblResetSerial"], TypeSize::Text));
  part->addLayout(row({window["lblSerial"], window["txtNum"], window["btnSerial"], nullptr}));
  window.nameBy("lblSerial", "txtNum");
  for (const char* procedure : {"btnSN", "btnMic"}) {
    part->addWidget(window[procedure], 0, Qt::AlignLeft);
  }
  return part;
}

}  // namespace

void layOutForm1(FormWindow& window, const LayoutContext& context) {
  auto* cover = static_cast<PictureWidget*>(window.described("Image2", "The product"));
  auto* page = column({pageText(window["lblTop"]), window["lblOutcome"]});
  page->addWidget(written(window["lblConnect"], TypeSize::Heading));
  page->addWidget(written(window["lblStatus"], TypeSize::Text));
  page->addLayout(productButtons(window));
  page->addLayout(taskChoice(window));
  page->addWidget(choices(window, "What to do", {"Option1(0)", "Option1(1)", "Option1(2)", "Option1(3)"}));
  page->addWidget(choices(window, "Product", {"Option2(0)", "Option2(1)"}));
  page->addWidget(written(window.described("List1", "Available versions"), TypeSize::Text), 1);
  page->addLayout(contactForm(window));
  page->addLayout(framed(window, "frmUC", "Option4", 5));
  page->addWidget(new ActivityPanel(context, ActivityScope::Pages));
  page->addLayout(factory(window));
  page->addWidget(written(window["lblProgressInfo"], TypeSize::Text));
  page->addWidget(window.described("ProgressBar1", "Progress of this step"));
  page->addStretch(0);
  page->addWidget(window["lblFAQ"]);

  frameWizard(window, *cover, page,
              new ButtonRow({window["Command5"], window["Command1"], window["btnVRCrelnotef"], nullptr, window["Command3"],
                             window["Command2"]}));
  window.tellOnce("lblOutcome", "lblTop");
  window.setDefaultButton("Command3");
  window.setKey("Command3", Qt::Key_N);
  window.setKey("Command2", Qt::Key_X);
  for (const char* label : {"lblTop", "lblConnect", "lblStatus", "lblResetSerial", "lblOutcome"}) {
    window.announce(label);
  }
}

}  // namespace firmlane
