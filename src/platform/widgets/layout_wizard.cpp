// The window of the auto wizards: one layout for both product lines.
#include "platform/widgets/activity_panel.h"
#include "platform/widgets/form_layouts.h"
#include "platform/widgets/layout_parts.h"

namespace firmlane {

namespace {

QLayout* option(FormWindow& window, const char* picture, const char* box) {
  auto* beside = row({window[picture]});
  beside->setSpacing(16);
  beside->addWidget(written(window[box], 1.05), 1);
  return beside;
}

QLayout* progress(FormWindow& window) {
  auto* bars = column({window.described("Progress1", "Progress of this step"), window["lblTotal"],
                       window.described("prgTotal", "Overall progress")});
  bars->setSpacing(5);
  return bars;
}

}  // namespace

void layOutWizard(FormWindow& window, const LayoutContext& context) {
  auto* cover = static_cast<PictureWidget*>(window["Cover"]);
  auto* page = column({heading(window["lblMain"])});
  page->addLayout(option(window, "imgDL", "ChkOffline"));
  page->addLayout(option(window, "imgFlash", "chkReceiver"));
  page->addWidget(window.described("VersionList", "Released systems"), 1);
  page->addWidget(window["lblOutcome"]);
  page->addWidget(written(window["lblReset"], 1.25, true));
  page->addWidget(new ActivityPanel(context, ActivityScope::Pages));
  page->addWidget(written(window["lblBottom"], 1.1));
  page->addLayout(row({window["btnRelNote"], window["btnMore"], nullptr}));
  page->addStretch(0);
  page->addLayout(progress(window));

  auto* number = static_cast<QLabel*>(dimmed(window["lblPage"]));
  number->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  number->setAccessibleName(QStringLiteral("Page"));
  number->setMinimumWidth(40);
  frameWizard(window, *cover, page, row({number, nullptr, window["btnBack"], window["btnNext"], window["cmdQuit"]}));
  window.setDefaultButton("btnNext");
}

}  // namespace firmlane
