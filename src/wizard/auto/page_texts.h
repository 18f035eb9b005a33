// The texts of the wizard's pages, each with the few controls that come with it.
#pragma once

#include <string>

#include "platform/files.h"
#include "wizard/auto/overall_progress.h"

namespace firmlane {

/// What the options page says; also when it is reached by Back.
inline constexpr const char* kOptionsText = "Please select from the two options below\r\r";
/// Caption of the download option, and the one it takes when Back leads to the welcome.
inline constexpr const char* kDownloadOption =
    "Download latest firmware from Tolvex to this PC.  (Your computer must be connected to the internet.)";
inline constexpr const char* kDownloadOptionAgain =
    "Download latest firmware from Tolvex to this PC.  (Your computer must be connected to the internet)";
/// Height of lblMain in twips, but on the options page behind the welcome.
inline constexpr int kMainHeight = 3375;
inline constexpr const char* kClickNext = "Click Next to continue";

class PageTexts {
 public:
  PageTexts(const Files& files, AutoForm& form, OverallProgress& progress, const ProductParameters& product)
      : files_(files), form_(form), progress_(progress), product_(product) {}

  /// Number of the processor being programmed; empty before the first.
  std::string ProcessorNo;

  void LoadVerCheckMSG();
  void LoadGotVersionsMsg();
  void LoadDownloadMSG();
  void LoadDLDoneMSG();
  void LoadProgramMSG();
  void LoadTurnOFFMSG();
  void CheckVerMSG();
  void LoadDLRestartMsg();
  void LoadDLNoReceiverMSG();

  /// Shows the line of instruction.
  void instruct(const char* text);

 private:
  const Files& files_;
  AutoForm& form_;
  OverallProgress& progress_;
  const ProductParameters& product_;
};

}  // namespace firmlane
