// The front panel image in memory: read ready converted from FNTLCDc.s19, or converted from an S-record file. Its callers must
// not start a run on an image that did not come in whole: a run erases the panel before it sends.
#pragma once

#include <string>

#include "platform/files.h"
#include "platform/screen.h"
#include "progress/debug_notes.h"
#include "state/form1.h"
#include "state/run_state.h"

namespace firmlane {

class FrontImageLoader {
 public:
  FrontImageLoader(FormHost& host, const Files& files, const DebugNotes& notes, RunState& state, Form1& form1)
      : host_(host), files_(files), notes_(notes), state_(state), form1_(form1) {}

  // All of these return whether what they were asked for stands ready. When it does not, the user has been told.

  /// Reads the image of the wireless Front. After a failure FrontImage holds what it held before, but never the image of Front A
  /// and Front B: that one is nothing for this panel.
  bool ConvertFront();
  bool OpenConvertedFile();

  /// Reads and converts the image of Front A and Front B, vrc2fnt.s19. After a failure FrontImage is empty.
  bool LoadFrontImage();

  /// Appends the S-record file of the product line to SRecordText, each byte as a decimal number. Lets events run.
  bool OpenFile();
  /// Turns SRecordText into FrontImage and FrontCodeBytes. It must hold a record that is skipped, S1 records with data in upper
  /// case, and an S9 record, each ended by CR LF. Lets events run. After a failure FrontImage holds the records before it.
  bool ConvertFile();

  std::string SRecordText;

 private:
  [[nodiscard]] std::string sourceName() const;
  void readConverted();
  void readSource();
  void convert();
  bool tell(const Failure& failure);

  FormHost& host_;
  const Files& files_;
  const DebugNotes& notes_;
  RunState& state_;
  Form1& form1_;
  bool velarcImage_ = false;  // FrontImage is that of Front A and Front B
};

}  // namespace firmlane
