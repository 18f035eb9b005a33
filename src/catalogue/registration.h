// Sends the voluntary contact form to the registration server, so that the user can be told of future updates.
#pragma once

#include <string>

#include "catalogue/download.h"

namespace firmlane {

class Registration {
 public:
  /// `server` is scheme and host of the registration server.
  Registration(FormHost& host, HttpClient& http, Download& download, Supervision& supervision, RunState& state, Form1& form1,
               std::string server);

  /// Sends what the form holds and tells how it went. With ContactBlank True it sends "BLANK" in each field, waits for nothing
  /// and tells nothing. The server has 10 s, then the user is asked whether to try again. Throws Failure when the server cannot
  /// be reached, or answers with anything but a number.
  void RegisterUserData();

 private:
  /// One try; whether the user wants another.
  bool tryOnce();
  [[nodiscard]] std::string request() const;
  /// The server's answer; nothing when it did not come in time.
  std::string fetch();
  bool askAgain(const std::string& what);

  FormHost& host_;
  HttpClient& http_;
  Download& download_;
  Supervision& supervision_;
  RunState& state_;
  Form1& form1_;
  std::string server_;
};

}  // namespace firmlane
