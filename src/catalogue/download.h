// Downloads a firmware file or an installer into the program's directory, one at a time, and listens to what the HTTP client
// tells of a request. The client owns the time limit: 60 s without a byte end a request with its error state.
#pragma once

#include <optional>
#include <string>

#include "catalogue/download_source.h"
#include "catalogue/firmware_set.h"
#include "catalogue/list_fetch.h"
#include "progress/supervision.h"

namespace firmlane {

/// RegisterState once the client has got going.
inline constexpr std::int16_t kRegistrationUnderWay = 5;

class Download {
 public:
  /// Takes over the client's StateChanged. `server` is scheme and host of the maker's web server.
  Download(FormHost& host, HttpClient& http, const Files& files, FirmwareSet& set, const ListFetch& lists,
           Supervision& supervision, WizardInCharge& wizard, RunState& state, Form1& form1, std::string server);
  ~Download();
  Download(const Download&) = delete;
  Download& operator=(const Download&) = delete;

  /// Downloads the firmware file behind the selected line of List1, from the chosen system's directory where the list has such.
  /// Returns when the file is complete, or when the download has failed, which is told in a box and leaves DownloadDone False and
  /// an older file of that name as it was.
  void GetFirmware2();
  /// The same for the installer behind the selected line; Command3 is disabled meanwhile.
  void GetSoftware();

  /// The client's event. Does nothing unless a download or a registration is under way.
  void Inet1_StateChanged(int State);

  /// Full path of the file that is, or was last, downloaded. One of a set gets there with the others.
  std::string DownloadPath;
  /// The download last started has brought its file.
  bool DownloadDone = false;
  /// Bytes of the body as the server states them, 0 while not known. A body that ends before is broken off; one that goes on is
  /// taken whole.
  std::int32_t ContentLength = 0;
  /// A registration is under way: states of the client are its own, and are noted in RegisterState.
  bool Registering = false;
  /// 1 at the start of a registration, then kRegistrationUnderWay.
  std::int16_t RegisterState = 0;

 private:
  void reset();
  /// Index of the selected line. Throws Failure for none, or one beyond the tables.
  [[nodiscard]] std::size_t selectedLine() const;
  void transfer(const DownloadSource& source);
  void takeContentLength();
  void takeBody();
  void showProgress(std::int64_t received);
  void fail(const Failure& failure);

  FormHost& host_;
  HttpClient& http_;
  const Files& files_;
  FirmwareSet& set_;
  const ListFetch& lists_;
  Supervision& supervision_;
  WizardInCharge& wizard_;
  RunState& state_;
  Form1& form1_;
  std::string server_;
  std::string name_;               // of the file
  std::string place_;              // where the file is stored
  std::optional<Failure> broken_;  // what ended the transfer under way
};

}  // namespace firmlane
