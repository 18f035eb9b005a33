// Boot loaders are strict: what is spoilt, of another processor or sent without the handshake is refused. That good images are
// taken, whole updates show.

#include "bench.h"
#include "units/firmware.h"
#include "units/srecords.h"

namespace firmlane::sim {
namespace {

constexpr Version kNew = {6, 7, 8};
constexpr const char* kWantDsp = "02 00 00 00 1E 01 1F 3E 3E";
constexpr const char* kWantHub = "02 00 00 00 1E 21 3F 3E 3E";

/// A transfer: which processor of which unit, how the stream is made from the image file's bytes.
struct Transfer {
  const char* name;
  const char* model;
  const char* processor;
  int baud;
  Handshake handshake;
  const char* want;
  const char* erased;
  const char* bad;
};

constexpr std::array<Transfer, 5> kTransfers = {{
    {"Plain", "lwx51", "DSP", 9600, Handshake::None, kWantDsp, "02 00 00 00 1F 02 21 3E 3E", "02 00 00 00 1F 04 23 3E 3E"},
    {"PlainVelarc2", "velarc2", "DSP", 9600, Handshake::None, kWantDsp, "02 00 00 00 1F 07 26 3E 3E",
     "02 00 00 00 1F 09 28 3E 3E"},
    {"SevenBit", "velarc", "DSP", 19200, Handshake::None, kWantDsp, "02 00 00 00 1F 02 21 3E 3E", "02 00 00 00 1F 04 23 3E 3E"},
    {"Records", "velarc2", "Hub", 9600, Handshake::Rts, kWantHub, "02 00 00 00 1F 26 45 3E 3E", "02 00 00 00 1F 28 47 3E 3E"},
    {"Rf2", "lwx52", "RF2", 9600, Handshake::Rts, "02 00 00 00 1E 40 5E 3E 3E", "02 00 00 00 1F 41 60 3E 3E",
     "02 00 00 00 1F 43 62 3E 3E"},
}};

class TakesImage : public testing::TestWithParam<Transfer> {
 protected:
  [[nodiscard]] static ImageKind kind(const Bench& bench) { return bench.unit.state().find(GetParam().processor)->model->image; }

  [[nodiscard]] static Bytes stream(const Bench& bench, const Bytes& file) {
    switch (bench.unit.state().find(GetParam().processor)->model->loader) {
      case LoaderKind::Plain:
        return plainStream(file);
      case LoaderKind::SevenBit:
        return sevenBitStream(file);
      default:
        return file;
    }
  }

  /// The verdict for a stream, and the unit's own words on it.
  static std::string verdict(Bench& bench, const Bytes& stream) {
    EXPECT_EQ(bench.start(GetParam().want), GetParam().erased);
    bench.driver.configure({GetParam().baud, GetParam().handshake});
    bench.send(stream);
    bench.run(30 * kSecond);
    return bench.heard();
  }
};

TEST_P(TakesImage, SpoiltImageAndOneOfAnotherProcessorAreRefused) {
  const struct {
    const char* what;
    std::function<void(Bytes&)> spoil;
  } cases[] = {
      {"last 40 bytes missing", [](Bytes& sent) { sent.erase(sent.end() - 40, sent.end()); }},
      {"one byte changed", [](Bytes& sent) { sent[sent.size() / 2] ^= 1; }},
      {"one byte lost", [](Bytes& sent) { sent.erase(sent.begin() + 500); }},
      {"last byte before the end wrong", [](Bytes& sent) { sent[sent.size() - 3] ^= 1; }},
      {"first byte missing", [](Bytes& sent) { sent.erase(sent.begin()); }},
  };
  for (const auto& spoilt : cases) {
    Bench bench(GetParam().model, GetParam().baud);
    Bytes sent = stream(bench, imageFile(kind(bench), kNew, 3000));
    spoilt.spoil(sent);
    EXPECT_EQ(verdict(bench, sent), GetParam().bad) << spoilt.what;
    EXPECT_EQ(bench.unit.state().versionOf(GetParam().processor), "blank") << spoilt.what;
  }
  for (const ImageKind other : {ImageKind::WirelessHub, ImageKind::WirelessDsp, ImageKind::Velarc2Dsp, ImageKind::Velarc2Front}) {
    Bench bench(GetParam().model, GetParam().baud);
    if (other != kind(bench)) {
      EXPECT_EQ(verdict(bench, stream(bench, imageFile(other, kNew, 3000))), GetParam().bad) << imageFileName(other);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Loaders, TakesImage, testing::ValuesIn(kTransfers),
                         [](const auto& transfer) { return transfer.param.name; });

TEST(BootLoader, DemandsItsSpeedAndHandshakeDuringTheStream) {
  const Bytes hub = imageFile(ImageKind::WirelessHub, kNew, 500);
  const struct {
    LineSettings settings;
    const char* verdict;
  } cases[] = {{{9600, Handshake::Rts}, "02 00 00 00 1F 22 41 3E 3E"},
               {{9600, Handshake::None}, "02 00 00 00 1F 23 42 3E 3E"},
               {{9600, Handshake::XonXoff}, "02 00 00 00 1F 23 42 3E 3E"},
               {{19200, Handshake::Rts}, ""}};  // its verdict is not heard at another speed
  for (const auto& line : cases) {
    Bench bench("lwx51");
    bench.start(kWantHub);
    bench.driver.configure(line.settings);
    bench.send(hub);
    bench.run(10 * kSecond);
    EXPECT_EQ(bench.heard(), line.verdict) << line.settings.baud;
  }
}

/// Sends a front panel image as asked for, and tells what was asked: "N" next batch, "V" vector, then the verdict.
std::string sendFront(Bench& bench, const Bytes& code) {
  bench.start("02 00 00 00 1E 50 6E 3E 3E");
  bench.send(Bytes{static_cast<std::uint8_t>(code.size() / 128), static_cast<std::uint8_t>(code.size() % 128)});
  std::string asked;
  std::size_t at = 0;
  bool inVector = false;
  while (true) {
    Bytes batch;
    for (std::size_t i = 0; i < 16; ++i, ++at) {
      const std::uint8_t byte = at < code.size() ? code[at] : 0;
      batch.push_back(byte / 16);
      batch.push_back(byte % 16);
    }
    bench.send(batch);
    bench.run(400 * kMillisecond);
    const std::string answer = bench.heard();
    if (answer == "02 00 00 00 1F 56 75 3E 3E") {
      asked += "N";
    } else if (answer == "02 00 00 00 1F 57 76 3E 3E") {
      at = inVector ? at : code.size() - 32;
      inVector = true;
      asked += "V";
    } else {
      bench.run(15 * kSecond);
      return asked + " " + answer + bench.heard();
    }
  }
}

TEST(FrontPanel, RefusesADamagedImage) {
  Bytes code = makeFirmware(ImageKind::WirelessFront, kNew, 100);
  for (const char* verdict : {"NNNNVV 02 00 00 00 1F 52 71 3E 3E", "NNNNVV 02 00 00 00 1F 53 72 3E 3E"}) {
    Bench bench("lwx51");
    EXPECT_EQ(sendFront(bench, code), verdict);
    code.back() ^= 1;
  }
}

TEST(Records, BadOnesAreRefused) {
  for (const char* line : {"", "S1", "S10400003FBD", "S10500003FBB", "S10400003fbc", "X10400003FBC", "S40400003FBC",
                           "S10400003FB", "S1040000GFBC", "S1020000"}) {
    EXPECT_FALSE(parseRecord(line)) << line;
  }
}

}  // namespace
}  // namespace firmlane::sim
