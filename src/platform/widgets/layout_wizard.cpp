// The window of the auto wizards: one layout for both product lines.
#include "platform/widgets/activity_panel.h"
#include "platform/widgets/form_layouts.h"
#include "platform/widgets/layout_parts.h"

namespace firmlane {

namespace {

QLayout* option(FormWindow& window, const char* picture, const char* tells, const char* box) {
  auto* beside = row({window.described(picture, tells)});
  beside->setSpacing(16);
  beside->addWidget(written(window[box], TypeSize::Text), 1);
  return beside;
}

}  // namespace

void layOutWizard(FormWindow& window, const LayoutContext& context) {
  auto* cover = static_cast<PictureWidget*>(window.described("Cover", "The unit"));
  auto* page = column({pageText(window["lblMain"])});
  page->addLayout(option(window, "imgDL", "From the internet to this computer", "ChkOffline"));
  page->addLayout(option(window, "imgFlash", "From this computer into the unit", "chkReceiver"));
  page->addWidget(written(window.described("VersionList", "Released systems"), TypeSize::Text), 1);
  page->addWidget(written(window["lblReset"], TypeSize::Text, true));
  page->addWidget(window.described("Progress1", "Progress of this step"));
  page->addWidget(window["lblOutcome"]);
  page->addWidget(new ActivityPanel(context, ActivityScope::Pages));
  page->addWidget(written(window["lblBottom"], TypeSize::Text));
  page->addLayout(row({window["btnRelNote"], window["btnMore"], nullptr}));
  page->addStretch(0);
  auto* overall = column({written(window["lblTotal"], TypeSize::Hint), window.described("prgTotal", "Overall progress")});
  overall->setSpacing(2);
  page->addLayout(overall);

  auto* number = static_cast<QLabel*>(dimmed(written(window["lblPage"], TypeSize::Hint)));
  number->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  number->setAccessibleDescription(QStringLiteral("Number of the page"));
  number->setMinimumWidth(40);
  frameWizard(window, *cover, page, new ButtonRow({number, nullptr, window["btnBack"], window["btnNext"], window["cmdQuit"]}));
  window.setDefaultButton("btnNext");
  window.setKey("btnBack", Qt::Key_B);
  window.setKey("btnNext", Qt::Key_N);
  window.setKey("cmdQuit", Qt::Key_X);
  window.tellOnce("lblOutcome", "lblMain");
  window.announce("lblMain");
  window.announce("lblReset");
  window.announce("lblOutcome");
}

}  // namespace firmlane
