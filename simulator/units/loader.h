// Boot loaders: each takes one image from the line in its own manner, byte by byte, and knows when it has all of it. Whether the
// image is good is not the loader's question; whether it came over in order is.
#pragma once

#include <memory>
#include <string>

#include "platform/bytes.h"
#include "units/unit_models.h"

namespace firmlane::sim {

/// What a loader wants after a byte.
enum class LoaderWish {
  More,       // go on
  NextBatch,  // front panel: tell the program to send the next batch
  Vector,     // front panel: tell the program to send the (rest of the) vector table
  Group,      // microphone table: acknowledge a group
  Finished    // all is in
};

class Loader {
 public:
  virtual ~Loader() = default;
  virtual LoaderWish take(std::uint8_t byte) = 0;
  /// The line has fallen silent: what has come must do.
  virtual void finish() = 0;
  /// Silence in the middle of the transfer after which the loader takes what it has as all.
  [[nodiscard]] virtual Micros silenceLimit() const = 0;
  /// Whether the program has to set RTS handshake.
  [[nodiscard]] virtual bool needsRts() const { return false; }

  /// The image as it came, decoded.
  [[nodiscard]] const Bytes& image() const { return image_; }
  /// What was wrong with the transfer, the first thing only; empty when it was sound.
  [[nodiscard]] const std::string& complaint() const { return complaint_; }
  void complain(const std::string& complaint) {
    if (complaint_.empty()) {
      complaint_ = complaint;
    }
  }

 protected:
  Bytes image_;

 private:
  std::string complaint_;
};

std::unique_ptr<Loader> makeLoader(LoaderKind kind);
/// Takes the 105 groups of six bytes of a microphone table.
std::unique_ptr<Loader> makeMicrophoneLoader();

}  // namespace firmlane::sim
