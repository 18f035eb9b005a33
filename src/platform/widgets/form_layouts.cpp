#include "platform/widgets/form_layouts.h"

#include <algorithm>
#include <iterator>

#include "platform/widgets/layout_parts.h"

namespace firmlane {

namespace {

struct Layout {
  const char* form;
  WindowRole role;
  void (*fill)(FormWindow&, const LayoutContext&);
};

constexpr Layout kLayouts[] = {
    {"Form1", WindowRole::Main, layOutForm1},          {"frmAuto", WindowRole::Main, layOutWizard},
    {"frmVRCAuto", WindowRole::Main, layOutWizard},    {"frmPort", WindowRole::Dialog, layOutPort},
    {"frmVersion", WindowRole::Dialog, layOutVersion}, {"frmRecover", WindowRole::Dialog, layOutRecover},
    {"frmAbout", WindowRole::Corner, layOutAbout},     {"frmInHouse", WindowRole::Main, layOutInHouse},
    {"frmDBUG", WindowRole::Aside, layOutDebug},       {"newserial", WindowRole::Dialog, layOutSerial},
};

constexpr Layout kOther = {"", WindowRole::Dialog, layOutColumn};

}  // namespace

WindowRole layOut(FormWindow& window, const LayoutContext& context) {
  const auto* found = std::find_if(std::begin(kLayouts), std::end(kLayouts),
                                   [&window](const Layout& layout) { return window.form().name() == layout.form; });
  const Layout& layout = found == std::end(kLayouts) ? kOther : *found;
  layout.fill(window, context);
  return layout.role;
}

void layOutColumn(FormWindow& window, const LayoutContext& /*context*/) {
  auto* layout = new QVBoxLayout(&window);
  for (Control* control : window.form().controls()) {
    QWidget* widget = window[control->name()];
    if (control->frame() == nullptr) {
      layout->addWidget(widget);
      continue;
    }
    QWidget* frame = window[control->frame()->name()];
    if (frame->layout() == nullptr) {
      new QVBoxLayout(frame);  // NOLINT(cppcoreguidelines-owning-memory): the frame owns its layout
    }
    frame->layout()->addWidget(widget);
  }
}

}  // namespace firmlane
