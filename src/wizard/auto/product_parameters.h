// What tells one auto wizard from the other: product, tables, file, texts, the rows of the version table and the steps of an
// update. The engine reads it and never asks which product it serves.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "state/auto_form.h"
#include "state/run_state.h"

namespace firmlane {

inline constexpr int kSystems = 11;
inline constexpr int kSystemFileRows = 201;
inline constexpr int kVersionRows = 5;

/// When a row of the version table can be selected for programming.
enum class Selecting {
  Never,
  Always,
  /// Not for a unit that is reached only on the older link.
  OnNormalLink,
};

/// What the check after programming asks of a row.
enum class FinalCheck { None, NotOlder, Equal };

/// One processor in the version table. Its controls stand at the same index in WizardWindow::rows.
struct ProcessorRow {
  /// Its version in the record of a released system; null when records tell none.
  FixedText<10> SystemRecord::*inSystem = nullptr;
  /// Line of the update list whose display name tells its version.
  int listLine;
  /// The digits that the unit reported: the number before the point and one or two behind it; null where there is none.
  std::array<std::int16_t RunState::*, 3> inUnit = {};
  Selecting selecting = Selecting::Never;
  FinalCheck finalCheck = FinalCheck::None;
  /// Steps of the overall progress that programming it takes; 0 for a row without a processor.
  int progressSteps = 2;
  /// Takes part when the unit's set is looked up in the system version file.
  bool tellsSystem = false;
  /// Only units of the larger model have it.
  bool secondSection = false;
  /// A unit with an old DSP reports no version here; the table keeps what it shows.
  bool unreadWithOldDsp = false;
};

/// One step of an update. The order of the steps is the order of programming.
struct UpdateStep {
  /// FlashTarget of its run, and what the processor is called.
  const char* target;
  const char* name;
  /// Row of the version table whose selection it works off.
  int row;
  const char* ProcessorNo;
  /// Index of Form1.Option4.
  int option;
  /// The debug view is told that a front panel run begins.
  bool toldToDebugView = false;
};

/// Texts that speak of the unit. CR and LF stand as shown.
struct WizardTexts {
  const char* welcome;
  const char* welcomeAgain;
  const char* updateOption;
  const char* updateOptionAgain;
  const char* verCheck;
  const char* noAnswer;
  /// Stands behind noAnswer in the window that offers recovery.
  const char* recoverHint;
  const char* versionInUnit;
  const char* gotVersions;
  const char* restart;
  const char* restartBottom;
  const char* current;
  const char* sureToReflash;
  const char* turnOffAndOn;
  const char* waitingForReset;
  const char* notReprogrammed;
  const char* complete;
  /// Added to the verdict for a unit on the older link.
  const char* completeOnOldLink;
  const char* versionsUnreadable;
};

struct ProductParameters {
  const char* ProductCode;
  /// What InVrcAutoWizard is when the window loads, besides InAutoWizard.
  bool inVrcAutoWizard;
  std::array<SystemRecord, kSystems> RunState::*systems;
  std::array<SystemRecord, kSystemFileRows> RunState::*sysFile;
  const char* sysFileName;
  /// Last row of the system version file in which the unit's set is looked up.
  int lastRowLookedUp;
  /// Lines of the update list that make up a firmware set, from 0.
  int firmwareLines;
  const char* releaseNotes;
  std::array<ProcessorRow, kVersionRows> rows;
  std::span<const UpdateStep> steps;
  /// Every unit counts as one on the normal link, whatever its readout says.
  bool ignoresOldLink;
  /// The overall bar comes up behind the questions of page 4 instead of with the comparison.
  bool totalShownAfterQuestions;
  bool opensDebugView;
  WizardTexts texts;
};

/// The controls of one row of the version table.
struct VersionRow {
  CheckBox& selection;
  Label& current;
  Label& inUnit;
};

/// A wizard's window, with those of the product's own controls that the engine works.
struct WizardWindow {
  AutoForm& form;
  std::array<VersionRow, kVersionRows> rows;
  /// Labels of the step list that are greyed while nothing is downloaded, or no unit is updated.
  std::vector<Label*> downloadSteps;
  std::vector<Label*> updateSteps;
  /// Lit with the good verdict; null where there is none.
  PictureBox* verdictLight;
  /// Comes with the version table; null where there is none.
  CommandButton* details;
};

}  // namespace firmlane
