// The main form: the page's text at the top, what the page asks below it, progress at the foot, the buttons under a line.
#include "platform/widgets/activity_panel.h"
#include "platform/widgets/form_layouts.h"
#include "platform/widgets/layout_parts.h"

namespace firmlane {

namespace {

QLayout* productButtons(FormWindow& window) {
  auto* buttons = column();
  for (const char* name : {"VRCButton", "VRColdButton", "LWXButton", "LWX300Button"}) {
    QWidget* button = written(window[name], 1.1);
    button->setMinimumSize(280, 44);
    buttons->addWidget(button, 0, Qt::AlignLeft);
  }
  return buttons;
}

/// Each picture stands beside the option that a click on it selects.
QLayout* taskChoice(FormWindow& window) {
  auto* options = new QVBoxLayout(window["frmFS"]);
  options->setContentsMargins(4, 0, 0, 0);
  options->addStretch(1);
  options->addWidget(written(window["Option5"], 1.1));
  options->addStretch(2);
  options->addWidget(written(window["Option6"], 1.1));
  options->addStretch(1);

  auto* grid = spaced(new QGridLayout);
  grid->addWidget(window.described("imgLWX", "The unit"), 0, 0);
  grid->addWidget(window.described("imgGUI", "The computer with its remote control software"), 1, 0);
  grid->addWidget(window["frmFS"], 0, 1, 2, 1);
  grid->setColumnStretch(1, 1);
  return grid;
}

QLayout* choices(FormWindow& window, const std::string& array, int count) {
  auto* options = column();
  for (int i = 0; i < count; ++i) {
    options->addWidget(written(window[array + "(" + std::to_string(i) + ")"], 1.1));
  }
  return options;
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
  part->addWidget(heading(window["lblResetSerial"]));
  part->addLayout(row({window["lblSerial"], window["txtNum"], window["btnSerial"], nullptr}));
  window.nameBy("lblSerial", "txtNum");
  part->addLayout(row({window["btnSN"], window["btnMic"], nullptr}));
  return part;
}

}  // namespace

void layOutForm1(FormWindow& window, const LayoutContext& context) {
  auto* cover = static_cast<PictureWidget*>(window.described("Image2", "The product"));
  auto* page = column({heading(window["lblTop"]), written(window["lblConnect"], 1.1), written(window["lblStatus"], 1.1)});
  page->addWidget(window["lblOutcome"]);
  page->addLayout(productButtons(window));
  page->addLayout(taskChoice(window));
  page->addLayout(choices(window, "Option1", 4));
  page->addLayout(choices(window, "Option2", 2));
  page->addWidget(window.described("List1", "Available versions"), 1);
  page->addLayout(contactForm(window));
  page->addLayout(framed(window, "frmUC", "Option4", 5));
  page->addWidget(new ActivityPanel(context, ActivityScope::Pages));
  page->addLayout(factory(window));
  page->addStretch(0);
  page->addWidget(window["lblProgressInfo"]);
  page->addWidget(window.described("ProgressBar1", "Progress"));
  page->addWidget(window["lblFAQ"]);

  QLayout* buttons =
      row({window["Command5"], window["Command1"], window["btnVRCrelnotef"], nullptr, window["Command3"], window["Command2"]});
  frameWizard(window, *cover, page, buttons);
  window.setDefaultButton("Command3");
}

}  // namespace firmlane
