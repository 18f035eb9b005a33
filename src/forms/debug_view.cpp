#include "forms/debug_view.h"

#include "state/text.h"

namespace firmlane {

DebugView::DebugView(FrmDBUG& frmDBUG, Form1& form1) : frmDBUG_(frmDBUG), form1_(form1) {
  frmDBUG.OnLoad = [this] { Form_Load(); };
}

void DebugView::Form_Load() {
  frmDBUG_.Top = form1_.Top;
  // Left of the main form by 1 / 2.5 of its width.
  frmDBUG_.Left = form1_.Left - nearest(form1_.Width * 2, 5);
}

}  // namespace firmlane
