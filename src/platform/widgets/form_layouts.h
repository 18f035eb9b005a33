// Where the controls of each form stand in its window. A layout asks the window for the widgets it places; controls that it does
// not ask for stay without one: those hidden for good.
#pragma once

#include <functional>
#include <string>

#include "platform/widgets/form_window.h"

namespace firmlane {

class Activity;

inline constexpr const char* kCopyDetails = "Copy details";

/// What layouts need beyond the form.
struct LayoutContext {
  /// The text beside a port number, empty for a number without hardware.
  std::function<std::string(int)> portHint;
  /// What goes on; null where nobody tells.
  Activity* activity = nullptr;
  /// A message box is up.
  std::function<bool()> held = {};
  /// Puts what the maker needs to know on the clipboard; empty where nothing is kept.
  std::function<void()> copyDetails = {};
};

/// What a window is to the user's desktop.
enum class WindowRole {
  Main,    ///< stands by itself, in the middle of the screen
  Aside,   ///< stands by itself too, and leaves a main window its place
  Dialog,  ///< belongs to the window below it; Esc closes it
  Corner   ///< a dialog in the upper left corner of the window below it
};

/// Fills the window by the layout of its form's name; a form without one of its own has its controls in a column.
WindowRole layOut(FormWindow& window, const LayoutContext& context);

void layOutForm1(FormWindow& window, const LayoutContext& context);
void layOutWizard(FormWindow& window, const LayoutContext& context);
void layOutPort(FormWindow& window, const LayoutContext& context);
void layOutVersion(FormWindow& window, const LayoutContext& context);
void layOutRecover(FormWindow& window, const LayoutContext& context);
void layOutAbout(FormWindow& window, const LayoutContext& context);
void layOutInHouse(FormWindow& window, const LayoutContext& context);
void layOutDebug(FormWindow& window, const LayoutContext& context);
void layOutSerial(FormWindow& window, const LayoutContext& context);
void layOutColumn(FormWindow& window, const LayoutContext& context);

}  // namespace firmlane
