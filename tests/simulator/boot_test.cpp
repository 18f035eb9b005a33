// Boot loaders are strict: what is spoilt, of another processor or sent without the handshake is refused. That good images are
// taken, whole updates show.

#include "bench.h"
#include "units/firmware.h"
#include "units/srecords.h"

namespace firmlane::sim {
namespace {

constexpr Version kNew = {6, 7, 8};
constexpr const char* kWantHub = "02 00 00 00 1E 21 3F 3E 3E";
constexpr const char* kHubIsGood = "02 00 00 00 1F 22 41 3E 3E";
constexpr const char* kHubIsBad = "02 00 00 00 1F 23 42 3E 3E";

/// A kind of loader: a processor that has it, and how the stream is made from the image file's bytes.
struct Loader {
  const char* model;
  const char* processor;
  LineSettings line;
  const char* want;
  const char* bad;
  Bytes (*stream)(const Bytes& file);
};

Bytes asItIs(const Bytes& file) { return file; }

constexpr const char* kWantDsp = "02 00 00 00 1E 01 1F 3E 3E";
constexpr Loader kLoaders[] = {
    {"lwx51", "DSP", {9600, Handshake::None}, kWantDsp, "02 00 00 00 1F 04 23 3E 3E", plainStream},
    {"velarc2", "DSP", {9600, Handshake::None}, kWantDsp, "02 00 00 00 1F 09 28 3E 3E", plainStream},
    {"velarc", "DSP", {19200, Handshake::None}, kWantDsp, "02 00 00 00 1F 04 23 3E 3E", sevenBitStream},
    {"lwx52", "RF2", {9600, Handshake::Rts}, "02 00 00 00 1E 40 5E 3E 3E", "02 00 00 00 1F 43 62 3E 3E", asItIs},
};

TEST(BootLoader, SpoiltImagesAndThoseOfAnotherProcessorAreRefused) {
  const auto size = [](const Bytes& sent) { return static_cast<std::ptrdiff_t>(sent.size()); };
  const std::pair<const char*, std::function<void(Bytes&)>> spoilers[] = {
      {"last 40 bytes missing", [](Bytes& sent) { sent.resize(sent.size() - 40); }},
      {"one byte changed", [](Bytes& sent) { sent[sent.size() / 2] ^= 1; }},
      {"one byte lost", [&](Bytes& sent) { sent.erase(sent.begin() + size(sent) / 6); }},
      {"last byte before the end wrong", [](Bytes& sent) { sent[sent.size() - 3] ^= 1; }},
      {"first byte missing", [](Bytes& sent) { sent.erase(sent.begin()); }},
  };
  for (const Loader& loader : kLoaders) {
    const ImageKind own = Bench(loader.model).unit.state().find(loader.processor)->model->image;
    std::vector<std::pair<std::string, Bytes>> streams;
    for (const auto& [what, spoil] : spoilers) {
      streams.emplace_back(what, loader.stream(imageFile(own, kNew, 3000)));
      spoil(streams.back().second);
    }
    for (const ImageKind other : {ImageKind::WirelessHub, ImageKind::WirelessDsp, ImageKind::Velarc2Dsp}) {
      if (other != own) {
        streams.emplace_back(imageFileName(other), loader.stream(imageFile(other, kNew, 3000)));
      }
    }
    for (const auto& [what, stream] : streams) {
      Bench bench(loader.model, loader.line.baud);
      bench.start(loader.want);
      bench.driver.configure(loader.line);
      bench.send(stream);
      bench.run(30 * kSecond);
      EXPECT_EQ(bench.heard(), loader.bad) << loader.model << ": " << what;
      EXPECT_EQ(bench.unit.state().versionOf(loader.processor), "blank") << loader.model << ": " << what;
    }
  }
}

TEST(BootLoader, DemandsItsSpeedAndHandshakeDuringTheStream) {
  for (const auto& [settings, verdict] : {std::pair{LineSettings{9600, Handshake::Rts}, kHubIsGood},
                                          {{9600, Handshake::None}, kHubIsBad},
                                          {{9600, Handshake::XonXoff}, kHubIsBad},
                                          {{19200, Handshake::Rts}, ""}}) {  // not heard at another speed
    Bench bench("lwx51");
    bench.start(kWantHub);
    bench.driver.configure(settings);
    bench.send(imageFile(ImageKind::WirelessHub, kNew, 500));
    bench.run(10 * kSecond);
    EXPECT_EQ(bench.heard(), verdict) << settings.baud;
  }
}

/// Sends a front panel 100 bytes of code, batch by batch, and gives its verdict.
std::string sendFront(const Bytes& code) {
  Bench bench("lwx51");
  bench.start("02 00 00 00 1E 50 6E 3E 3E");
  bench.send(Bytes{0, 100});
  for (const std::size_t batch : {0U, 16U, 32U, 48U, 64U, 68U, 84U}) {  // the last two again, as the vector table
    Bytes values;
    for (std::size_t at = batch; at < batch + 16; ++at) {
      values.push_back(code[at] / 16);
      values.push_back(code[at] % 16);
    }
    bench.heard();  // asks for the next
    bench.send(values);
    bench.run(400 * kMillisecond);
  }
  bench.run(15 * kSecond);
  return bench.heard();
}

TEST(BootLoader, AFrontPanelRefusesADamagedImage) {
  Bytes code = makeFirmware(ImageKind::WirelessFront, kNew, 100);
  EXPECT_EQ(sendFront(code), "02 00 00 00 1F 52 71 3E 3E");
  code.back() ^= 1;
  EXPECT_EQ(sendFront(code), "02 00 00 00 1F 53 72 3E 3E");
}

TEST(Records, BadOnesAreRefused) {
  for (const char* line : {"", "S1", "S10400003FBD", "S10500003FBB", "S10400003fbc", "X10400003FBC", "S40400003FBC",
                           "S10400003FB", "S1040000GFBC", "S1020000"}) {
    EXPECT_FALSE(parseRecord(line)) << line;
  }
}

}  // namespace
}  // namespace firmlane::sim
