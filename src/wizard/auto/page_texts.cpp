#include "wizard/auto/page_texts.h"

namespace firmlane {

void PageTexts::LoadVerCheckMSG() { form_.lblMain.Caption = product_.texts.verCheck; }

void PageTexts::LoadGotVersionsMsg() { form_.lblMain.Caption = product_.texts.gotVersions; }

void PageTexts::LoadDownloadMSG() {
  form_.lblMain.Caption = "Downloading firmware from Tolvex\r\rSaving firmware in: " + files_.programDirectory();
}

void PageTexts::LoadDLDoneMSG() {
  form_.lblMain.Caption = "Download Complete!\r\r\r\r";
  if (form_.chkReceiver.checked()) {
    instruct(kClickNext);
  }
  progress_.advance();
}

void PageTexts::LoadProgramMSG() { form_.lblMain.Caption = "Now programming Processor " + ProcessorNo + "\r\r\r\r"; }

void PageTexts::LoadTurnOFFMSG() {
  form_.lblMain.Caption = "Processor " + ProcessorNo + " Programmed!\r\r\r\r";
  instruct(kClickNext);
}

void PageTexts::CheckVerMSG() {
  form_.lblMain.Caption = "All Selected Processors Programmed!\r\r\r\r";
  instruct(kClickNext);
}

void PageTexts::LoadDLRestartMsg() { form_.lblMain.Caption = product_.texts.restart; }

void PageTexts::LoadDLNoReceiverMSG() {
  form_.lblBottom.Caption = product_.texts.restartBottom;
  form_.lblBottom.Show();
}

void PageTexts::instruct(const char* text) {
  form_.lblReset.Caption = text;
  form_.lblReset.Show();
}

}  // namespace firmlane
